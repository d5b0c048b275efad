#include "display/thumbnail.h"

#include "display/catalogue.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

bool Build(DisplayImage& image, const CVistrelDoc& document, u32 nLayer) {
    image.ChooseLayer(document, nLayer);
    image.BuildBitmap(document, {nLayer, 0});
    return image.m_hBitmap != nullptr;
}

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

// By position, the largest first. Mip-map levels stand in that order.
std::vector<u32> LayersBySize(const CVistrelDoc& document) {
    std::vector<u32> layers(LayerNames(document).size() - 1);
    std::iota(layers.begin(), layers.end(), u32{1});
    std::ranges::stable_sort(
        layers, [&](u32 nLayer, u32 nOther) { return AreaOf(document, nLayer) > AreaOf(document, nOther); });
    return layers;
}

// Whether the image then holds the picture that stands for the document.
bool BuildPicture(DisplayImage& image, const CVistrelDoc& document) {
    const bool blank = document.m_nDocType == DOC_PSD && IsCompositeBlank(document);
    if (!blank && Build(image, document, 0)) return true;
    for (const u32 layer : LayersBySize(document))
        if (Build(image, document, layer)) return true;
    return blank && Build(image, document, 0);
}

}  // namespace

Thumbnail ThumbnailOf(const CVistrelDoc& document, u32 nMostSide) {
    Thumbnail thumbnail;
    DisplayImage image;
    if (!BuildPicture(image, document)) return thumbnail;
    const SideLengths picture = {image.m_hBitmap->nWidth, image.m_hBitmap->nHeight};
    const bool hasSize = document.m_nDocType == DOC_PSD;
    thumbnail.original = hasSize ? SideLengths{document.m_Psd.m_nWidth, document.m_Psd.m_nHeight} : picture;
    thumbnail.sides = FitInto(picture, nMostSide);
    thumbnail.pixels = Shrink(*image.m_hBitmap, thumbnail.sides);
    return thumbnail;
}
