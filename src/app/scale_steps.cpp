#include "app/scale_steps.h"

#include <algorithm>
#include <cmath>

namespace {

// The next power of two above, or the scale itself where that is beyond the limit.
float StepUp(float fScale) {
    int exponent;
    std::frexp(fScale, &exponent);
    const float next = std::max(std::ldexp(1.0f, exponent), SMALLEST_SCALE);
    return next <= LARGEST_SCALE ? next : fScale;
}

float StepDown(float fScale) {
    int exponent;
    const bool isPower = std::frexp(fScale, &exponent) == 0.5f;
    const float next = std::min(std::ldexp(1.0f, exponent - (isPower ? 2 : 1)), LARGEST_SCALE);
    return next >= SMALLEST_SCALE ? next : fScale;
}

}  // namespace

float ScaleAfterSteps(float fScale, int nSteps) {
    for (; nSteps > 0; --nSteps) fScale = StepUp(fScale);
    for (; nSteps < 0; ++nSteps) fScale = StepDown(fScale);
    return fScale;
}
