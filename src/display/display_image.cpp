#include "display/display_image.h"

#include "display/catalogue.h"
#include "document/vistrel_doc.h"

DisplayImage::~DisplayImage() {
    DiscardBitmap();
}

void DisplayImage::DiscardBitmap() {
    DeleteObject(m_hBitmap);
    m_hBitmap = nullptr;
}

void DisplayImage::LetGo() {
    DiscardBitmap();
    ForgetLayer();
}

void DisplayImage::ForgetLayer() {
    m_pBody.Reset();
    m_pS3tc.Reset();
}

std::vector<std::string> DisplayImage::ChooseLayer(const CVistrelDoc& document, u32 nLayer) {
    ForgetLayer();
    if (document.m_nDocType == DOC_PSD)
        return nLayer == 0 ? ChannelNames(document.m_Psd)
                           : ChannelNames(*document.m_Psd.m_Layers.GetAt(nLayer - 1), document.m_Psd.m_nMode,
                                          document.GetRules());
    PictureChoice choice;
    PassedOver passedOver;
    const ReadingRules& rules = document.GetRules();
    if (document.m_nDocType == DOC_IFF)
        if (IffContainer* const part = FindLayerPart(document, nLayer, rules))
            choice = ChoosePicture(*part, rules, passedOver);
    m_pBody = CountedPtr<BodyChunk>::Share(choice.pBody);
    m_pS3tc = CountedPtr<S3tcChunk>::Share(choice.pS3tc);
    return OffersAlpha(choice) ? std::vector<std::string>{"Composite", "Alpha"}
                               : std::vector<std::string>{"Composite"};
}

void DisplayImage::BuildBitmap(const CVistrelDoc& document, const Selection& selection) {
    DiscardBitmap();
    // Cleared until the end, so that an exception on the way leaves no valid picture behind.
    m_bValid = 0;
    bool valid = false;
    if (document.m_nDocType == DOC_PSD)
        valid = BuildPsdPicture(document.m_Psd, selection, document.GetRules());
    // Which picture an IFF document's layer stands for was settled when the layer was chosen.
    if (document.m_nDocType == DOC_IFF) valid = BuildIffPicture(selection.nChannel, document.GetRules());
    m_bValid = valid ? 1 : 0;
}

std::string DisplayImage::InfoText() const {
    if (!m_hBitmap) return "<invalid bitmap>";
    return std::to_string(m_nWidth) + "x" + std::to_string(m_nHeight) + "x" + std::to_string(m_nColours);
}
