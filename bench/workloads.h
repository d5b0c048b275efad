// The files that loading is measured on, 4096 x 4096 pixels unless the name says otherwise.
#pragma once

#include "base/types.h"
#include "support/byte_builder.h"

#include <functional>
#include <string>
#include <vector>

struct Workload {
    std::string strName;
    std::function<Bytes()> make;
    u64 nKept;    // bytes of planes, or of the chunk's data, that the model keeps
    u64 nBitmap;  // bytes of the composite's bitmap
};

const std::vector<Workload>& Workloads();

// A raw document in RGB of 8 bits, with sides of so many pixels.
Bytes SquareDocument(u32 nSide);
