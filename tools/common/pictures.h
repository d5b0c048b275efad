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

void SayTooManyPixels(const FileNames& names, u64 nMostPixels = MOST_PIXELS);

// Makes the bitmap of a selection whose layer has been chosen. False, without a bitmap, when memory refuses
// it, which is told.
bool BuildPicture(DisplayImage& image, const CVistrelDoc& document, const Selection& selection,
                  const FileNames& names);

// A row of a bitmap as red, green and blue bytes, three times its width.
void CopyRgbRow(const GdiBitmap& bitmap, u32 y, u8* pOut);
