#include "framework/core/doc_string.h"

#include <gtest/gtest.h>

TEST(DocString, HasSevenFieldsOfWhichAnyMayBeMissing) {
    const std::string whole = "\n\n\nPictures (*.ABC)\n.ABC\nProgram.Picture\nPicture";
    EXPECT_EQ(GetDocString(whole, DocStringField::WindowTitle), "");
    EXPECT_EQ(GetDocString(whole, DocStringField::FilterName), "Pictures (*.ABC)");
    EXPECT_EQ(GetDocString(whole, DocStringField::RegFileTypeName), "Picture");
    EXPECT_EQ(GetDocString("\n\n\nPictures", DocStringField::FilterName), "Pictures");
    EXPECT_EQ(GetDocString("\n\n\nPictures", DocStringField::FilterExt), "");
    EXPECT_EQ(GetDocString("", DocStringField::RegFileTypeId), "");
}

TEST(DocString, AnExtensionIsThatOfTheLastPartOfThePath) {
    EXPECT_TRUE(MatchesFilterExt(".ABC", "/home/x.def/picture.aBc"));
    EXPECT_TRUE(MatchesFilterExt(".ABC", ".abc"));
    EXPECT_FALSE(MatchesFilterExt(".ABC", "/home/x.abc/picture"));
    EXPECT_FALSE(MatchesFilterExt(".ABC", "picture.abc.def"));
    EXPECT_FALSE(MatchesFilterExt(".ABC", "picture.abcd"));
    EXPECT_FALSE(MatchesFilterExt(".ABC;*.DEF", "picture.abc"));
    EXPECT_FALSE(MatchesFilterExt("", "picture"));
}

TEST(DocString, PatternsOfAFilter) {
    using Patterns = std::vector<std::string>;
    EXPECT_EQ(FilterPatterns(".ABC"), Patterns({"*.ABC"}));
    EXPECT_EQ(FilterPatterns(".ABC;*.DEF"), Patterns({"*.ABC", "*.DEF"}));
    EXPECT_EQ(FilterPatterns(""), Patterns());
}
