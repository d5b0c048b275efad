#include "framework/core/document.h"

#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"
#include "support/recorded_answers.h"
#include "support/table.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

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

// The superuser reads everything, so what nobody may read is opened as somebody else.
class OrdinaryUser {
  public:
    OrdinaryUser() { Become(m_nBefore == 0 ? NOBODY : m_nBefore); }
    ~OrdinaryUser() { Become(m_nBefore); }
    OrdinaryUser(const OrdinaryUser&) = delete;

  private:
    static constexpr uid_t NOBODY = 65534;
    static void Become(uid_t nUser) {
        if (seteuid(nUser) != 0) throw std::runtime_error("no other user can be had");
    }

    const uid_t m_nBefore = geteuid();
};

TEST(Document, OpensOrSaysWhyNot) {
    const TempFolder folder;
    const std::string pipe = folder.Path("pipe"), socket = folder.Path("socket");
    ASSERT_TRUE(mkfifo(pipe.c_str(), 0600) == 0 && mknod(socket.c_str(), S_IFSOCK | 0600, 0) == 0);
    const std::string unreadable = folder.Write({'a'}, "unreadable");
    ASSERT_TRUE(chmod(folder.m_strPath.c_str(), 0755) == 0 && chmod(unreadable.c_str(), 0) == 0);
    for (const auto& [link, target] : Table<const char*, const char*>{
             {"to file", "a"}, {"to nothing", "gone"}, {"to itself", "to itself"}, {"to pipe", "pipe"}})
        std::filesystem::create_symlink(target, folder.Path(link));
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
             {"/dev/tty", "It is a device."},
             {"/proc/self/maps", ""},  // its size is 0, and so nothing is read
             {folder.Path("to file"), ""},
             {folder.Path("to nothing"), "No such file or directory."},
             {folder.Path("to itself"), "Too many levels of symbolic links."},
             {folder.Path("to pipe"), "It is a pipe."},
             {folder.Path("a/b"), "Not a directory."},
             {folder.Path(std::string(256, 'n')), "File name too long."},
             {folder.Write({'a'}, std::string(255, 'n')), ""},
             {folder.Write({'a'}, "<b>\n\xFF%41"), ""},
             {unreadable, "Permission denied."},
         }) {
        RecordedAnswers answers;
        TestDocument document;
        const OrdinaryUser user;
        EXPECT_EQ(document.OnOpenDocument(path), message.empty());
        EXPECT_EQ(document.m_strRead, message.empty() ? path : "");
        answers.m_messages.push_back("");
        EXPECT_EQ(answers.m_messages[0], message.empty() ? "" : "\"" + path + "\" was not opened. " + message);
    }
}

}  // namespace
