// Documents drawn by lot. Compilers evaluate the arguments of a call in different orders, so no call has two
// that draw; statements and the elements of a braced list have one order.
#pragma once

#include "support/random.h"

#include <initializer_list>

struct Dice : Random {
    using Random::Random;

    bool OneIn(u32 nCount) { return Below(nCount) == 0; }
    u32 Between(u32 nLeast, u32 nMost) { return nLeast + Below(nMost - nLeast + 1); }
    template <typename Value>
    Value OneOf(std::initializer_list<Value> values) {
        return values.begin()[Below(static_cast<u32>(values.size()))];
    }
};

struct Size {
    explicit Size(Dice& dice);  // mostly small

    u32 width, height;
};

// A value for each pixel, row by row: a slope, a chessboard, a disc or noise.
std::vector<u32> DrawValues(Dice& dice, const Size& size);

Bytes IffVariant(Dice& dice);
Bytes PsdVariant(Dice& dice);
