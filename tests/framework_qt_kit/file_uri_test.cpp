#include "framework/qt/kit/file_uri.h"

#include <gtest/gtest.h>

TEST(FileUri, EveryPathComesBackAndWhatIsNoneDoesNot) {
    std::string path = "/";
    for (int byte = 1; byte < 256; ++byte) path += static_cast<char>(byte);
    EXPECT_EQ(FromFileUri(ToFileUri(path)), path);
    EXPECT_EQ(ToFileUri("/a b%\xFF.iff"), "file:///a%20b%25%FF.iff");
    for (const char* uri : {"file:///a%c3%bc", "file://localhost/a\xC3\xBC", "file:/a%C3%BC"})
        EXPECT_EQ(FromFileUri(uri), "/a\xC3\xBC") << uri;
    for (const char* name : {"/a b", "/a?b", "/a#b", "/a?b#c", "/100% b"})
        EXPECT_EQ(FromFileUri(std::string("file://") + name), name);
    for (const char* uri : {"file://elsewhere/a", "http:///a", "file:a", "file:///a%00b", "", "/a"})
        EXPECT_FALSE(FromFileUri(uri)) << uri;
}
