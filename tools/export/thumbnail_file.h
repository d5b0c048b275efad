// The thumbnail of one document, written into a file of its own.
#pragma once

#include "tools/export/options.h"

// Replaces what has the output's name, or fills it where that is an empty file: whoever asks for the
// thumbnail may have it open then. False, and no change, where none could be made, which is told. What reads
// the document is a process of its own that has locked itself in; whatever becomes of that, this one goes on.
bool WriteThumbnail(const ThumbnailOrder& order, bool bStrict);
