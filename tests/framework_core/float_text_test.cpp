#include "framework/core/float_text.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(FloatTextTest, ReadsBothDecimalSignsAndNothingButANumber) {
    struct Case {
        const char* pszText;
        std::optional<float> value;
    };
    for (const Case& c : {Case{"0.03125", 0.03125f}, Case{"0,03125", 0.03125f}, Case{" 32\t", 32.0f}, Case{"+2", 2.0f},
             Case{"-.5", -0.5f}, Case{"2e1", 20.0f}, Case{"", {}}, Case{" ", {}}, Case{"abc", {}}, Case{"1 2", {}},
             Case{"1,2,3", {}}, Case{"2x", {}}, Case{"+-2", {}}, Case{"+", {}}, Case{"nan", {}}, Case{"inf", {}},
             Case{"1e50", INFINITY}, Case{"-1E999", -INFINITY}, Case{"1e-50", 0.0f}, Case{"1e-999", 0.0f}})
        EXPECT_EQ(TextToFloat(c.pszText, ","), c.value) << c.pszText;
}

TEST(FloatTextTest, ShowsAtMostSixDigits) {
    EXPECT_EQ(FloatToText(1.0f, "."), "1");
    EXPECT_EQ(FloatToText(0.03125f, ","), "0,03125");
    EXPECT_EQ(FloatToText(2.0f / 3.0f, "."), "0.666667");
    EXPECT_EQ(FloatToText(31.9999995f, "."), "32");
}
