#include "framework/core/document.h"

#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"
#include "support/recorded_answers.h"
#include "support/table.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <sys/stat.h>

namespace {

// Its file's first byte says how its reading ends.
struct TestDocument final : public CDocument {
    void Serialize(CArchive& archive) override {
        char first = 0;
        archive.Read(&first, 1);
        m_strRead = archive.m_strFileName;
        if (first == 'm') throw std::bad_alloc();
        if (first == 'w') m_strReason = "It says why";
        if (first == 'r' || first == 'w') AfxThrowArchiveException(CArchiveException::generic, archive.m_strFileName);
        if (first == 'x') throw std::runtime_error("Something else");
    }
    void DeleteContents() override { m_strRead.clear(); }
    std::string GetRefusalReason() const override { return m_strReason; }

    std::string m_strRead, m_strReason;
};

TEST(Document, OpensOrSaysWhyNot) {
    const TempFolder folder;
    const std::string pipe = folder.Path("pipe"), socket = folder.Path("socket");
    ASSERT_TRUE(mkfifo(pipe.c_str(), 0600) == 0 && mknod(socket.c_str(), S_IFSOCK | 0600, 0) == 0);
    for (const auto& [path, message] : Table<std::string, std::string>{
             {folder.Write({'a'}, "a"), ""},
             {folder.Write({}, "empty"), ""},
             {folder.Write({'m'}, "m"), "There is not enough memory."},
             {folder.Write({'r'}, "r"), "It is no document of the kinds that this viewer reads."},
             {folder.Write({'w'}, "w"), "It says why."},
             {folder.Write({'x'}, "x"), "Something else."},
             {folder.Path("gone"), "No such file or directory."},
             {folder.m_strPath, "It is a folder."},
             {pipe, "It is a pipe."},
             {socket, "It is a socket."},
             {"/dev/zero", "It is a device."},
         }) {
        RecordedAnswers answers;
        TestDocument document;
        EXPECT_EQ(document.OnOpenDocument(path), message.empty());
        EXPECT_EQ(document.m_strRead, message.empty() ? path : "");
        answers.m_messages.push_back("");
        EXPECT_EQ(answers.m_messages[0], message.empty() ? "" : "\"" + path + "\" was not opened. " + message);
    }
}

}  // namespace
