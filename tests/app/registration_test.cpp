// What the desktop is told of the program is what the program says of itself.

#include "framework/core/doc_string.h"
#include "framework/core/resource.h"
#include "window_case.h"

#include <algorithm>
#include <cctype>

namespace {

std::string Lower(std::string strText) {
    std::ranges::transform(strText, strText.begin(), [](char c) { return static_cast<char>(std::tolower(c)); });
    return strText;
}

// Each kind with its MIME type, its name and the pattern that is left to whoever claims it more strongly.
std::string DesktopTypes() {
    std::string types;
    for (const u32 id : {IDR_ALL_TYPES, IDR_IFF_TYPE, IDR_TFF_TYPE, IDR_TMG_TYPE, IDR_PSD_TYPE}) {
        const std::string fields = AfxLoadString(id);
        std::string type = Lower(GetDocString(fields, DocStringField::RegFileTypeId));
        std::ranges::replace(type, '.', '-');
        if (type.empty()) continue;
        types += "  <mime-type type=\"image/x-" + type + "\">\n    <comment>" +
                 GetDocString(fields, DocStringField::RegFileTypeName) +
                 "</comment>\n    <sub-class-of type=\"image/x-ilbm\"/>\n    <glob pattern=\"*" +
                 Lower(GetDocString(fields, DocStringField::FilterExt)) + "\" weight=\"40\"/>\n  </mime-type>\n";
    }
    return types;
}

}  // namespace

TEST(Registration, TheDesktopKnowsTheKindsThatTheTemplatesRegisterAndNoOther) {
    const std::string package = AfxLoadString(AFX_IDS_SHELL_PACKAGE), types = DesktopTypes();
    EXPECT_NE(package.find(types), std::string::npos) << package << "lacks\n" << types;
    EXPECT_EQ(package.rfind("<glob"), package.find(types) + types.rfind("<glob")) << "no other patterns";
    const std::string entry = AfxLoadString(AFX_IDS_SHELL_ENTRY), title = AfxLoadString(AFX_IDS_APP_TITLE);
    for (const std::string& line : Texts{"Name=" + title, "Icon=" + AfxLoadString(AFX_IDS_SHELL_NAME),
             "MimeType=image/x-vistrel-stdgraphic;image/x-vistrel-graphic;image/x-vistrel-graphic2;image/x-ilbm;"
             "image/x-vistrel-offer;"})
        EXPECT_NE(entry.find("\n" + line + "\n"), std::string::npos) << entry << "lacks " << line;
}
