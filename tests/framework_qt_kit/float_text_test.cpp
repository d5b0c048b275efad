#include "framework/qt/kit/float_text.h"

#include "support/table.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <cmath>

namespace {

class FloatTextTest : public testing::Test {
  protected:
    ~FloatTextTest() override { QLocale::setDefault(QLocale::c()); }
};

}  // namespace

TEST_F(FloatTextTest, ReadsEitherDecimalSignWhateverTheUsersOwnIs) {
    for (const QLocale::Language language : {QLocale::English, QLocale::German, QLocale::Arabic}) {
        QLocale::setDefault(language);
        for (const auto& [text, value] :
            Table<const char*, std::optional<float>>{{"0,03125", 0.03125f}, {"0.03125", 0.03125f}, {"1,234", 1.234f},
                {" 32\t", 32.0f}, {"+2", 2.0f}, {"-.5", -0.5f}, {" ", {}}, {"1 2", {}}, {"1,2,3", {}}, {"1,234.5", {}},
                {"2x", {}}, {"+-2", {}}, {"nan", {}}, {"inf", {}}, {"1e50", INFINITY}, {"-1E999", -INFINITY}})
            EXPECT_EQ(TextToFloat(text), value) << text << QLocale().name().toStdString();
    }
    EXPECT_EQ(TextToFloat("\u0661\u066B\u0665"), 1.5f) << "in digits of the user's own";
}

TEST_F(FloatTextTest, ShowsAtMostSixDigitsWithTheUsersOwnSign) {
    for (const auto& [language, text] :
        Table<QLocale::Language, const char*>{{QLocale::German, "0,03125"}, {QLocale::English, "0.03125"}}) {
        QLocale::setDefault(language);
        EXPECT_EQ(FloatToText(0.03125f), text);
        EXPECT_EQ(FloatToText(123456.7f), "123457");
    }
    EXPECT_EQ(FloatToText(2.0f / 3.0f), "0.666667");
    EXPECT_EQ(FloatToText(31.9999995f), "32");
}
