// Documents that load, and beside each one that is refused: it differs in the one value that decides.
#pragma once

#include "support/psd_builder.h"
#include "support/table.h"

#include <gtest/gtest.h>

inline void ExpectPairs(const Table<const char*, PsdFields, PsdFields>& table) {
    for (const auto& [what, loads, refused] : table) {
        EXPECT_TRUE(LoadedPsd(loads).bLoaded) << what;
        EXPECT_FALSE(LoadedPsd(refused).bLoaded) << what;
    }
}
