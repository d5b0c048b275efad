#include "tools/describe/describe.h"

#include "display/passed_over_in.h"
#include "document/passed_text.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "framework/core/path_name.h"
#include "framework/core/regular_file.h"
#include "tools/common/open_document.h"
#include "tools/describe/describe_iff.h"
#include "tools/describe/describe_pictures.h"
#include "tools/describe/describe_psd.h"
#include "tools/describe/json_writer.h"

#include <memory>
#include <string_view>

namespace {

// A key and its value, which is null where there is none to write. What an exception cuts short is ended, and
// the answer is false.
template <typename Write>
bool WriteKey(JsonWriter& json, const char* pszKey, const FileNames& names, bool bKnown, const Write& write) {
    json.Key(pszKey);
    if (!bKnown) {
        json.Null();
        return true;
    }
    const size_t depth = json.Depth();
    const bool whole = Guarded(names, write);
    if (!whole) json.CloseTo(depth);
    return whole;
}

void WritePassedOver(JsonWriter& json, const CVistrelDoc& document, u32 nType) {
    json.BeginArray();
    if (nType != DOC_NONE)
        for (const std::string& text : PassedTexts(PassedOverIn(document))) json.Text(text);
    json.EndArray();
}

// nType: what the document holds, DOC_NONE for one that was not read. Whether everything could be written.
bool WriteFile(JsonWriter& json, const CVistrelDoc& document, u32 nType, const FileNames& names,
               u64 nMostPixels) {
    const auto writeLayers = [&] { DescribeLayerList(json, document, names, nMostPixels); };
    json.BeginObject();
    json.Key("accepted").Text(nType == DOC_PSD ? "psd" : nType == DOC_IFF ? "iff" : "none");
    json.Key("file").Text(FileNameOf(names.path));
    bool whole = true;
    whole &= WriteKey(json, "iff", names, nType == DOC_IFF,
                      [&] { DescribeChunk(json, *document.GetIff(document.GetRules()).GetRoot()); });
    whole &= WriteKey(json, "layer_list", names, nType != DOC_NONE, writeLayers);
    if (document.m_tolerance != Tolerance::None)
        whole &= WriteKey(json, "passed_over", names, true, [&] { WritePassedOver(json, document, nType); });
    whole &= WriteKey(json, "psd", names, nType == DOC_PSD, [&] { DescribePsd(json, document.m_Psd); });
    json.EndObject();
    json.EndLine();
    return whole;
}

DescribeResult LoadAndWrite(CFile& file, const FileNames& names, JsonWriter& json, Tolerance tolerance,
                            u64 nMostPixels) {
    CVistrelDoc document;
    document.m_tolerance = tolerance;
    const Loading loading = LoadDocument(document, file, names);
    const u32 type = loading == Loading::Failed ? DOC_NONE : document.m_nDocType;
    const bool whole = WriteFile(json, document, type, names, nMostPixels);
    if (loading == Loading::Failed || !whole) return DescribeResult::NotWhole;
    return loading == Loading::Refused ? DescribeResult::Refused : DescribeResult::Accepted;
}

}  // namespace

DescribeResult DescribeFile(const std::string& strPath, std::FILE* pOut, Tolerance tolerance,
                            u64 nMostPixels) try {
    const FileNames names = NamesOf(strPath);
    JsonWriter json(pOut);
    const std::unique_ptr<CRegularFile> file = OpenFile(names);
    return file ? LoadAndWrite(*file, names, json, tolerance, nMostPixels) : DescribeResult::CannotBeOpened;
} catch (const CMemoryException& exception) {
    // Even a name to say it of takes memory.
    std::fprintf(stderr, "%s\n", AfxMemoryText(exception).data());
    return DescribeResult::CannotBeOpened;
}
