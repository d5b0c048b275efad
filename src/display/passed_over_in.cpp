#include "display/passed_over_in.h"

#include "chunks/body_chunk.h"
#include "display/catalogue.h"
#include "display/ilbm_colours.h"
#include "document/vistrel_doc.h"

PassedOver PassedOverIn(const CVistrelDoc& document) {
    if (document.GetKeptPassedOver()) return *document.GetKeptPassedOver();
    if (document.m_nDocType == DOC_PSD && !document.IsReadTolerantly()) return {};
    PassedOver passedOver = document.GetPassedOver();
    if (document.m_nDocType != DOC_IFF) return passedOver;
    IffContainer* const whole = FindLayerPart(document, 0, TOLERANT);
    if (!whole) return passedOver;
    const BodyChunk* const body = ChoosePicture(*whole, TOLERANT, passedOver).pBody;
    if (!body) return passedOver;
    PixelKindOf(*body, TOLERANT, passedOver);
    body->LayoutUnder(TOLERANT, passedOver);
    return passedOver;
}
