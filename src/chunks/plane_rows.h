// From bit-planes to pixel values, for one row.
#pragma once

#include "base/types.h"

// pPlanes: nPlanes plane rows of ceil(nWidth / 8) bytes, one after the other. Bit p of a value is the
// pixel's bit in plane p; planes from the 33rd on are passed over.
void PlanesToValues(u32* pValues, const u8* pPlanes, u32 nWidth, u32 nPlanes);
