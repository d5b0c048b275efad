#include "framework/core/doc_string.h"

#include <gtest/gtest.h>

TEST(DocString, HasSevenFieldsOfWhichAnyMayBeMissing) {
    const std::string whole = "\n\n\nPictures (*.ABC)\n.ABC\nProgram.Picture\nPicture";
    EXPECT_EQ(GetDocString(whole, DocStringField::FilterName), "Pictures (*.ABC)");
    EXPECT_EQ(GetDocString(whole, DocStringField::RegFileTypeName), "Picture");
    EXPECT_EQ(GetDocString("\n\n\nPictures", DocStringField::FilterExt), "");
}

TEST(DocString, AnExtensionIsThatOfTheLastPartOfThePath) {
    for (const char* path : {"/home/x.def/picture.aBc", ".abc"}) EXPECT_TRUE(MatchesFilterExt(".ABC", path)) << path;
    for (const char* path : {"/home/x.abc/picture", "picture.abc.def", "picture.abcd"})
        EXPECT_FALSE(MatchesFilterExt(".ABC", path)) << path;
    EXPECT_FALSE(MatchesFilterExt("", "picture"));
    EXPECT_EQ(FilterPatterns(".ABC;*.DEF"), (std::vector<std::string>{"*.ABC", "*.DEF"}));
}
