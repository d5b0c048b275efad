// Small files damaged at every place: whatever is read of them, nothing but an answer comes of it.
#include "support/failing_new.h"
#include "support/sample_files.h"
#include "support/trial.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// Every value of a byte instead of those at the edges of what its fields can hold.
bool IsLong() { return std::getenv("VISTREL_LONG") != nullptr; }

std::vector<u8> DamagedValues(u8 nByte) {
    std::vector<u8> values = {0, 1, 0x7F, 0x80, 0xFE, 0xFF, static_cast<u8>(nByte ^ 1), static_cast<u8>(nByte ^ 0x80)};
    if (IsLong()) {
        values.clear();
        for (u32 value = 0; value < 256; ++value) values.push_back(static_cast<u8>(value));
    }
    std::erase(values, nByte);
    return values;
}

// Shows one selection, which follows from the place of the damage.
struct Damage {
    void Try(const Bytes& bytes, u32 nPlace) {
        for (const Tolerance tolerance : {Tolerance::None, Tolerance::Always}) {
            const Plan plan = {.tolerance = tolerance, .nMemory = 32 << 20, .selections = {{nPlace, nPlace / 8}}};
            const Answer answer = Trial().Run(bytes, plan);
            ++runs;
            opened += answer.IsOpen();
            if (runs % 16 != 0) continue;
            const FilledMemory filled(static_cast<u8>(runs / 16));
            const Answer again = Trial().Run(bytes, plan);
            ASSERT_EQ(again.strLoad, answer.strLoad);
            ASSERT_EQ(again.pictures, answer.pictures);
        }
    }

    u64 runs = 0, opened = 0;
};

TEST(Damage, EveryPrefixAndEveryByteOfSmallFiles) {
    u64 size = 0;
    for (const auto& [name, bytes] : SmallSampleFiles()) {
        Damage damage;
        size += bytes.size();
        for (u32 place = 0; place < bytes.size(); ++place) {
            SCOPED_TRACE(name + ", byte " + std::to_string(place));
            damage.Try(Bytes(bytes.begin(), bytes.begin() + place), place);
            Bytes damaged = bytes;
            for (const u8 value : DamagedValues(bytes[place])) {
                damaged[place] = value;
                damage.Try(damaged, place);
                if (HasFatalFailure()) return;
            }
        }
        // Damage that no reader gets past would try nothing.
        EXPECT_GT(damage.opened, damage.runs / 8) << name;
        EXPECT_LT(damage.opened, damage.runs) << name;
    }
    EXPECT_LE(size, 4096u);
}

}  // namespace
