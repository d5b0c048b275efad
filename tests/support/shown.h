// A document and what its view would hold for a selection, without a window.
#pragma once

#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "support/byte_builder.h"
#include "support/pixels.h"

#include <string>
#include <vector>

struct Shown {
    // The file's first selection.
    explicit Shown(Bytes bytes);

    // An empty document, for tests that fill it by hand.
    Shown() = default;

    // Chooses a layer, and then one of its channels.
    void Select(u32 nLayer, u32 nChannel);

    TextRows Rows() const { return BitmapText(image.m_hBitmap); }
    std::string Colours() const { return BitmapColours(image.m_hBitmap); }

    CVistrelDoc document;
    DisplayImage image;
    std::vector<std::string> channels;  // of the layer chosen
};
