// Any bytes at all, opened as the program opens a file, under the strict rules and under the tolerant ones,
// and shown in every way its lists offer.
#include "chunks/register_chunks.h"
#include "display/catalogue.h"
#include "display/display_image.h"
#include "display/tolerance.h"
#include "document/passed_text.h"
#include "document/vistrel_doc.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "support/memory_file.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace {

// A file can offer thousands of choices; a few of each list reach all the code there is.
constexpr size_t CHOICES = 6;

void ShowAll(const CVistrelDoc& document) {
    const size_t layers = std::min(LayerNames(document).size(), CHOICES);
    for (u32 layer = 0; layer < layers; ++layer) {
        DisplayImage image;
        const size_t channels = std::min(image.ChooseLayer(document, layer).size(), CHOICES);
        for (u32 channel = 0; channel < channels; ++channel) {
            image.BuildBitmap(document, {layer, channel});
            image.InfoText();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    RegisterChunks();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const u8* data, size_t size) {
    MemoryFile file(Bytes(data, data + size));
    for (const Tolerance tolerance : {Tolerance::None, Tolerance::Always}) {
        file.Seek(0, CFile::begin);
        CArchive archive(&file, CArchive::load);
        CVistrelDoc document;
        document.m_tolerance = tolerance;
        try {
            document.Serialize(archive);
            PassedText(PassedOverIn(document));
            ShowAll(document);
        } catch (const CException&) {
        } catch (const std::bad_alloc&) {
        }
    }
    return 0;
}
