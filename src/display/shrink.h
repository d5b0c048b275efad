// A picture made smaller, each pixel the mean of the area that it covers, to the fraction of a pixel.
#pragma once

#include "base/large_block.h"
#include "base/types.h"
#include "display/display_image.h"

#include <memory>
#include <utility>

class RowSums;

struct SideLengths {
    u32 nWidth = 0;   // pixels
    u32 nHeight = 0;  // rows
};

// The largest size of the same proportions whose sides are at most nMost, and at least 1. Never larger than
// what is given, whose sides are not 0.
SideLengths FitInto(const SideLengths& sides, u32 nMost);

// Takes a picture band by band.
class Shrinker final : public BandTaker {
  public:
    explicit Shrinker(u32 nMostSide);
    ~Shrinker() override;

    // A first band begins anew. Throws CMemoryException.
    void Take(const GdiBitmap& band, u32 nTop, u32 nHeight) override;

    // Whether all of the last picture was taken.
    bool IsWhole() const { return m_nTaken > 0 && m_nTaken == m_picture.nHeight; }

    SideLengths Picture() const { return m_picture; }
    SideLengths Sides() const { return m_sides; }

    // Of what was made of it: red, green and blue bytes, the top row first, rows without padding.
    LargeBlock TakePixels() { return std::move(m_pixels); }

  private:
    void Begin(const GdiBitmap& band, u32 nHeight);
    void TakeRow(const u8* pRow);
    void FinishRow();

    const u32 m_nMostSide;
    SideLengths m_picture;
    SideLengths m_sides;
    u32 m_nTaken = 0;  // rows of the picture
    u32 m_nDone = 0;   // rows of what is made of it
    std::unique_ptr<RowSums> m_pSums;
    LargeBlock m_pixels;
};
