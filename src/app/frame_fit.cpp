#include "app/frame_fit.h"

#include <algorithm>

namespace {

// The largest side that a window can have in the toolkit.
constexpr double LARGEST_SIDE = 16777215;

int Side(u32 nPixels, float fScale) {
    // The scale by itself first: 0 times infinity is no number.
    const double scale = std::min(double{fScale}, LARGEST_SIDE);
    return static_cast<int>(std::min(nPixels * scale, LARGEST_SIDE));
}

}  // namespace

CSize FittedClientSize(u32 nWidth, u32 nHeight, float fScale) {
    return {Side(nWidth, fScale), Side(nHeight, fScale)};
}
