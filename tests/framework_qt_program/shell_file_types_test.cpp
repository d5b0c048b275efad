#include "framework/qt/program/shell_file_types.h"

#include <gtest/gtest.h>

TEST(ShellFileTypes, AnyPathOfTheProgramIsOneWordOfOneLine) {
    EXPECT_EQ(AfxMakeDesktopEntry("[Desktop Entry]\nTryExec=program\nExec=program -dde %F\nIcon=program\n",
                  "/a b/100%\"`$\\\n/program"),
        "[Desktop Entry]\nTryExec=/a b/100%\"`$\\\\\\n/program\n"
        "Exec=\"/a b/100%%\\\\\"\\\\`\\\\$\\\\\\\\\\n/program\" -dde %F\nIcon=program\n");
}
