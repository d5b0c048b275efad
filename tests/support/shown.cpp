#include "support/shown.h"

#include "support/memory_file.h"

Shown::Shown(Bytes bytes) {
    MemoryFile file(std::move(bytes));
    CArchive archive(&file, CArchive::load);
    document.Serialize(archive);
    Select(0, 0);
}

void Shown::Select(u32 nLayer, u32 nChannel) {
    channels = image.ChooseLayer(document, nLayer);
    image.BuildBitmap(document, nLayer, nChannel);
}
