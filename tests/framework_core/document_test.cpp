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

struct TestDocument final : public CDocument {
    explicit TestDocument(bool* pGone = nullptr) : m_pGone(pGone) {}
    ~TestDocument() override {
        if (m_pGone) *m_pGone = true;
    }
    void Serialize(CArchive& archive) override {
        char first = 0;
        if (archive.IsLoading() && archive.Read(&first, 1) == 1 && archive.GetFile()->GetLength() == 3)
            m_strRead = archive.m_strFileName;
        if (first == 'm') throw std::bad_alloc();
        if (first == 'r') AfxThrowArchiveException(CArchiveException::generic, archive.m_strFileName);
        if (first == 'x') throw std::runtime_error("Something else");
    }
    void DeleteContents() override { m_strRead.clear(); }

    bool* const m_pGone;
    std::string m_strRead;
};

TEST(Document, OpensOrSaysWhyNot) {
    RecordedAnswers answers;
    const TempFolder folder;
    const std::string path = folder.Path("file"), gone = folder.Path("gone");
    const std::string lead = "\"" + path + "\" was not opened. ";
    EXPECT_FALSE(TestDocument().OnOpenDocument(gone));
    EXPECT_EQ(
        answers.m_messages.back(), "\"" + gone + "\" was not opened. It cannot be opened: No such file or directory.");
    for (const auto& [first, message] : {std::pair{'m', "There is not enough memory."},
             {'r', "It is no document of the kinds that this viewer reads; vistrel-describe tells what it is."},
             {'x', "Something else."}, {'a', ""}}) {
        folder.Write({static_cast<u8>(first), 'y', 'z'});
        TestDocument document;
        answers.m_messages = {lead};
        EXPECT_EQ(document.OnOpenDocument(path), first == 'a');
        EXPECT_EQ(document.m_strRead, first == 'a' ? path : "");
        EXPECT_EQ(answers.m_messages.back(), lead + message);
    }
}

TEST(Document, GoesWithItsLastView) {
    bool gone = false;
    auto* const document = new TestDocument(&gone);
    CView* const first = reinterpret_cast<CView*>(&gone);
    CView* const second = reinterpret_cast<CView*>(document);
    document->AddView(first);
    document->AddView(second);
    document->RemoveView(first);
    EXPECT_FALSE(gone);
    document->RemoveView(second);
    EXPECT_TRUE(gone);
}

}  // namespace
