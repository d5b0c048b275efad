// The size that a frame takes to show a picture at a scale.
#pragma once

#include "base/types.h"
#include "framework/core/geometry.h"

// Client area of a picture of nWidth by nHeight pixels at fScale, which may be infinite: truncated towards
// zero, and clamped to what a window can be.
CSize FittedClientSize(u32 nWidth, u32 nHeight, float fScale);
