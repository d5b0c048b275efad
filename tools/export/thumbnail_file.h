// The thumbnail of one document, written into a file of its own.
#pragma once

#include "tools/export/options.h"

// Replaces what has the output's name, as whoever asks for thumbnails has made an empty file of it. False,
// and no file, where none could be made, which is told. What reads the document is a process of its own that
// has locked itself in; whatever becomes of that, this one goes on.
bool WriteThumbnail(const ThumbnailOrder& order, bool bStrict);
