#include "framework/core/document.h"

#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"
#include "support/recorded_answers.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <new>
#include <stdexcept>

namespace {

class TestDocument final : public CDocument {
  public:
    void Serialize(CArchive& archive) override {
        char first = 0;
        if (archive.IsLoading() && archive.Read(&first, 1) == 1 && archive.GetFile()->GetLength() == 3)
            m_strRead = archive.m_strFileName;
        if (first == 'm') throw std::bad_alloc();
        if (first == 'r') AfxThrowArchiveException(CArchiveException::generic, archive.m_strFileName);
        if (first == 'x') throw std::runtime_error("Something else");
    }
    void DeleteContents() override { m_strRead.clear(); }

    std::string m_strRead;
};

TEST(Document, OpensOrSaysWhyNot) {
    RecordedAnswers answers;
    const std::string path =
        std::filesystem::temp_directory_path() / ("vistrel-document-" + std::to_string(getpid()));
    const auto open = [&](const char* contents) {
        std::ofstream(path) << contents;
        TestDocument document;
        const bool opened = document.OnOpenDocument(path);
        EXPECT_EQ(document.m_strRead, opened ? path : "");
        return opened;
    };
    EXPECT_TRUE(open("abc"));
    EXPECT_TRUE(answers.m_messages.empty());
    EXPECT_FALSE(open("mem"));
    EXPECT_FALSE(open("ref"));
    EXPECT_FALSE(open("xyz"));
    std::filesystem::remove(path);
    TestDocument document;
    EXPECT_FALSE(document.OnOpenDocument(path));
    const std::string named = "\"" + path + "\" was not opened. ";
    EXPECT_EQ(answers.m_messages,
              (std::vector<std::string>{named + "There is not enough memory.",
                                        named + "It is no document of the kinds that this viewer reads; "
                                                "vistrel-describe tells what it is.",
                                        named + "Something else.",
                                        named + "It cannot be opened: No such file or directory."}));
}

TEST(Document, GoesWithItsLastView) {
    struct Counted final : public CDocument {
        explicit Counted(int& alive) : m_alive(alive) { ++m_alive; }
        ~Counted() override { --m_alive; }
        int& m_alive;
    };
    int alive = 0;
    auto* const document = new Counted(alive);
    CView* const first = reinterpret_cast<CView*>(&alive);
    CView* const second = reinterpret_cast<CView*>(document);
    document->AddView(first);
    document->AddView(second);
    document->RemoveView(first);
    EXPECT_EQ(alive, 1);
    document->RemoveView(second);
    EXPECT_EQ(alive, 0);
}

TEST(Document, TheTitleIsTheLastPartOfThePath) {
    TestDocument document;
    document.SetPathName("some/folder/picture.iff");
    EXPECT_EQ(document.GetTitle(), "picture.iff");
    document.SetPathName("picture.iff");
    EXPECT_EQ(document.GetTitle(), "picture.iff");
}

}  // namespace
