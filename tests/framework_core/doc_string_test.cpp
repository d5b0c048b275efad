#include "framework/core/doc_string.h"

#include "support/table.h"

#include <gtest/gtest.h>

TEST(DocString, HasSevenFieldsOfWhichAnyMayBeMissing) {
    const std::string whole = "\n\n\nPictures (*.ABC)\n.ABC\nProgram.Picture\nPicture";
    for (const auto& [text, field, expected] : Table<std::string, DocStringField, const char*>{
             {whole, DocStringField::WindowTitle, ""},
             {whole, DocStringField::FilterName, "Pictures (*.ABC)"},
             {whole, DocStringField::RegFileTypeName, "Picture"},
             {"\n\n\nPictures", DocStringField::FilterName, "Pictures"},
             {"\n\n\nPictures", DocStringField::FilterExt, ""},
         })
        EXPECT_EQ(GetDocString(text, field), expected);
}

TEST(DocString, AnExtensionIsThatOfTheLastPartOfThePath) {
    for (const char* path : {"/home/x.def/picture.aBc", ".abc"}) EXPECT_TRUE(MatchesFilterExt(".ABC", path)) << path;
    for (const char* path : {"/home/x.abc/picture", "picture.abc.def", "picture.abcd"})
        EXPECT_FALSE(MatchesFilterExt(".ABC", path)) << path;
    EXPECT_FALSE(MatchesFilterExt(".ABC;*.DEF", "picture.abc"));
    EXPECT_FALSE(MatchesFilterExt("", "picture"));
}

TEST(DocString, PatternsOfAFilter) {
    EXPECT_EQ(FilterPatterns(".ABC;*.DEF"), (std::vector<std::string>{"*.ABC", "*.DEF"}));
    EXPECT_EQ(FilterPatterns(""), std::vector<std::string>());
}
