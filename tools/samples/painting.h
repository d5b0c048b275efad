// What the painted samples have in common.
#pragma once

#include "iff/iff_archive.h"

#include <vector>

// Of two colours, the share of the second from 0 to 1.
IffRgb Mix(const IffRgb& from, const IffRgb& to, double fShare);

// Appends nSteps colours to a colour map, from the first to the last.
void AddRamp(std::vector<IffRgb>& map, const IffRgb& from, const IffRgb& to, u32 nSteps);

// One of a ramp's places in the colour map for a level from 0 to 1, dithered.
u32 Dithered(u32 nFirst, u32 nSteps, double fLevel, u32 x, u32 y);
