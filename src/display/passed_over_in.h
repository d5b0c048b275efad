// What the tolerant rules pass over in a document that was read, so that whoever shows it can say so.
#pragma once

#include "reading/passed_over.h"

class CVistrelDoc;

// Of an IFF document in its whole image, of a Photoshop document in the file. A document that the strict
// rules read may be an IFF file whose image they show otherwise: then this is what the tolerant ones would
// pass over.
PassedOver PassedOverIn(const CVistrelDoc& document);
