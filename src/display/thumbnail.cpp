#include "display/thumbnail.h"

#include "display/catalogue.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

// Tries the pictures that may stand for a document.
class Attempts {
  public:
    Attempts(const CVistrelDoc& document, Shrinker& shrinker) : m_document(document), m_shrinker(shrinker) {
        m_image.HandTo(&shrinker);
    }

    // The composite of a layer. Whether there is one.
    bool Try(u32 nLayer) {
        m_image.ChooseLayer(m_document, nLayer);
        m_image.BuildBitmap(m_document, {nLayer, 0});
        return m_shrinker.IsWhole();
    }

  private:
    const CVistrelDoc& m_document;
    Shrinker& m_shrinker;
    DisplayImage m_image;
};

// Some programs leave the composite out, and write a blank one in its place.
bool IsCompositeBlank(const CVistrelDoc& document) {
    const PassedOver& passedOver = document.GetPassedOver();
    return passedOver.CountOf(Passed::NoMergedPicture) > 0 || passedOver.CountOf(Passed::BrokenComposite) > 0;
}

u64 AreaOf(const CVistrelDoc& document, u32 nLayer) {
    if (document.m_nDocType != DOC_PSD) return 0;
    const PsdSize size = document.m_Psd.m_Layers.GetAt(nLayer - 1)->Size();
    return size.IsEmpty() ? 0 : u64{size.nRows} * size.nColumns;
}

bool HasColours(const PsdLayer& layer) {
    return std::ranges::any_of(layer.m_Channels,
                               [](const auto& channel) { return channel->m_nId >= 0 && channel->m_ppPlane; });
}

// Without anything to show the viewer shows a layer black, at whatever size the file says.
bool MayHavePicture(const CVistrelDoc& document, u32 nLayer) {
    return document.m_nDocType != DOC_PSD || HasColours(*document.m_Psd.m_Layers.GetAt(nLayer - 1));
}

// By position, the largest first. Mip-map levels stand in that order.
std::vector<u32> LayersBySize(const CVistrelDoc& document) {
    std::vector<u32> layers(LayerNames(document).size() - 1);
    std::iota(layers.begin(), layers.end(), u32{1});
    std::erase_if(layers, [&](u32 nLayer) { return !MayHavePicture(document, nLayer); });
    std::ranges::stable_sort(
        layers, [&](u32 nLayer, u32 nOther) { return AreaOf(document, nLayer) > AreaOf(document, nOther); });
    return layers;
}

// Whether there is a picture that stands for the document.
bool TryAll(Attempts& attempts, const CVistrelDoc& document) {
    const bool blank = document.m_nDocType == DOC_PSD && IsCompositeBlank(document);
    if (!blank && attempts.Try(0)) return true;
    for (const u32 layer : LayersBySize(document))
        if (attempts.Try(layer)) return true;
    return blank && attempts.Try(0);
}

}  // namespace

Thumbnail ThumbnailOf(const CVistrelDoc& document, u32 nMostSide) {
    Shrinker shrinker(nMostSide);
    Attempts attempts(document, shrinker);
    Thumbnail thumbnail;
    if (!TryAll(attempts, document)) return thumbnail;
    const bool hasSize = document.m_nDocType == DOC_PSD;
    thumbnail.original =
        hasSize ? SideLengths{document.m_Psd.m_nWidth, document.m_Psd.m_nHeight} : shrinker.Picture();
    thumbnail.sides = shrinker.Sides();
    thumbnail.pixels = shrinker.TakePixels();
    return thumbnail;
}
