#include "framework/core/shell_registration.h"

#include <gtest/gtest.h>

TEST(ShellRegistration, AnyPathOfTheProgramIsOneWordOfOneLine) {
    const ShellRegistration registration = {"com.maker.Program", "A & <B>", "C", "image/x-c", "image/x-o", "O",
        {{".ABC", "Program.Picture", "Pictures & <more>"}}};
    const std::string entry = registration.MakeDesktopEntry("/a b/100%\"`$\\\n/program");
    const std::string package = registration.MakeMimePackage();
    for (const char* part : {"\nExec=\"/a b/100%%\\\\\"\\\\`\\\\$\\\\\\\\\\n/program\" -dde %F\n",
             "\nTryExec=/a b/100%\"`$\\\\\\n/program\n", "<comment>Pictures &amp; &lt;more></comment>"})
        EXPECT_NE((entry + package).find(part), std::string::npos) << part << " is not in " << entry << package;
}
