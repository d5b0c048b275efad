// From bit-planes to pixel values, for one row.
#pragma once

#include "base/types.h"

// pPlanes: nPlanes plane rows of nPlaneRowSize bytes, at least ceil(nWidth / 8), one after the other. Bit p
// of a value is the pixel's bit in plane p; planes from the 33rd on are passed over.
void PlanesToValues(u32* pValues, const u8* pPlanes, u32 nWidth, u32 nPlanes, u32 nPlaneRowSize);
