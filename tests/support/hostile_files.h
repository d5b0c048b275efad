// Files of very many small parts, each of which costs something: as rows of one table, for whoever measures or
// tries them.
#pragma once

#include "support/byte_builder.h"

#include <vector>

struct HostileFile {
    const char* pszName;
    Bytes (*make)(u32 nCount);  // so many parts
    u32 nMost;                  // parts that the format allows, or what a file of reasonable size has
    bool bHasPicture;
};

const std::vector<HostileFile>& HostileFiles();
