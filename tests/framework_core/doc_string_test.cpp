#include "framework/core/doc_string.h"

#include <gtest/gtest.h>

TEST(DocString, AnExtensionIsThatOfTheLastPartOfThePath) {
    for (const char* path : {"/home/x.def/picture.aBc", ".abc"}) EXPECT_TRUE(MatchesFilterExt(".ABC", path)) << path;
    for (const char* path : {"/home/x.abc/picture", "picture.abc.def", "picture.abcd"})
        EXPECT_FALSE(MatchesFilterExt(".ABC", path)) << path;
    EXPECT_FALSE(MatchesFilterExt("", "picture"));
    EXPECT_EQ(FilterPatterns(".ABC;*.DEF"), (std::vector<std::string>{"*.ABC", "*.DEF"}));
}
