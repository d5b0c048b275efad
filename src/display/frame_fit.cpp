#include "display/frame_fit.h"

#include <algorithm>

namespace {

// The largest side that a window can have in the toolkit.
constexpr double LARGEST_SIDE = 16777215;

int Side(u32 nPixels, float fScale) {
    return static_cast<int>(std::min(nPixels * double{fScale}, LARGEST_SIDE));
}

}  // namespace

CSize FittedClientSize(u32 nWidth, u32 nHeight, float fScale) {
    return {Side(nWidth, fScale), Side(nHeight, fScale)};
}
