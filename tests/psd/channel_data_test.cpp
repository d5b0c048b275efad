#include "psd/field_reader.h"
#include "psd/pack_bits.h"
#include "psd/row_source.h"
#include "support/loading.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

// The row decoder as the format describes it, a byte at a time: the judge of the fast one.
static std::optional<Bytes> PlainRow(const Bytes& packed, u64 nWidth, u64 nSize) {
    Bytes row;
    u64 at = 0;
    do {
        if (at >= packed.size()) return {};
        const i32 header = static_cast<i8>(packed[at++]);
        const u64 count = static_cast<u64>(header < 0 ? 1 - header : 1 + header);
        if (row.size() + count > nWidth || at + (header < 0 ? 1 : count) > packed.size()) return {};
        for (u64 i = 0; i < count; ++i) row.push_back(packed[header < 0 ? at : at + i]);
        at += header < 0 ? 1 : count;
    } while (row.size() < nWidth);
    return at == nSize ? std::optional(row) : std::nullopt;
}

TEST(PackBits, RowsAreWhatThePlainDecoderMakesOfThem) {
    Random random(1);
    u32 decoded = 0;
    for (u32 round = 0; round < 20000; ++round) {
        // Packets of all lengths, short ones most often.
        ByteBuilder data;
        u32 width = 0;
        for (u32 packets = 1 + random.Below(30); packets > 0; --packets) {
            const i32 header = static_cast<i8>(random.Below(3) > 0 ? random.Below(20) - 10 : random());
            data.U8(static_cast<u32>(header)).Append(random.SomeBytes(header < 0 ? 1 : header + 1));
            width += static_cast<u32>(header < 0 ? 1 - header : 1 + header);
        }
        // Some rows have a wrong width or count, or end too early.
        u32 size = static_cast<u32>(data.size());
        if (random.Below(8) == 0) width += random.Below(2) * 2 - 1;
        if (random.Below(8) == 0) size += random.Below(2) * 2 - 1;
        const Bytes bytes = Truncated(data.Repeat(random.Below(2) * 200, 0x80), random.Below(8) == 0);
        const auto expected = PlainRow(bytes, width, size);

        const auto packed = std::make_unique<u8[]>(bytes.size());  // of exactly that size, for the sanitizer
        std::copy(bytes.begin(), bytes.end(), packed.get());
        const auto row = std::make_unique<u8[]>(width);
        const auto used = UnpackRow(row.get(), width, packed.get(), bytes.size());
        ASSERT_EQ(used == size, expected.has_value()) << round;
        if (!expected) continue;
        ++decoded;
        ASSERT_EQ(Bytes(row.get(), row.get() + width), *expected) << round;
    }
    EXPECT_GT(decoded, 10000u);
}

// Likewise of a row that is its packed bytes, whatever those make.
static std::pair<LooseRow, Bytes> PlainLooseRow(const Bytes& packed, u64 width) {
    Bytes row;
    bool loose = false;
    u64 at = 0;
    while (at < packed.size() && row.size() < width) {
        const u32 header = packed[at++];
        u32 count = header > 128 ? 257 - header : header < 128 ? header + 1 : 0;
        for (; count > 0 && at < packed.size() && row.size() < width; --count) {
            row.push_back(packed[at]);
            if (header < 128) ++at;
        }
        if (header > 128) at = std::min<u64>(at + 1, packed.size());
        loose = loose || header == 128 || count > 0;
    }
    if (row.size() < width) return {LooseRow::Short, {}};
    return {loose || at < packed.size() ? LooseRow::Loose : LooseRow::Exact, row};
}

TEST(PackBits, LooseRowsAreWhatThePlainDecoderMakesOfThem) {
    Random random(2);
    u32 seen[3] = {};
    for (u32 round = 0; round < 20000; ++round) {
        ByteBuilder packed;
        u32 width = 0;
        for (u32 packets = 1 + random.Below(8); packets > 0; --packets) {
            const u32 header = random.Below(3) > 0 ? (random.Below(20) + 246) % 256 : random.Below(256);
            packed.U8(header).Append(random.SomeBytes(header > 128 ? 1 : header < 128 ? header + 1 : 0));
            width += header > 128 ? 257 - header : header < 128 ? header + 1 : 0;
        }
        width = std::max(width + random.Below(3), 2u) - 1;
        const u64 size = packed.size() - std::min<u64>(packed.size(), random.Below(3));
        const auto exact = std::make_unique<u8[]>(size), row = std::make_unique<u8[]>(width);  // for the sanitizer
        std::copy_n(packed.begin(), size, exact.get());
        const auto [kind, expected] = PlainLooseRow(Bytes(exact.get(), exact.get() + size), width);
        ++seen[static_cast<u32>(kind)];
        ASSERT_EQ(UnpackLooseRow(row.get(), width, exact.get(), static_cast<u32>(size)), kind) << round;
        if (kind == LooseRow::Short) continue;
        ASSERT_EQ(Bytes(row.get(), row.get() + width), expected) << round;
    }
    for (const u32 count : seen) EXPECT_GT(count, 1000u);
}

TEST(BitRows, AreUnpackedAsBitByBit) {
    for (u32 width = 1; width <= 70; ++width) {
        const u32 rowSize = (width + 7) / 8;
        MemoryStream source(Random(width).SomeBytes(3 * rowSize));
        Bytes samples(3 * width);
        RawRows rows(source.stream, rowSize);
        ASSERT_EQ(ReadRows(rows, PutBits, {3, width, rowSize}, samples.data(), width), 3u);
        for (u32 i = 0; i < 3 * width; ++i) {
            const u32 x = i % width, byte = source.file.m_bytes[i / width * rowSize + x / 8];
            ASSERT_EQ(samples[i], byte >> (7 - x % 8) & 1 ? 0 : 1) << width;
        }
    }
}

TEST(Words, AreSwappedInEveryBlock) {
    const Bytes bytes = Random(3).SomeBytes(2 * (128 * 1024 * 2 + 5));
    MemoryStream source(bytes);
    std::vector<u16> words(bytes.size() / 2);
    ASSERT_TRUE(ReadWords(source.stream, words.data(), words.size()));
    for (u64 i = 0; i < words.size(); ++i) ASSERT_EQ(words[i], bytes[2 * i] << 8 | bytes[2 * i + 1]) << i;
}
