#include "tools/describe/describe.h"

#include "document/vistrel_doc.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/regular_file.h"
#include "tools/describe/describe_iff.h"
#include "tools/describe/describe_pictures.h"
#include "tools/describe/describe_psd.h"
#include "tools/describe/json_writer.h"
#include "tools/describe/refusal.h"

#include <memory>
#include <new>

namespace {

bool Load(CVistrelDoc& document, CFile& file) {
    CArchive archive(&file, CArchive::load);
    try {
        document.Serialize(archive);
        return true;
    } catch (const CArchiveException&) {
        return false;
    }
}

void WriteFile(JsonWriter& json, const CVistrelDoc& document, const std::string& strPath) {
    const u32 type = document.m_nDocType;
    json.BeginObject();
    json.Key("accepted").Text(type == DOC_PSD ? "psd" : type == DOC_IFF ? "iff" : "none");
    json.Key("file").Text(strPath.substr(strPath.rfind('/') + 1));
    json.Key("iff");
    if (type == DOC_IFF)
        DescribeChunk(json, *document.m_Iff.GetRoot());
    else
        json.Null();
    json.Key("layer_list");
    if (type == DOC_NONE)
        json.Null();
    else
        DescribeLayerList(json, document, strPath);
    json.Key("psd");
    if (type == DOC_PSD)
        DescribePsd(json, document.m_Psd);
    else
        json.Null();
    json.EndObject();
    json.EndLine();
}

// What a refused document has left behind is gone when this returns.
bool ReadAndWrite(CFile& file, const std::string& strPath, std::FILE* out) {
    CVistrelDoc document;
    const bool accepted = Load(document, file);
    JsonWriter json(out);
    WriteFile(json, document, strPath);
    return accepted;
}

}  // namespace

DescribeResult DescribeFile(const std::string& strPath, std::FILE* out) {
    const auto fail = [&](const char* reason) {
        std::fprintf(stderr, "%s: %s\n", strPath.c_str(), reason);
        return DescribeResult::CannotBeOpened;
    };
    try {
        CRegularFile file(strPath);
        if (ReadAndWrite(file, strPath, out)) return DescribeResult::Accepted;
        std::fprintf(stderr, "%s: refused. %s\n", strPath.c_str(), DescribeRefusal(file).c_str());
        return DescribeResult::Refused;
    } catch (const CException& exception) {
        return fail(exception.what());
    } catch (const std::bad_alloc&) {
        return fail(CMemoryException().what());
    }
}
