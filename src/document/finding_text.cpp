#include "document/finding_text.h"

#include "base/process_memory.h"
#include "framework/core/exception.h"
#include "psd/compression.h"
#include "psd/psd_image.h"

#include <array>
#include <cstring>
#include <string_view>

namespace {

struct RuleRow {
    Rule rule;
    const char* pszText;
};

static_assert(PSD_VERSION == 1 && PSD_LARGE_VERSION == 2 && PSD_FLOAT_DEPTH == 32, "as their sentences say");
static_assert(IsPsdDepth(1) && IsPsdDepth(8) && IsPsdDepth(16), "likewise");
static_assert(PSD_RAW == 0 && PSD_PACK_BITS == 1, "likewise");
static_assert(PSD_BITMAP == 0 && PSD_CMYK == 4 && PSD_MULTICHANNEL == 7 && PSD_LAB == 9, "likewise");

// In the order of the rules. {found} and {read} are the finding's numbers; what else stands in braces follows
// from them.
constexpr std::array<RuleRow, static_cast<size_t>(Rule::Count)> RULES = {{
    {Rule::None, "nothing is wrong"},
    {Rule::DataEnds, "the file ends"},
    {Rule::SourceFailed, "the file cannot be read{error}"},
    {Rule::SourceTooLarge, "the file is too large; at most {read} bytes are read"},
    {Rule::NotEnoughMemory, "there is not enough memory for it{limit}"},
    {Rule::NotAsked, "not asked, since the first had come to no good end"},
    {Rule::PsdSignature, "it does not begin with 8BPS"},
    {Rule::PsdVersion, "version {found}; {versions} read"},
    {Rule::PsdChannelCount, "{found} channels; 1 to {read} are read"},
    {Rule::PsdRows, "{found} rows; 1 to {read} are read"},
    {Rule::PsdColumns, "{found} columns; 1 to {read} are read"},
    {Rule::PsdDepth, "{found} bits a sample; {depths} are read"},
    {Rule::PsdColourMode, "colour mode {found}; 0 to 4 and 7 to 9 are read"},
    {Rule::PsdPaletteLength, "{found} bytes of palette; {read} are read"},
    {Rule::PsdResourceSignature, "no 8BIM at its start"},
    {Rule::PsdResourceSize, "{found} bytes; less than {read} are read"},
    {Rule::PsdAlphaNames, "its names do not end with its {found} bytes"},
    {Rule::PsdSectionLength, "it has {found} bytes, its parts take {read}"},
    {Rule::PsdLayersPadded, "it is padded by {found} bytes; 0 to {read} are read"},
    {Rule::PsdChannelsBeyondData,
     "the channels up to it take {found} bytes of image data or more; the file has {read}"},
    {Rule::PsdChannelLength, "{found} bytes of image data; less than {read} are read"},
    {Rule::PsdBlendSignature, "no 8BIM before the blend mode"},
    {Rule::PsdMaskSize, "layer mask data of {found} bytes; 0 or {read} are read"},
    {Rule::PsdExtraLength, "{found} bytes of extra data; its fields take {read}"},
    {Rule::PsdZip, "compression {found} (ZIP); 0 or 1 is read"},
    {Rule::PsdChannelCompression, "compression {found}; 0 or 1 is read"},
    {Rule::PsdRawLength, "{found} bytes of raw data; {read} are read"},
    {Rule::PsdPackedLength, "{found} bytes of PackBits data; its row lengths make {read}"},
    {Rule::PsdTooFewPackedBytes, "its PackBits rows have {found} bytes; they take {read} or more"},
    {Rule::PsdPackedRow, "it does not unpack to its width from {found} bytes"},
    {Rule::PsdTaggedBlocks, "tagged blocks stand before it"},
    {Rule::PsdCompositeCompression,
     "compression {found} with {read} bits a sample; 0, or 1 with 8 bits, is read"},
    {Rule::IffTooLarge, "the file has {found} bytes; at most {read} are read"},
    {Rule::IffOutermostId, "{id}; FORM, LIST or CAT is read"},
    {Rule::IffNesting, "{found} containers one inside another; {read} are read"},
    {Rule::IffChunkSize, "{found} bytes; at most {read} are read"},
    {Rule::IffOverrun, "{found} bytes; its container has {read} left"},
    {Rule::IffChunkTooShort, "{found} bytes are too few for it"},
    {Rule::IffContainerEnds, "its container of {found} bytes ends"},
    {Rule::IffBlocksSize, "{found} bytes of blocks; the chunk has {read} left"},
}};

// In the order of the places. A chunk's path follows its place.
constexpr std::array<const char*, static_cast<size_t>(Place::Count)> PLACES = {
    "header",
    "header",
    "colour mode data",
    "image resources",
    "resource {index}",
    "layer and mask information",
    "layer information",
    "layer record {index}",
    "channel {channel} of layer record {index}",
    "layer {index}",
    "the mask of layer {index}",
    "channel {channel} of layer {index}",
    "row {row} of channel {channel} of layer {index}",
    "global layer mask",
    "composite",
    "row {row} of channel {channel} of the composite",
    "the outermost id",
    "the id of a chunk",
    "the size",
    "the container",
    "the type",
    "the body",
    "the pad byte",
};

void Replace(std::string& strText, std::string_view name, const std::string& strValue) {
    const size_t at = strText.find(name);
    if (at != std::string::npos) strText.replace(at, name.size(), strValue);
}

std::string ErrorText(int nError) {
    return nError == 0 ? std::string() : ": " + AfxErrorText(nError);
}

std::string LimitText(const Finding& finding) {
    if (finding.nFound == 0) return {};
    const u64 wanted = static_cast<u64>(finding.nFound);
    const u64 left = static_cast<u64>(finding.nRead);
    return std::string(". ") + ToShortageText(wanted, left).data();
}

std::string Quoted(u32 nId) {
    char characters[sizeof(nId)];
    std::memcpy(characters, &nId, sizeof(nId));
    std::string text(characters, sizeof(nId));
    for (char& c : text)
        if (c < 0x20 || c > 0x7E) c = '?';
    return '"' + text + '"';
}

// The chunks around a place, the outermost first. The middle of a path through thousands of containers says
// nothing.
std::string PathText(const std::vector<u32>& path) {
    constexpr size_t SHOWN_AT_EACH_END = 3;
    std::string text;
    for (size_t left = path.size(); left > 0; --left) {
        text += (text.empty() ? " in " : "/") + Quoted(path[left - 1]);
        if (path.size() > 2 * SHOWN_AT_EACH_END && left == path.size() - SHOWN_AT_EACH_END + 1) {
            text += "/...";
            left = SHOWN_AT_EACH_END + 1;
        }
    }
    return text;
}

std::string PlaceText(const Finding& finding) {
    std::string text = PLACES[static_cast<size_t>(finding.place)];
    Replace(text, "{index}", std::to_string(finding.nIndex));
    Replace(text, "{channel}", std::to_string(finding.nChannel));
    Replace(text, "{row}", std::to_string(finding.nRow));
    return text + PathText(finding.path);
}

}  // namespace

std::string RuleText(const Finding& finding) {
    static_assert([] {
        for (size_t i = 0; i < RULES.size(); ++i)
            if (RULES[i].rule != static_cast<Rule>(i)) return false;
        return true;
    }());
    std::string text = RULES[static_cast<size_t>(finding.rule)].pszText;
    Replace(text, "{found}", std::to_string(finding.nFound));
    Replace(text, "{read}", std::to_string(finding.nRead));
    Replace(text, "{versions}", finding.nRead == PSD_LARGE_VERSION ? "1 and 2 are" : "version 1 is");
    Replace(text, "{depths}", finding.nRead == PSD_FLOAT_DEPTH ? "1, 8, 16 or 32" : "1, 8 or 16");
    if (finding.rule == Rule::IffOutermostId) Replace(text, "{id}", Quoted(static_cast<u32>(finding.nFound)));
    if (finding.rule == Rule::NotEnoughMemory) Replace(text, "{limit}", LimitText(finding));
    if (finding.rule == Rule::SourceFailed)
        Replace(text, "{error}", ErrorText(static_cast<int>(finding.nFound)));
    return text;
}

std::string FindingText(const Finding& finding) {
    if (finding.rule == Rule::NotAsked) return RuleText(finding);
    return "stopped at byte " + std::to_string(finding.nPosition) + ", " + PlaceText(finding) + ": " +
           RuleText(finding);
}
