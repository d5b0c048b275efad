// How the samples of a channel or of the composite are compressed in a Photoshop document.
#pragma once

#include "base/types.h"

constexpr u32 PSD_COMPRESSION_SIZE = 2;  // bytes of the field that says it

constexpr i32 PSD_RAW = 0;
constexpr i32 PSD_PACK_BITS = 1;
constexpr i32 PSD_ZIP = 2;
constexpr i32 PSD_ZIP_PREDICTED = 3;
