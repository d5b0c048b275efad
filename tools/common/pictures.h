// The pictures of a document, made one after the other, and their pixels.
#pragma once

#include "base/types.h"
#include "tools/common/messages.h"

class CVistrelDoc;
class DisplayImage;
struct GdiBitmap;
struct Selection;

// Once the pictures built for one file have passed so many pixels together, no more are built.
constexpr u64 MOST_PIXELS = u64{1} << 32;

// The pictures of one document as they are made.
class PictureBuilder {
  public:
    // Document and names are borrowed.
    PictureBuilder(const CVistrelDoc& document, const FileNames& names, u64 nMostPixels = MOST_PIXELS)
        : m_document(document), m_names(names), m_nMostPixels(nMostPixels) {}

    // Makes the bitmap of a selection whose layer has been chosen. False, without a bitmap, when memory
    // refuses it, which is told.
    bool Build(DisplayImage& image, const Selection& selection);

    bool HasPassedLimit() const { return m_nPixels > m_nMostPixels; }
    void SayTooManyPixels() const;

  private:
    const CVistrelDoc& m_document;
    const FileNames& m_names;
    const u64 m_nMostPixels;
    u64 m_nPixels = 0;  // of all pictures built, or tried
};

// A row of a bitmap as red, green and blue bytes, three times its width.
void CopyRgbRow(const GdiBitmap& bitmap, u32 y, u8* pOut);
