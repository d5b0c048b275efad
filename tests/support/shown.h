// A document and what its view would hold for a selection, without a window.
#pragma once

#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "support/memory_file.h"
#include "support/pixels.h"

#include <string>
#include <vector>

using Names = std::vector<std::string>;

struct Shown {
    // The file's first selection. Throws what refuses the file.
    explicit Shown(Bytes bytes, u32 nLayer = 0, u32 nChannel = 0, Tolerance tolerance = Tolerance::None) {
        document.m_tolerance = tolerance;
        MemoryFile file(std::move(bytes));
        CArchive archive(&file, CArchive::load);
        document.Serialize(archive);
        Select(nLayer, nChannel);
    }

    // Chooses a layer, and then one of its channels.
    void Select(u32 nLayer, u32 nChannel) {
        channels = image.ChooseLayer(document, nLayer);
        image.BuildBitmap(document, {nLayer, nChannel});
    }

    // The size, the colours and the pixels of a picture that is there, or why there is none.
    std::string Text() const {
        if (!image.m_bValid) return image.m_hBitmap ? "a bitmap that is not valid" : "not valid";
        return image.m_hBitmap ? image.InfoText() + " " + BitmapText(image.m_hBitmap) : "no bitmap";
    }

    CVistrelDoc document;
    DisplayImage image;
    Names channels;  // of the layer chosen
};
