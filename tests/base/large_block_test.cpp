#include "base/large_block.h"

#include "base/process_memory.h"
#include "support/memory_limit.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr u64 MIB = 1 << 20;

class KeptBlocks : public testing::Test {
  protected:
    KeptBlocks() { LargeBlock::ReleaseKept(); }
    ~KeptBlocks() override {
        LargeBlock::SetKeptLimit(m_nBefore);
        LargeBlock::ReleaseKept();
    }

    // Has blocks and frees them in their order; what is kept of them then, in MiB.
    static u64 KeptOf(const std::vector<u64>& sizes) {
        std::vector<LargeBlock> blocks;
        for (const u64 size : sizes) blocks.push_back(LargeBlock::Allocate(size));
        for (LargeBlock& block : blocks) block = LargeBlock();
        return LargeBlock::KeptSize() / MIB;
    }

    const u64 m_nBefore = LargeBlock::SetKeptLimit(64 * MIB);
};

}  // namespace

TEST(LargeBlock, ASizeThatCannotBeRoundedUpGivesNone) {
    const MemoryLimit none(~u64{0});
    EXPECT_TRUE(LargeBlock::Try(0));
    for (const u64 less : {0, 1, 62, 63, 64, 65}) EXPECT_FALSE(LargeBlock::Try(~u64{0} - less)) << less;
}

TEST(LargeBlock, AllTogetherStayWithinTheLimit) {
    const MemoryLimit limit(10 * MIB);
    LargeBlock block = LargeBlock::Allocate(6 * MIB);
    EXPECT_EQ(LargeBlock::Left(), 4 * MIB);
    LargeBlock::Require(4 * MIB);
    EXPECT_TRUE(LargeBlock::Try(4 * MIB));
    EXPECT_FALSE(LargeBlock::Try(4 * MIB + 1));
    try {
        LargeBlock::Require(5 * MIB);
        FAIL();
    } catch (const BeyondLimit& exception) {
        EXPECT_EQ(exception.m_shortage.nWanted, 5 * MIB);
        EXPECT_EQ(exception.m_shortage.nLeft, 4 * MIB);
    }
    LargeBlock moved = std::move(block);
    EXPECT_EQ(LargeBlock::Left(), 4 * MIB);
    moved = LargeBlock();
    EXPECT_TRUE(LargeBlock::Try(10 * MIB));
}

TEST(SizeText, LeavesSomethingInFrontOfThePoint) {
    for (const auto& [size, text] :
        Table<u64, const char*>{{0, "0 bytes"}, {1023, "1023 bytes"}, {1024, "1.0 KiB"}, {(1 << 20) - 60, "1023.9 KiB"},
            {(1 << 20) - 50, "1.0 MiB"}, {3435973837, "3.2 GiB"}, {~u64{0}, "16777216.0 TiB"}})
        EXPECT_STREQ(ToSizeText(size).data(), text);
    EXPECT_STREQ(ToShortageText(2048, 1024).data(), "It takes 2.0 KiB; 1.0 KiB is left of the limit");
    EXPECT_STREQ(ToShortageText(1030, 1025).data(), "It takes 1030 bytes; 1025 bytes is left of the limit");
}

TEST(LargeBlock, ItsDataIsAlignedForVectorsOrHugePages) {
    for (const u64 size : {u64{64}, u64{65}, MIB, 4 * MIB - 1}) {
        const LargeBlock block = LargeBlock::Allocate(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.Data()) % 64, 0u) << size;
    }
    const LargeBlock large = LargeBlock::Allocate(4 * MIB);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(large.Data()) % (2 * MIB), 0u);
}

TEST_F(KeptBlocks, AFewAreKeptWithinTheLimit) {
    EXPECT_EQ(KeptOf({MIB - 64}), 0u) << "the heap keeps the small ones";
    EXPECT_EQ(KeptOf({MIB}), 1u);
    LargeBlock::ReleaseKept();
    EXPECT_EQ(KeptOf({4 * MIB, 6 * MIB, 8 * MIB, 10 * MIB, 12 * MIB}), 36u) << "four, the last that were freed";
    EXPECT_EQ(KeptOf({64 * MIB}), 64u) << "makes room for itself";
    EXPECT_EQ(KeptOf({66 * MIB}), 64u) << "and one that is too large does not";
    LargeBlock::SetKeptLimit(10 * MIB);
    EXPECT_EQ(LargeBlock::KeptSize(), 0u);
    LargeBlock::SetKeptLimit(0);
    EXPECT_EQ(KeptOf({MIB}), 0u);
}

TEST_F(KeptBlocks, TheSmallestThatFitsServesTheNextRequest) {
    EXPECT_EQ(KeptOf({8 * MIB, 4 * MIB, 20 * MIB}), 32u);
    const LargeBlock half = LargeBlock::Allocate(2 * MIB);
    EXPECT_EQ(LargeBlock::KeptSize(), 28 * MIB) << "the one of 4";
    EXPECT_EQ(half.Size(), 2 * MIB);
    const LargeBlock eight = LargeBlock::Allocate(8 * MIB);
    EXPECT_EQ(LargeBlock::KeptSize(), 20 * MIB);
    const LargeBlock small = LargeBlock::Allocate(10 * MIB - 1);
    EXPECT_EQ(LargeBlock::KeptSize(), 20 * MIB) << "twice as much and more is not used up for it";
}

TEST_F(KeptBlocks, GoWhereWhatIsCountedBesideThemTakesTheirRoom) {
    EXPECT_EQ(KeptOf({8 * MIB}), 8u);
    const MemoryLimit limit(20 * MIB);
    EXPECT_TRUE(LargeBlock::Charge(12 * MIB));
    EXPECT_EQ(LargeBlock::KeptSize(), 8 * MIB);
    EXPECT_FALSE(LargeBlock::Charge(8 * MIB + 1));
    EXPECT_TRUE(LargeBlock::Charge(1));
    EXPECT_EQ(LargeBlock::KeptSize(), 0u);
    LargeBlock::Discharge(12 * MIB + 1);
}

TEST_F(KeptBlocks, OneThatIsKeptPassesTheLimitToo) {
    EXPECT_EQ(KeptOf({8 * MIB}), 8u);
    const MemoryLimit limit(8 * MIB - 1);
    EXPECT_FALSE(LargeBlock::Try(8 * MIB));
    EXPECT_EQ(LargeBlock::KeptSize(), 8 * MIB);
}

TEST_F(KeptBlocks, EveryBlockIsFilledWhereThatIsAskedFor) {
    for (const u8 fill : {u8{0x00}, u8{0xA5}}) {
        LargeBlock::SetFill(fill);
        for (int again = 0; again < 2; ++again) {
            LargeBlock block = LargeBlock::Allocate(MIB + 1);
            EXPECT_EQ(block.Data()[0], fill);
            EXPECT_EQ(block.Data()[MIB], fill);
            std::fill_n(block.Data(), MIB + 1, u8{1});
        }
    }
    LargeBlock::SetFill(std::nullopt);
}
