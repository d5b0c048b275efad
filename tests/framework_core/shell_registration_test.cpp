#include "framework/core/shell_registration.h"

#include <gtest/gtest.h>

TEST(ShellRegistration, AnyPathOfTheProgramIsOneWordOfOneLine) {
    const ShellRegistration registration = {"com.maker.Program", "A & <B>", "C", "image/x-c", "image/x-o", "O",
        {{".ABC", "Program.Picture", "Pictures & <more>"}}};
    const std::string entry = registration.MakeDesktopEntry("/a b/100%\"`$\\\n/program");
    const std::string package = registration.MakeMimePackage();
    for (const char* part : {"\nExec=\"/a b/100%%\\\\\"\\\\`\\\\$\\\\\\\\\\n/program\" -dde %F\n",
             "\nTryExec=/a b/100%\"`$\\\\\\n/program\n",
             "\nMimeType=image/x-program-picture;image/x-c;image/x-program-offer;\n",
             "<comment>Pictures &amp; &lt;more></comment>", "<glob pattern=\"*.abc\""})
        EXPECT_NE((entry + package).find(part), std::string::npos) << part << " is not in " << entry << package;
    EXPECT_EQ(package.find("<glob pattern", package.find("image/x-o")), std::string::npos) << package;
}
