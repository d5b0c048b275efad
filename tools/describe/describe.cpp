#include "tools/describe/describe.h"

#include "display/tolerance.h"
#include "document/finding_text.h"
#include "document/passed_text.h"
#include "document/vistrel_doc.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/regular_file.h"
#include "tools/describe/describe_iff.h"
#include "tools/describe/describe_pictures.h"
#include "tools/describe/describe_psd.h"
#include "tools/describe/json_writer.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <string_view>

namespace {

// Bytes of the UTF-8 character at the start of the text; 0 for a control character and for what is none.
size_t PlainLength(std::string_view text) {
    const u8 lead = static_cast<u8>(text[0]);
    if (lead < 0x80) return lead < 0x20 || lead == 0x7F ? 0 : 1;
    const size_t length = lead < 0xC2 || lead > 0xF4 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (text.size() < length) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((text[i] & 0xC0) != 0x80) return 0;
    const bool isControl = lead == 0xC2 && static_cast<u8>(text[1]) < 0xA0;
    return isControl ? 0 : length;
}

// How a file is called here.
struct Names {
    std::string path;
    std::string plain;  // for lines on standard error
};

void Say(const Names& names, const char* pszText) {
    std::fprintf(stderr, "%s: %s\n", names.plain.c_str(), pszText);
}

// False when the call ended with an exception, which is told.
template <typename Call>
bool Guarded(const Names& names, const Call& call) {
    try {
        call();
        return true;
    } catch (const CMemoryException& exception) {
        Say(names, AfxMemoryText(exception).data());
    } catch (const std::exception& exception) {
        Say(names, exception.what());
    }
    return false;
}

// A key and its value, which is null where there is none to write. What an exception cuts short is ended, and
// the answer is false.
template <typename Write>
bool WriteKey(JsonWriter& json, const char* pszKey, const Names& names, bool bKnown, const Write& write) {
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
bool WriteFile(JsonWriter& json, const CVistrelDoc& document, u32 nType, const Names& names,
               u64 nMostPixels) {
    const auto writeLayers = [&] { DescribeLayerList(json, document, names.plain, nMostPixels); };
    json.BeginObject();
    json.Key("accepted").Text(nType == DOC_PSD ? "psd" : nType == DOC_IFF ? "iff" : "none");
    json.Key("file").Text(std::string_view(names.path).substr(names.path.rfind('/') + 1));
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

std::string RefusalText(const CVistrelDoc& document) {
    return "refused. Photoshop reader: " + FindingText(document.m_Psd.GetFinding()) +
           "; IFF reader: " + FindingText(document.m_Iff.GetFinding());
}

DescribeResult LoadAndWrite(CFile& file, const Names& names, JsonWriter& json, Tolerance tolerance,
                            u64 nMostPixels) {
    CVistrelDoc document;
    document.m_tolerance = tolerance;
    bool refused = false;
    const bool loaded = Guarded(names, [&] {
        CArchive archive(&file, CArchive::load);
        try {
            document.Serialize(archive);
        } catch (const CArchiveException&) {
            refused = true;
        }
    });
    const bool whole = WriteFile(json, document, loaded ? document.m_nDocType : DOC_NONE, names, nMostPixels);
    if (refused) Guarded(names, [&] { Say(names, RefusalText(document).c_str()); });
    if (!loaded || !whole) return DescribeResult::NotWhole;
    return refused ? DescribeResult::Refused : DescribeResult::Accepted;
}

}  // namespace

DescribeResult DescribeFile(const std::string& strPath, std::FILE* pOut, Tolerance tolerance,
                            u64 nMostPixels) try {
    const Names names{strPath, PlainText(strPath)};
    JsonWriter json(pOut);
    std::unique_ptr<CRegularFile> file;
    const bool opened = Guarded(names, [&] { file = std::make_unique<CRegularFile>(strPath); });
    return opened ? LoadAndWrite(*file, names, json, tolerance, nMostPixels) : DescribeResult::CannotBeOpened;
} catch (const CMemoryException&) {
    std::fputs("There is not enough memory\n", stderr);
    return DescribeResult::CannotBeOpened;
}

std::string PlainText(const std::string& strText) {
    std::string plain;
    for (size_t at = 0; at < strText.size();) {
        const size_t length = PlainLength(std::string_view(strText).substr(at));
        plain += length == 0 ? "?" : strText.substr(at, length);
        at += std::max<size_t>(length, 1);
    }
    return plain;
}
