// What the desktop is told of the program is what the program says of itself.

#include "framework/core/doc_string.h"
#include "framework/qt/program/shell_file_types.h"
#include "window_case.h"

TEST(Registration, TheDesktopKnowsTheKindsThatTheTemplatesRegister) {
    const std::string package = AfxLoadString(AFX_IDS_SHELL_PACKAGE);
    const std::string installed = AfxLoadString(AFX_IDS_SHELL_ENTRY);
    const std::string entry = AfxMakeDesktopEntry(installed, "/vistrel");
    for (const auto& [id, kind, mime] :
        Table<u32, std::string, std::string>{{IDR_IFF_TYPE, "Vistrel.StdGraphic", "image/x-vistrel-stdgraphic"},
            {IDR_TFF_TYPE, "Vistrel.Graphic", "image/x-vistrel-graphic"},
            {IDR_TMG_TYPE, "Vistrel.Graphic2", "image/x-vistrel-graphic2"}}) {
        const std::string fields = AfxLoadString(id);
        EXPECT_EQ(GetDocString(fields, DocStringField::RegFileTypeId), kind);
        const std::string type = "<mime-type type=\"" + mime + "\">\n    <comment>" +
                                 GetDocString(fields, DocStringField::RegFileTypeName) + "</comment>\n";
        EXPECT_TRUE(Has(package, type)) << "lacks " << type;
        EXPECT_TRUE(Has(entry, mime + ";"));
    }
    for (const u32 id : {IDR_ALL_TYPES, IDR_PSD_TYPE})
        EXPECT_EQ(GetDocString(AfxLoadString(id), DocStringField::RegFileTypeId), "");
    EXPECT_FALSE(Has(entry, "photoshop"));
    EXPECT_TRUE(Has(entry, "\nStartupNotify=true\n")) << "or no desktop says who has asked";
    EXPECT_TRUE(Has(installed, "image/x-ilbm;image/vnd.adobe.photoshop;\n"));
    EXPECT_FALSE(Has(package, "photoshop"));
    EXPECT_TRUE(Has(entry, "\nIcon=" + AfxLoadString(AFX_IDS_SHELL_NAME) + "\n"));
}
