#include "tools/common/open_document.h"

#include "document/finding_text.h"
#include "document/vistrel_doc.h"
#include "framework/core/archive.h"
#include "framework/core/regular_file.h"

namespace {

std::string RefusalText(const CVistrelDoc& document) {
    return "refused. Photoshop reader: " + FindingText(document.m_Psd.GetFinding()) +
           "; IFF reader: " + FindingText(document.m_Iff.GetFinding());
}

}  // namespace

std::unique_ptr<CRegularFile> OpenFile(const FileNames& names) {
    std::unique_ptr<CRegularFile> file;
    Guarded(names, [&] { file = std::make_unique<CRegularFile>(names.path); });
    return file;
}

Loading LoadDocument(CVistrelDoc& document, CFile& file, const FileNames& names) {
    bool refused = false;
    const bool loaded = Guarded(names, [&] {
        CArchive archive(&file, CArchive::load);
        try {
            document.Serialize(archive);
        } catch (const CArchiveException&) {
            refused = true;
        }
    });
    if (refused) Guarded(names, [&] { Say(names, "%s", RefusalText(document).c_str()); });
    if (!loaded) return Loading::Failed;
    return refused ? Loading::Refused : Loading::Read;
}
