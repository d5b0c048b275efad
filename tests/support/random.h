// Numbers that look random and are the same in every run.
#pragma once

#include "base/types.h"
#include "support/byte_builder.h"

#include <random>

struct Random {
    explicit Random(u32 nSeed) : m_engine(nSeed) {}

    u32 operator()() { return static_cast<u32>(m_engine()); }
    u32 Below(u32 nLimit) { return (*this)() % nLimit; }
    Bytes SomeBytes(u64 nCount) {
        Bytes bytes(nCount);
        for (u8& byte : bytes) byte = static_cast<u8>((*this)());
        return bytes;
    }

    std::mt19937 m_engine;
};
