#include "document/passed_text.h"

namespace {

struct PassedRow {
    Passed what;
    const char* pszText;
    bool bCounted = false;
};

// In the order of the kinds.
constexpr std::array<PassedRow, static_cast<size_t>(Passed::Count)> TEXTS = {{
    {Passed::Version2, "version 2"},
    {Passed::MoreChannels, "more than 24 channels"},
    {Passed::Floats, "32 bits a sample"},
    {Passed::Resources, "foreign resources", true},
    {Passed::LongPieces, "16 MiB and more in one piece", true},
    {Passed::Padding, "padded layer information"},
    {Passed::EmptyLayers, "empty layers", true},
    {Passed::EmptyMasks, "empty masks", true},
    {Passed::MaskData, "mask data of another length", true},
    {Passed::Zip, "ZIP channels", true},
    {Passed::DeepLayers, "layers of more than 8 bits"},
    {Passed::LooseRows, "loose PackBits rows"},
    {Passed::GlobalMask, "global mask of another length"},
    {Passed::TaggedBlocks, "tagged blocks"},
    {Passed::PackedDepths, "PackBits of 1, 16 or 32 bits"},
    {Passed::BrokenChannels, "channels that cannot be decoded", true},
    {Passed::BrokenLayers, "layers that cannot be read"},
    {Passed::BrokenComposite, "composite that cannot be read"},
    {Passed::NoMergedPicture, "no merged picture"},
    {Passed::PadByte, "missing pad byte"},
    {Passed::Nested, "first picture of an animation"},
    {Passed::Chunky, "one byte a pixel"},
    {Passed::PaddedRows, "padded plane rows"},
    {Passed::MaskPlane, "mask plane"},
    {Passed::TrueColour, "true colour planes"},
    {Passed::Ham, "hold and modify"},
    {Passed::HalfBrite, "extra half-brite"},
}};

}  // namespace

std::vector<std::string> PassedTexts(const PassedOver& passedOver) {
    static_assert([] {
        for (size_t i = 0; i < TEXTS.size(); ++i)
            if (TEXTS[i].what != static_cast<Passed>(i)) return false;
        return true;
    }());
    std::vector<std::string> texts;
    for (const PassedRow& row : TEXTS) {
        const u32 count = passedOver.CountOf(row.what);
        if (count == 0) continue;
        texts.emplace_back(row.pszText);
        if (row.bCounted && count > 1) texts.back() += " (" + std::to_string(count) + ")";
    }
    return texts;
}

std::string PassedText(const PassedOver& passedOver) {
    std::string text;
    for (const std::string& one : PassedTexts(passedOver)) text += (text.empty() ? "" : "; ") + one;
    return text;
}
