#include "psd/field_reader.h"
#include "psd/pack_bits.h"
#include "psd/row_source.h"
#include "support/loading.h"
#include "support/random.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <optional>

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

TEST(PackBits, ALooseRowIsWhatItsPackedBytesMake) {
    const Bytes longest(128, 7);
    for (const auto& [packed, width, kind, row] : Table<Bytes, u32, LooseRow, Bytes>{
             {{0xFF, 7, 1, 8, 9}, 4, LooseRow::Exact, {7, 7, 8, 9}},
             {{0x81, 7}, 128, LooseRow::Exact, longest},
             {{0x81, 7}, 129, LooseRow::Short, {}},
             {{0xFF, 7, 0}, 2, LooseRow::Loose, {7, 7}},
             {{0x80, 0, 7}, 1, LooseRow::Loose, {7}},
             {{0xFE, 7}, 2, LooseRow::Loose, {7, 7}},     // a run is cut
             {{2, 7, 8, 9}, 2, LooseRow::Loose, {7, 8}},  // a literal is
             {{5, 7, 8}, 2, LooseRow::Loose, {7, 8}},     // its end is missing, and not needed
             {{5, 7, 8}, 3, LooseRow::Short, {}},
             {{0, 7, 0xFF}, 2, LooseRow::Short, {}},  // a run of nothing
             {{}, 1, LooseRow::Short, {}},
         }) {
        Bytes out(width);  // of exactly that size, for the sanitizer
        const u32 size = static_cast<u32>(packed.size());
        EXPECT_EQ(UnpackLooseRow(out.data(), width, packed.data(), size), kind) << testing::PrintToString(packed);
        EXPECT_TRUE(kind == LooseRow::Short || out == row) << testing::PrintToString(packed);
    }
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
