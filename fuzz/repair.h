// Sizes of a damaged file, put right.
#pragma once

#include "support/byte_builder.h"

// Makes every chunk end within its container and the outermost one with the file, or every section of a
// Photoshop document as long as its parts. Nothing but sizes is touched; what is neither stays as it is.
void RepairSizes(Bytes& file);
