// The scales at which a picture can be shown by hand, and the steps from one to the next.
#pragma once

constexpr float SMALLEST_SCALE = 0.03125f;
constexpr float LARGEST_SCALE = 32.0f;

// The scale so many powers of two further up, or down for a negative number, as far as they go from one limit
// to the other. One beyond a limit comes back to it, but never in the direction away from it.
float ScaleAfterSteps(float fScale, int nSteps);
