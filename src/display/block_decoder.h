// Block-compressed pictures: blocks of 4 by 4 pixels, row after row, those at the right and bottom edge
// cropped.
#pragma once

#include "base/large_block.h"

class S3tcChunk;

// The pixels, four bytes each (blue, green, red, alpha), top row first, without padding. Nothing when the
// code is not one of DXT1 to DXT5, a side is 0, or the data is not of exactly the size that the picture
// takes. Throws CMemoryException.
LargeBlock DecodeS3tcImage(const S3tcChunk& chunk);
