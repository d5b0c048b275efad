// A document and what its view would hold for a selection, without a window.
#pragma once

#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "support/memory_file.h"
#include "support/pixels.h"

#include <string>
#include <vector>

struct Shown {
    // The file's first selection.
    explicit Shown(Bytes bytes) {
        MemoryFile file(std::move(bytes));
        CArchive archive(&file, CArchive::load);
        document.Serialize(archive);
        Select(0, 0);
    }

    // Chooses a layer, and then one of its channels.
    void Select(u32 nLayer, u32 nChannel) {
        channels = image.ChooseLayer(document, nLayer);
        image.BuildBitmap(document, nLayer, nChannel);
    }

    TextRows Rows() const { return BitmapText(image.m_hBitmap); }
    std::string Colours() const { return BitmapColours(image.m_hBitmap); }

    CVistrelDoc document;
    DisplayImage image;
    std::vector<std::string> channels;  // of the layer chosen
};
