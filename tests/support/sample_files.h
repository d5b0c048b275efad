// Files that together hold every structure the readers know, as seeds for whatever damages them or lets calls fail.
#pragma once

#include "support/byte_builder.h"

#include <string>
#include <vector>

struct SampleFile {
    std::string strName;
    Bytes bytes;
};

// Small enough to be damaged at every byte: together less than 4 KiB.
std::vector<SampleFile> SmallSampleFiles();

// These, and some that take many reads.
std::vector<SampleFile> SampleFiles();
