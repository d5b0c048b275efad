#include "display/catalogue.h"

#include "chunks/alph_chunk.h"
#include "chunks/extension_chunks.h"
#include "chunks/ilbm_chunks.h"
#include "display/ilbm_colours.h"
#include "document/vistrel_doc.h"
#include "iff/container.h"

#include <algorithm>
#include <span>
#include <string_view>

// IFF documents

namespace {

bool TakeFirst(IffChunk* pChunk, void* pContext) {
    *static_cast<IffChunk**>(pContext) = pChunk;
    return false;
}

// The first chunk of its class in a form of that type.
template <typename Class>
Class* FindFirstOf(IffContainer& part, IffId formType) {
    IffChunk* found = nullptr;
    part.ForEach(formType, Class::ID, TakeFirst, &found);
    return dynamic_cast<Class*>(found);
}

u32 PlaneCount(const IffChunk& body) {
    const auto* const header = dynamic_cast<const BmhdChunk*>(body.FindProperty(BmhdChunk::ID));
    return header ? header->m_nPlanes : 0;
}

// Of a form with one byte a pixel only what has as many planes as a byte has bits.
bool IsReadable(const BodyChunk& body) {
    constexpr u32 CHUNKY_PLANES = 8;
    const u32 planes = PlaneCount(body);
    return body.m_pParent->m_Type == ID_PBM ? planes == CHUNKY_PLANES : planes > 0;
}

struct DeepestBody {
    BodyChunk* pBody = nullptr;
    u32 nPlanes = 0;
};

// Keeps the body whose header has the most planes; of equals the first, and never one without planes.
bool KeepDeepest(IffChunk* pChunk, void* pContext) {
    auto* const deepest = static_cast<DeepestBody*>(pContext);
    auto* const body = dynamic_cast<BodyChunk*>(pChunk);
    const u32 planes = body && IsReadable(*body) ? PlaneCount(*body) : 0;
    if (planes > deepest->nPlanes) *deepest = {body, planes};
    return true;
}

IffContainer* RootOf(const CVistrelDoc& document, const ReadingRules& rules) {
    return dynamic_cast<IffContainer*>(document.GetIff(rules).GetRoot());
}

// The first body in file order, forms inside forms too, whose header has planes.
BodyChunk* FindAnyBody(const IffContainer& part) {
    for (const IffChunkNode* node = part.m_pFirst; node; node = node->m_pNext) {
        IffChunk* const chunk = node->m_pChunk.Get();
        auto* const body = chunk->m_Id == BodyChunk::ID ? dynamic_cast<BodyChunk*>(chunk) : nullptr;
        if (body && IsReadable(*body)) return body;
        const auto* const container = dynamic_cast<const IffContainer*>(chunk);
        BodyChunk* const inside = container ? FindAnyBody(*container) : nullptr;
        if (inside) return inside;
    }
    return nullptr;
}

// Levels are counted among all LISTs of type ILBM beside the form that holds the level count, from 1.
IffContainer* FindLevel(const IffContainer& chain, u32 nLevel) {
    for (const IffChunkNode* node = chain.FindFirst(ID_LIST); node; node = chain.FindNext(node, ID_LIST)) {
        auto* const list = dynamic_cast<IffContainer*>(node->m_pChunk.Get());
        if (list && list->m_Type.Matches(ID_ILBM) && --nLevel == 0) return list;
    }
    return nullptr;
}

}  // namespace

IffContainer* FindLayerPart(const CVistrelDoc& document, u32 nLayer, const ReadingRules& rules) {
    IffContainer* const root = RootOf(document, rules);
    if (!root || nLayer == 0) return root;
    const ContChunk* const levels = FindFirstOf<ContChunk>(*root, ID_MIPM);
    const IffContainer* const chain = levels ? levels->m_pParent->m_pParent : nullptr;
    return chain ? FindLevel(*chain, nLayer) : nullptr;
}

PictureChoice ChoosePicture(IffContainer& part, const ReadingRules& rules, PassedOver& passedOver) {
    DeepestBody deepest;
    part.ForEach(ID_ILBM, BodyChunk::ID, KeepDeepest, &deepest);
    S3tcChunk* const s3tc = deepest.pBody ? nullptr : FindFirstOf<S3tcChunk>(part, ID_ILBM);
    if (s3tc) return {nullptr, s3tc};
    if (!deepest.pBody && rules.bChunky) part.ForEach(ID_PBM, BodyChunk::ID, KeepDeepest, &deepest);
    if (!deepest.pBody && rules.bNested) {
        deepest.pBody = FindAnyBody(part);
        if (deepest.pBody) passedOver.Add(Passed::Nested);
    }
    // Whether its colours are known decides about the picture, not about which body it is.
    if (!deepest.pBody || !HasColours(*deepest.pBody, rules)) return {};
    return {deepest.pBody, nullptr};
}

bool OffersAlpha(const PictureChoice& choice) {
    // An alpha picture goes with a colour map; one beside true colour planes is another program's.
    if (choice.pBody)
        return choice.pBody->FindProperty(CmapChunk::ID) && choice.pBody->FindProperty(AlphChunk::ID);
    return choice.pS3tc && choice.pS3tc->m_Code != IffId("DXT1");
}

// Photoshop documents

namespace {

bool IsBlank(std::string_view name) {
    return name.find_first_not_of(' ') == name.npos;
}

std::span<const char* const> ColourNames(u32 nMode) {
    static constexpr const char* BLACK[] = {"Black"};
    static constexpr const char* INDEX[] = {"Index"};
    static constexpr const char* RGB[] = {"Red", "Green", "Blue"};
    static constexpr const char* CMYK[] = {"Cyan", "Magenta", "Yellow", "Black"};
    static constexpr const char* LAB[] = {"Lightness", "a", "b"};
    switch (nMode) {
        case PSD_BITMAP:
        case PSD_GREYSCALE:
        case PSD_DUOTONE:
            return BLACK;
        case PSD_INDEXED:
            return INDEX;
        case PSD_RGB:
            return RGB;
        case PSD_CMYK:
            return CMYK;
        case PSD_LAB:
            return LAB;
        default:
            return {};
    }
}

const PsdAlphaNamesData* FindAlphaNames(const PsdImage& psd) {
    const auto found = std::ranges::find_if(
        psd.m_Resources, [](const auto& resource) { return resource->m_nId == PSD_RESOURCE_ALPHA_NAMES; });
    return found == psd.m_Resources.end() ? nullptr
                                          : dynamic_cast<const PsdAlphaNamesData*>((*found)->m_pData.get());
}

std::string LayerChannelName(i32 nId, u32 nMode, const ReadingRules& rules) {
    if (nId == PSD_CHANNEL_USER_MASK) return "User Mask";
    if (nId == PSD_CHANNEL_TRANSPARENCY) return "Transparency";
    if (nId == PSD_CHANNEL_REAL_USER_MASK && rules.bLayerColours) return "Real User Mask";
    auto colours = ColourNames(rules.bLayerColours ? nMode : PSD_RGB);
    if (colours.empty()) colours = ColourNames(PSD_RGB);
    const bool isColour = nId >= 0 && static_cast<size_t>(nId) < colours.size();
    return isColour ? colours[static_cast<size_t>(nId)] : "Unknown";
}

}  // namespace

std::vector<std::string> ChannelNames(const PsdImage& psd) {
    std::vector<std::string> names = {"Composite"};
    const auto colours = ColourNames(psd.m_nMode);
    names.insert(names.end(), colours.begin(), colours.end());
    const PsdAlphaNamesData* const alphas = FindAlphaNames(psd);
    const u32 named = alphas ? alphas->m_Names.GetCount() : 0;
    const u32 first = static_cast<u32>(colours.size());
    for (u32 channel = first; channel < psd.m_nChannels; ++channel) {
        // An asterisk marks the transparency of the merged picture.
        const char* const mark = psd.m_bMergedAlpha && channel == first ? "*" : "";
        const u32 extra = channel - first;
        names.push_back(extra < named ? mark + std::string(alphas->m_Names.GetAt(extra))
                                      : "Channel " + std::to_string(channel));
    }
    return names;
}

std::vector<std::string> ChannelNames(const PsdLayer& layer, u32 nMode, const ReadingRules& rules) {
    std::vector<std::string> names = {"Composite"};
    for (u32 i = 0; i < layer.m_Channels.GetCount(); ++i)
        names.push_back(std::to_string(i) + ": " +
                        LayerChannelName(layer.m_Channels.GetAt(i)->m_nId, nMode, rules));
    return names;
}

// Both

std::vector<std::string> LayerNames(const CVistrelDoc& document) {
    std::vector<std::string> names = {"Image"};
    if (document.m_nDocType == DOC_PSD) {
        for (u32 i = 0; i < document.m_Psd.m_Layers.GetCount(); ++i) {
            const char* const name = document.m_Psd.m_Layers.GetAt(i)->m_pszName.get();
            names.push_back(IsBlank(name) ? "Layer " + std::to_string(i) : name);
        }
    } else if (document.m_nDocType == DOC_IFF) {
        IffContainer* const root = RootOf(document, document.GetRules());
        const ContChunk* const levels = root ? FindFirstOf<ContChunk>(*root, ID_MIPM) : nullptr;
        for (u32 k = 1; levels && k <= levels->m_nLevels; ++k)
            names.push_back("Mip Map " + std::to_string(k));
    }
    return names;
}

namespace {

u32 AlphaOfIff(const CVistrelDoc& document, u32 nLayer) {
    IffContainer* const part = FindLayerPart(document, nLayer, document.GetRules());
    PassedOver passedOver;
    return part && OffersAlpha(ChoosePicture(*part, document.GetRules(), passedOver)) ? 1 : 0;
}

// Beside layers, only what the file says to be it.
u32 AlphaOfPsd(const PsdImage& psd) {
    const bool hasLayers =
        psd.m_Layers.GetCount() > 0 || psd.GetPassedOver().CountOf(Passed::BrokenLayers) > 0;
    if (hasLayers && !psd.m_bMergedAlpha) return 0;
    const u32 colours = PsdColourCount(psd.m_nMode);
    return colours > 0 && psd.m_nChannels > colours ? colours + 1 : 0;
}

u32 AlphaOfLayer(const PsdLayer& layer) {
    for (u32 i = 0; i < layer.m_Channels.GetCount(); ++i)
        if (layer.m_Channels.GetAt(i)->m_nId == PSD_CHANNEL_TRANSPARENCY) return i + 1;
    return 0;
}

}  // namespace

u32 AlphaChannel(const CVistrelDoc& document, u32 nLayer) {
    if (document.m_nDocType == DOC_IFF) return AlphaOfIff(document, nLayer);
    if (document.m_nDocType != DOC_PSD) return 0;
    return nLayer == 0 ? AlphaOfPsd(document.m_Psd)
                       : AlphaOfLayer(*document.m_Psd.m_Layers.GetAt(nLayer - 1));
}
