#include "framework/core/float_text.h"

#include "support/table.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(FloatTextTest, ReadsBothDecimalSignsAndNothingButANumber) {
    for (const auto& [text, value] : Table<const char*, std::optional<float>>{{"0,03125", 0.03125f}, {" 32\t", 32.0f},
             {"+2", 2.0f}, {"-.5", -0.5f}, {" ", {}}, {"1 2", {}}, {"1,2,3", {}}, {"2x", {}}, {"+-2", {}}, {"nan", {}},
             {"1e50", INFINITY}, {"-1E999", -INFINITY}, {"1e-999", 0.0f}})
        EXPECT_EQ(TextToFloat(text, ","), value) << text;
}

TEST(FloatTextTest, ShowsAtMostSixDigits) {
    EXPECT_EQ(FloatToText(0.03125f, ","), "0,03125");
    EXPECT_EQ(FloatToText(2.0f / 3.0f, "."), "0.666667");
    EXPECT_EQ(FloatToText(31.9999995f, "."), "32");
}
