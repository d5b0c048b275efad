// One picture as the viewer shows it, written into a file.
#pragma once

#include "tools/export/options.h"

class ByteSink;
struct GdiBitmap;

// Both borrowed. The alpha's pixels are grey; null without one.
struct ShownPicture {
    const GdiBitmap* pBitmap;
    const GdiBitmap* pAlpha;
};

// False when it could not be written; errno says why. Throws CMemoryException. The alpha, which only PNG has
// a place for, is written straight: no colour is changed by it.
bool WritePicture(ByteSink& sink, const ShownPicture& picture, PictureFormat format);
