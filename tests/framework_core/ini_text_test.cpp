#include "framework/core/ini_text.h"

#include <gtest/gtest.h>

TEST(IniText, AnyBytesComeBack) {
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    const IniSections sections = {
        {bytes, {{bytes, bytes}, {"", ""}, {"%41", "\\x41"}, {"a=b", " blanks "}}},
        {"[]", {{"[x]", "a, b; c = \"d\""}, {";", ";"}}},
    };
    EXPECT_EQ(ParseIni(FormatIni(sections)), sections);
}

TEST(IniText, WrittenByHand) {
    const IniSections sections =
        ParseIni("a=before\n\n [One%20List] \r\n b = c \r\n;d=no\nnothing\nb=last=1\n[Two]\nx=\"y\"");
    EXPECT_EQ(sections, (IniSections{{"One List", {{"b", "last=1"}}}, {"Two", {{"x", "y"}}}}));
    EXPECT_EQ(FormatIni(sections), "[One%20List]\nb=\"last=1\"\n\n[Two]\nx=y\n");
    EXPECT_EQ(ParseIni("\xEF\xBB\xBF[a]\nb=c"), (IniSections{{"a", {{"b", "c"}}}}));
    // Cut off anywhere, and with digits that are none.
    EXPECT_EQ(ParseIni("[%4]\n%g1=\\x4\n%=\\"), (IniSections{{"%4", {{"%g1", "x4"}, {"%", "\\"}}}}));
}
