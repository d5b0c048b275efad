#include "framework/qt/program/shell_file_types.h"

#include <gtest/gtest.h>

TEST(ShellFileTypes, AnyPathOfTheProgramIsOneWordOfOneLine) {
    EXPECT_EQ(AfxMakeDesktopEntry("[Desktop Entry]\nTryExec=program\nExec=program -dde %F\nIcon=program\n",
                  "/a b/100%\"`$\\\n/program"),
        "[Desktop Entry]\nTryExec=/a b/100%\"`$\\\\\\n/program\n"
        "Exec=\"/a b/100%%\\\\\"\\\\`\\\\$\\\\\\\\\\n/program\" -dde %F\nIcon=program\n");
}

TEST(ShellFileTypes, TheEntryOfOneUserLacksWhatOnlyAnInstallationCanSay) {
    EXPECT_EQ(AfxMakeDesktopEntry("# What is installed.\n[Desktop Entry]\n#user MimeType=a;\nMimeType=a;b;\n#user\n"
                                  "DBusActivatable=true\nTerminal=false\n",
                  "/program"),
        "[Desktop Entry]\nMimeType=a;\nTerminal=false\n");
}
