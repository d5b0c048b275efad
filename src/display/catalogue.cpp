#include "display/catalogue.h"

#include "chunks/ilbm_chunks.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "iff/container.h"

namespace {

u32 PlaneCount(const IffChunk& body) {
    const auto* const header = dynamic_cast<const BmhdChunk*>(body.FindProperty(BmhdChunk::ID));
    return header ? header->m_nPlanes : 0;
}

struct DeepestBody {
    BodyChunk* pBody = nullptr;
    u32 nPlanes = 0;
};

// Keeps the body whose header has the most planes; of equals the first, and never one without planes.
bool KeepDeepest(IffChunk* chunk, void* context) {
    auto* const deepest = static_cast<DeepestBody*>(context);
    auto* const body = dynamic_cast<BodyChunk*>(chunk);
    const u32 planes = body ? PlaneCount(*body) : 0;
    if (planes > deepest->nPlanes) *deepest = {body, planes};
    return true;
}

// The body that a part of the file is shown by, if it can be: one with a colour map and a header in scope.
BodyChunk* ChooseBody(IffContainer& part) {
    DeepestBody deepest;
    part.ForEach(ID_ILBM, BodyChunk::ID, KeepDeepest, &deepest);
    const bool showable = deepest.pBody && deepest.pBody->FindProperty(CmapChunk::ID);
    return showable ? deepest.pBody : nullptr;
}

}  // namespace

std::vector<std::string> LayerNames(const CVistrelDoc&) {
    return {"Image"};
}

std::vector<std::string> DisplayImage::ChooseLayer(const CVistrelDoc& document, u32 nLayer) {
    if (document.m_nDocType == DOC_IFF) {
        m_pBody.Reset();
        auto* const root = dynamic_cast<IffContainer*>(document.m_Iff.GetRoot());
        if (nLayer == 0 && root) m_pBody = CountedPtr<BodyChunk>::Share(ChooseBody(*root));
    }
    return {"Composite"};
}
