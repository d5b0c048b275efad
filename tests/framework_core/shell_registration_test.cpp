#include "framework/core/shell_registration.h"

#include <gtest/gtest.h>

TEST(ShellRegistration, AnyPathOfTheProgramIsOneWordOfOneLine) {
    const ShellRegistration registration = {"com.maker.Program", "A & <B>", "C", "image/x-c", "image/x-o", "O",
        {{".ABC", "Program.Picture", "Pictures & <more>"}}};
    const std::string entry = registration.MakeDesktopEntry("/a b/100%\"`$\\\n/program");
    EXPECT_NE(entry.find("\nExec=\"/a b/100%%\\\\\"\\\\`\\\\$\\\\\\\\\\n/program\" -dde %F\n"), std::string::npos)
        << entry;
    EXPECT_NE(entry.find("\nTryExec=/a b/100%\"`$\\\\\\n/program\n"), std::string::npos) << entry;
    EXPECT_NE(entry.find("\nMimeType=image/x-program-picture;image/x-c;image/x-program-offer;\n"), std::string::npos)
        << entry;

    const std::string package = registration.MakeMimePackage();
    EXPECT_NE(package.find("<comment>Pictures &amp; &lt;more></comment>"), std::string::npos) << package;
    EXPECT_NE(package.find("<glob pattern=\"*.abc\""), std::string::npos) << package;
    EXPECT_EQ(package.find("<glob pattern", package.find("image/x-o")), std::string::npos) << package;
}
