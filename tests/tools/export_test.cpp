#include "framework/core/exception.h"
#include "support/has.h"
#include "support/psd_builder.h"
#include "support/shown.h"
#include "support/table.h"
#include "support/temp_folder.h"
#include "tools/common/messages.h"
#include "tools/export/choice.h"
#include "tools/export/export_file.h"
#include "tools/export/options.h"
#include "tools/export/picture_names.h"
#include "tools/export/whole_file.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

TEST(ExportNames, LeadNowhereElse) {
    for (const auto& [layer, name] : Table<std::string, std::string>{
             {"sky", "f.sky.c.png"},
             {"../../up", "f..._.._up.c.png"},
             {"/root", "f._root.c.png"},
             {"a\nb\x1B\x7F", "f.a_b__.c.png"},
             {"0: <a>|b?*\"\\", "f.0_ _a__b____.c.png"},
             {"\xE9t\xC3\xA9", "f._t\xC3\xA9.c.png"},
             {"", "f..c.png"},
         })
        EXPECT_EQ(PictureNames(".png").Next("f", layer, "c"), name);
}

TEST(ExportNames, AreUniqueAlsoAmongNumberedOnes) {
    PictureNames names(".ppm");
    EXPECT_EQ(names.Next("f", "a", "c.2"), "f.a.c.2.ppm");
    EXPECT_EQ(names.Next("f", "a", "c"), "f.a.c.ppm");
    EXPECT_EQ(names.Next("f", "a", "c"), "f.a.c.3.ppm");
    EXPECT_EQ(names.Next("f", "a", "c"), "f.a.c.4.ppm");
    EXPECT_EQ(names.Next("f", "a", "c.2"), "f.a.c.2.2.ppm");
    EXPECT_EQ(names.Next("f", "/", "c"), "f._.c.ppm");
    EXPECT_EQ(names.Next("f", "_", "c"), "f._.c.2.ppm");
    EXPECT_EQ(names.Next("f", "A", "c"), "f.A.c.5.ppm") << "for whoever takes both for one";
}

TEST(ExportNames, AreCutBetweenCharacters) {
    const std::string euro = "\xE2\x82\xAC";
    for (size_t letters = 0; letters < 4; ++letters) {
        std::string layer(letters, 'x');
        for (int i = 0; i < 200; ++i) layer += euro;
        PictureNames names(".png");
        std::set<std::string> given;
        for (int i = 0; i < 12; ++i) given.insert(names.Next("file.psd", layer, "Composite"));
        EXPECT_EQ(given.size(), 12u);
        for (const std::string& name : given) {
            EXPECT_LE(name.size(), 255u);
            EXPECT_GT(name.size(), 255u - euro.size());
            EXPECT_EQ(PlainText(name), name) << "a character was cut";
            EXPECT_TRUE(name.starts_with("file.psd.")) << name;
            EXPECT_TRUE(Has(name, ".Composite."));
        }
    }
    // All parts are long, and each keeps something.
    const std::string name =
        PictureNames(".png").Next(std::string(255, 'f'), std::string(300, 'l'), std::string(90, 'c'));
    EXPECT_EQ(name.size(), 255u);
    for (const char* const part : {"ffff", "llll", "cccc"}) EXPECT_TRUE(Has(name, part));
}

std::string ReadFile(const std::string& strPath) {
    std::ifstream file(strPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// How many names there are in the folder, hidden ones too.
size_t CountIn(const TempFolder& folder) {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder.m_strPath), fs::directory_iterator()));
}

TEST(WholeFile, AppearsAtTheEndAndReplacesOnlyWhenTold) {
    const TempFolder folder;
    const std::string path = folder.Path("name");
    const auto write = [&](const char* pszText, bool bReplace) {
        WholeFile file(path);
        EXPECT_EQ(::write(file.Descriptor(), pszText, 1), 1);
        EXPECT_NE(ReadFile(path), pszText);
        file.Put(bReplace);
    };
    { const WholeFile forgotten(path); }
    EXPECT_EQ(CountIn(folder), 0u);
    write("a", false);
    EXPECT_EQ(ReadFile(path), "a");
    EXPECT_THROW(write("b", false), CFileException);
    EXPECT_EQ(ReadFile(path), "a");
    write("c", true);
    EXPECT_EQ(ReadFile(path), "c");
    EXPECT_EQ(CountIn(folder), 1u);
    // An empty file is filled where it stands, and only an empty one.
    EXPECT_FALSE(WholeFile(path).FillEmpty());
    fs::resize_file(path, 0);
    const int open = ::open(path.c_str(), O_RDONLY);
    {
        WholeFile file(path);
        const std::string text(10'000, 'e');
        EXPECT_EQ(::write(file.Descriptor(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
        EXPECT_TRUE(file.FillEmpty());
        std::string found(text.size() + 1, ' ');
        EXPECT_EQ(::pread(open, found.data(), found.size(), 0), static_cast<ssize_t>(text.size()));
        EXPECT_EQ(found, text + ' ');
    }
    close(open);
    EXPECT_EQ(CountIn(folder), 1u);
    // A link that leads nowhere is a name that is taken, too.
    fs::remove(path);
    fs::create_symlink("nowhere", path);
    EXPECT_THROW(write("d", false), CFileException);
    // Pipes, devices and links to them are never replaced, other links are.
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    EXPECT_THROW(WholeFile(folder.Path("pipe")).Put(true), CFileException);
    EXPECT_TRUE(fs::is_fifo(folder.Path("pipe")));
    const std::string link = folder.Path("link");
    for (const char* const target : {"pipe", "/proc/self/exe"}) {
        fs::create_symlink(target, link);
        EXPECT_THROW(WholeFile(link).Put(true), CFileException) << target;
        EXPECT_TRUE(fs::is_symlink(link)) << target;
        fs::remove(link);
    }
    fs::remove(folder.Path("pipe"));
    WholeFile(path).Put(true);
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(path)));
    EXPECT_THROW(WholeFile(folder.Path("none/name")), CFileException);
    EXPECT_EQ(CountIn(folder), 1u);
}

TEST(ExportOptions, WordsThatDoNotGoTogether) {
    for (const auto& [line, good] : Table<std::string, bool>{
             {"f", true},
             {"", false},
             {"f --all g --out o --layer -1 --format ppm --strict --force --list", true},
             {"--all", false},
             {"f --what", false},
             {"-- --what", true},
             {"f --layer", false},
             {"f --format gif", false},
             {"f --merge-alpha --layer 1", true},
             {"f --merge-alpha --channel 1", false},
             {"f --merge-alpha --format ppm", false},
             {"--thumbnail 128 i o", true},
             {"--thumbnail 128 i o --strict", true},
             {"--thumbnail 128 i o --force", false},
             {"--thumbnail 128 i", false},
             {"--thumbnail 128 i o p", false},
             {"--thumbnail 0 i o", false},
             {"--thumbnail 4097 i o", false},
             {"--thumbnail 12x i o", false},
         }) {
        std::istringstream stream(line);
        const std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
        EXPECT_EQ(ParseOptions({words.begin(), words.end()}).has_value(), good) << line;
    }
}

// Positions of layers and channels that are chosen, and what is lacking.
std::string TextOf(const Chosen& chosen) {
    std::string text;
    for (const ListedPicture& picture : chosen.pictures)
        text += std::to_string(picture.selection.nLayer) + std::to_string(picture.selection.nChannel) + " ";
    for (const std::string& lacking : chosen.lacking) text += "; " + lacking;
    return text;
}

TEST(ExportChoice, NamesAndPositions) {
    PsdFields fields = {.channels = 1};
    fields.layers = {{.channels = {{.data = RawData({1})}}, .name = "sky"}, {.name = "1"}, {.name = "sky"}};
    const Shown shown(Psd(fields));
    PictureNames names(".png");
    const std::vector<ListedPicture> list = ListPictures(shown.document, "f", names);
    using Words = std::vector<std::string>;
    for (const auto& [layers, channels, all, text] : Table<Words, Words, bool, std::string>{
             {{}, {}, false, "00 "},
             {{}, {}, true, "00 01 10 11 20 30 "},
             {{"sky"}, {}, false, "10 30 "},
             {{"1"}, {}, true, "10 11 "},
             {{"3", "0"}, {}, false, "00 30 "},
             {{}, {"Black"}, false, "01 "},
             {{}, {"1"}, true, "01 11 "},
             {{"sky"}, {"0: Red"}, false, "11 "},
             {{"Sky"}, {"9"}, false, "; it has no layer \"Sky\""},
             {{"Sky", "4", "2"}, {"1"}, false,
                 "; it has no layer \"Sky\"; it has no layer \"4\"; it has no channel \"1\""},
         })
        EXPECT_EQ(TextOf(Choose(list, {layers, channels, all})), text);
}

TEST(Export, TellsWhatItDoesNotWrite) {
    const TempFolder folder;
    PsdFields lab = {.channels = 3, .mode = PSD_LAB};
    lab.layers = {{.right = 0, .name = "empty"}};
    const std::string path = folder.Write(Psd(lab), "lab");
    const auto exported = [&](Options options, bool bGood) {
        options.folder = folder.m_strPath;
        PictureNames names(".png");
        testing::internal::CaptureStderr();
        EXPECT_EQ(ExportFile(path, options, names), bGood);
        return testing::internal::GetCapturedStderr();
    };
    // What was asked for and is not there is a failure, and what is among all is none.
    EXPECT_TRUE(Has(exported({}, false), "lab: layer 0, channel 0: there is no picture\n"));
    const std::string all = exported({.choice = {.bAll = true}}, true);
    EXPECT_TRUE(Has(all, "read tolerantly, passing over: empty layers\n"));
    EXPECT_EQ(CountIn(folder), 4u);
    EXPECT_TRUE(Has(exported({.choice = {.channels = {"1"}}}, false), "lab.Image.Lightness.png: It is there already"));
    exported({.choice = {.channels = {"1"}}, .bForce = true}, true);
    EXPECT_TRUE(Has(exported({.choice = {.bAll = true}, .bStrict = true}, false), "refused"));
}

TEST(Export, WritesNoCompositeWithoutTheAlphaThatItHas) {
    const TempFolder folder;
    PsdFields fields = {.channels = 1};
    const Bytes broken = {0, 9};
    fields.layers = {{.channels = {{.id = -1, .data = RawData({7})}, {.data = RawData({8})}}, .name = "good"},
        {.channels = {{.id = -1, .data = broken}, {.data = RawData({8})}}, .name = "bad"}};
    const std::string path = folder.Write(Psd(fields), "f");
    PictureNames names(".png");
    testing::internal::CaptureStderr();
    const Options options = {.choice = {.layers = {"good", "bad"}}, .folder = folder.m_strPath, .bMergeAlpha = true};
    EXPECT_FALSE(ExportFile(path, options, names));
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(Has(told, "f: layer 2, channel 0: its alpha cannot be merged\n"));
    EXPECT_TRUE(fs::exists(folder.Path("f.good.Composite.png")));
    EXPECT_FALSE(fs::exists(folder.Path("f.bad.Composite.png")));
}

}  // namespace
