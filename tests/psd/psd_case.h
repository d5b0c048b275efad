// Documents beside each other that differ in the one value that decides.
#pragma once

#include "support/psd_builder.h"

#include <gtest/gtest.h>

struct PsdCase {
    const char* what;
    PsdFields fields;
    bool bLoads;
};

inline void ExpectLoads(const std::vector<PsdCase>& table) {
    for (const PsdCase& row : table) EXPECT_EQ(LoadedPsd(row.fields).bLoaded, row.bLoads) << row.what;
}
