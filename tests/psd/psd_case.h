// Documents that load, and beside each one that is refused: it differs in the one value that decides.
#pragma once

#include "support/psd_builder.h"

#include <gtest/gtest.h>

struct PsdPair {
    const char* what;
    PsdFields loads;
    PsdFields refused;
};

inline void ExpectPairs(const std::vector<PsdPair>& table) {
    for (const PsdPair& row : table) {
        EXPECT_TRUE(LoadedPsd(row.loads).bLoaded) << row.what;
        EXPECT_FALSE(LoadedPsd(row.refused).bLoaded) << row.what;
    }
}
