// The pictures of Photoshop documents: planes handed to the converter that their mode and depth ask for.

#include "display/display_image.h"
#include "psd/psd_image.h"

namespace {

// The plane of a channel; null where the document lacks it.
RowTable8 Plane8(const PsdImage& psd, u32 nChannel) {
    return psd.m_pppPlanes && nChannel < psd.m_nChannels ? psd.m_pppPlanes[nChannel] : nullptr;
}

RowTable16 Plane16(const PsdImage& psd, u32 nChannel) {
    return psd.GetWords(nChannel);
}

}  // namespace

bool DisplayImage::BuildPsdPicture(const PsdImage& psd, const Selection& selection,
                                   const ReadingRules& rules) {
    if (selection.nLayer == 0) {
        ConvertWholePsd(psd, selection.nChannel);
        return psd.m_pppPlanes != nullptr;
    }
    const PsdLayer& layer = *psd.m_Layers.GetAt(selection.nLayer - 1);
    m_nColours = 0;
    if (selection.nChannel == 0) {
        SetSize(layer.Size());
        if (layer.Size().IsEmpty()) return false;
        ConvertPsdLayer(layer, rules.bLayerColours ? psd.m_nMode : PSD_RGB);
        return true;
    }
    const PsdLayerChannel& channel = *layer.m_Channels.GetAt(selection.nChannel - 1);
    SetSize(layer.SizeOf(channel));
    ConvertGrey8(channel.m_ppPlane);
    return channel.m_ppPlane != nullptr;
}

void DisplayImage::ConvertWholePsd(const PsdImage& psd, u32 nChannel) {
    m_nWidth = psd.m_nWidth;
    m_nHeight = psd.m_nHeight;
    m_nColours = psd.m_pPalette ? PSD_PALETTE_SIZE : 0;
    if (!psd.m_pppPlanes) return;
    if (nChannel == 0)
        ConvertPsdComposite(psd);
    else
        ConvertPsdGrey(psd, nChannel - 1);
}

// Depths other than 8 and 16 are one bit, spread out to a byte for each sample.
void DisplayImage::ConvertPsdGrey(const PsdImage& psd, u32 nPlane) {
    switch (psd.m_nDepth) {
        case 8:
            return ConvertGrey8(Plane8(psd, nPlane));
        case 16:
            return ConvertGrey16(Plane16(psd, nPlane));
        default:
            return ConvertGrey1(Plane8(psd, nPlane));
    }
}

void DisplayImage::ConvertPsdIndexed(const PsdImage& psd) {
    const u8* const palette = psd.m_pPalette.get();
    switch (psd.m_nDepth) {
        case 8:
            return ConvertIndexed8(Plane8(psd, 0), palette, m_nColours);
        case 16:
            return ConvertIndexed16(Plane16(psd, 0), palette, m_nColours);
        default:
            return ConvertIndexed1(Plane8(psd, 0), palette, m_nColours);
    }
}

void DisplayImage::ConvertPsdRgb(const PsdImage& psd) {
    switch (psd.m_nDepth) {
        case 8:
            return ConvertRgb8(Plane8(psd, 0), Plane8(psd, 1), Plane8(psd, 2));
        case 16:
            return ConvertRgb16(Plane16(psd, 0), Plane16(psd, 1), Plane16(psd, 2));
        default:
            return ConvertRgb1(Plane8(psd, 0), Plane8(psd, 1), Plane8(psd, 2));
    }
}

void DisplayImage::ConvertPsdCmyk(const PsdImage& psd) {
    switch (psd.m_nDepth) {
        case 8:
            return ConvertCmyk8(Plane8(psd, 0), Plane8(psd, 1), Plane8(psd, 2), Plane8(psd, 3));
        case 16:
            return ConvertCmyk16(Plane16(psd, 0), Plane16(psd, 1), Plane16(psd, 2), Plane16(psd, 3));
        default:
            return ConvertCmyk1(Plane8(psd, 0), Plane8(psd, 1), Plane8(psd, 2), Plane8(psd, 3));
    }
}

// Lab and multichannel composites are not shown; their single channels are.
void DisplayImage::ConvertPsdComposite(const PsdImage& psd) {
    switch (psd.m_nMode) {
        case PSD_BITMAP:
        case PSD_GREYSCALE:
        case PSD_DUOTONE:
            return ConvertPsdGrey(psd, 0);
        case PSD_INDEXED:
            return ConvertPsdIndexed(psd);
        case PSD_RGB:
            return ConvertPsdRgb(psd);
        case PSD_CMYK:
            return ConvertPsdCmyk(psd);
        default:
            return;
    }
}

void DisplayImage::SetSize(const PsdSize& size) {
    m_nWidth = size.IsEmpty() ? 0 : size.nColumns;
    m_nHeight = size.IsEmpty() ? 0 : size.nRows;
}

// A layer's planes have one byte a sample, whatever the document's depth. Modes without a conversion of their
// own are shown as red, green and blue.
void DisplayImage::ConvertPsdLayer(const PsdLayer& layer, u32 nMode) {
    RowTable8 colours[4] = {};
    for (const auto& channel : layer.m_Channels)
        if (channel->m_nId >= 0 && channel->m_nId < 4) colours[channel->m_nId] = channel->m_ppPlane;
    switch (nMode) {
        case PSD_BITMAP:
        case PSD_GREYSCALE:
        case PSD_DUOTONE:
            if (colours[0]) return ConvertGrey8(colours[0]);
            return ConvertRgb8(nullptr, nullptr, nullptr);
        case PSD_CMYK:
            return ConvertCmyk8(colours[0], colours[1], colours[2], colours[3]);
        default:
            return ConvertRgb8(colours[0], colours[1], colours[2]);
    }
}
