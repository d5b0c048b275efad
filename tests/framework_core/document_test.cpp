#include "framework/core/document.h"

#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"
#include "support/recorded_answers.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

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
    const TempFolder folder;
    const auto open = [](const std::string& path) {
        TestDocument document;
        const bool opened = document.OnOpenDocument(path);
        EXPECT_EQ(document.m_strRead, opened ? path : "");
        return opened;
    };
    EXPECT_TRUE(open(folder.Write({'a', 'b', 'c'})));
    EXPECT_TRUE(answers.m_messages.empty());
    for (const u8 first : {'m', 'r', 'x'}) EXPECT_FALSE(open(folder.Write({first, 'y', 'z'})));
    EXPECT_FALSE(open(folder.Path("gone")));
    const std::string lead = "\"" + folder.Path("file") + "\" was not opened. ";
    EXPECT_EQ(answers.m_messages,
        (std::vector<std::string>{lead + "There is not enough memory.",
            lead + "It is no document of the kinds that this viewer reads.", lead + "Something else.",
            "\"" + folder.Path("gone") + "\" was not opened. It cannot be opened: No such file or directory."}));
}

TEST(Document, GoesWithItsLastView) {
    struct Counted final : public CDocument {
        explicit Counted(bool& gone) : m_gone(gone) {}
        ~Counted() override { m_gone = true; }
        bool& m_gone;
    };
    bool gone = false;
    auto* const document = new Counted(gone);
    CView* const first = reinterpret_cast<CView*>(&gone);
    CView* const second = reinterpret_cast<CView*>(document);
    document->AddView(first);
    document->AddView(second);
    document->RemoveView(first);
    EXPECT_FALSE(gone);
    document->RemoveView(second);
    EXPECT_TRUE(gone);
}

TEST(Document, TheTitleIsTheLastPartOfThePath) {
    TestDocument document;
    for (const char* path : {"some/folder/picture.iff", "picture.iff"}) {
        document.SetPathName(path);
        EXPECT_EQ(document.GetTitle(), "picture.iff");
    }
}

}  // namespace
