#include "chunks/body_chunk.h"

#include "chunks/byte_run.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/random.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

// The next row bit by bit and byte by byte, as the format is told: the judge of the fast decoder.
std::optional<std::vector<u32>> PlainRow(const Bytes& data, u64& nCursor, u32 nWidth, u32 nPlanes, bool bPacked) {
    std::vector<u32> values(nWidth, 0);
    u32 literals = 0, repeats = 0;
    for (u32 i = 0; i < nPlanes * nWidth; ++i) {
        const u32 plane = i / nWidth, x = i % nWidth;
        if (x % 8 != 0) continue;
        if (nCursor == data.size()) return std::nullopt;
        if (bPacked && literals == 0 && repeats == 0) {
            u32 control = 128;
            while (control == 128) {
                control = data[nCursor++];
                if (nCursor == data.size()) return std::nullopt;
            }
            (control < 128 ? literals : repeats) = control < 128 ? control + 1 : 257 - control;
        }
        for (u32 bit = 0; bit < 8 && x + bit < nWidth && plane < 32; ++bit)
            values[x + bit] |= (data[nCursor] >> (7 - bit) & 1u) << plane;
        if (literals > 0) --literals;
        if (repeats == 0 || --repeats == 0) ++nCursor;
    }
    return values;
}

struct Picture {
    Picture(const BmhdFields& header, const Bytes& data) : iff(Form("ILBM", {Bmhd(header), Chunk("BODY", data)})) {}
    BodyChunk& Body() const { return ChildAs<BodyChunk>(iff.Root(), 1); }

    LoadedIff iff;
};

void ExpectAsPlain(u32 nWidth, u32 nPlanes, bool bPacked, const Bytes& data, u32 nRows) {
    const Picture picture({.width = nWidth, .height = nRows, .planes = nPlanes, .compression = bPacked}, data);
    BodyChunk& body = picture.Body();
    u64 cursor = 0;
    ASSERT_TRUE(body.BeginRows());
    for (u32 y = 0; y < nRows; ++y) {
        SCOPED_TRACE(testing::Message() << "row " << y << " of width " << nWidth << ", " << nPlanes << " planes");
        const auto expected = PlainRow(data, cursor, nWidth, nPlanes, bPacked);
        const u32* const values = body.DecodeRow();
        ASSERT_EQ(values != nullptr, expected.has_value());
        ASSERT_EQ(body.m_nRemaining, data.size() - cursor);
        if (!expected) return;
        ASSERT_TRUE(std::equal(expected->begin(), expected->end(), values));
    }
}

// Runs and literals of awkward lengths, across plane rows and rows, with controls of 128 strewn in.
Bytes RandomPackets(Random& random, u64 nCount) {
    ByteBuilder packets;
    while (packets.size() < nCount) {
        const u32 kind = random() % 5;
        const u32 literals = random() % (random() % 8 == 0 ? 128 : 6);
        if (kind == 0) packets.U8(128);
        if (kind == 1) packets.U8(255 - random() % 3, random());
        if (kind == 2) packets.U8(129 + random() % 127, random());
        if (kind >= 3) packets.U8(literals).Append(random.SomeBytes(literals + 1));
    }
    return packets;
}

TEST(DecodeRow, EqualsThePlainDecoderOnEveryShapeAndWhereverTheDataEnds) {
    Random random(3);
    std::vector<u32> widths = {127, 128, 129, 200};
    for (u32 width = 0; width <= 70; ++width) widths.push_back(width);
    for (const u32 width : widths) {
        for (u32 planes = 0; planes <= 33; ++planes) {  // the 33rd is consumed and not shown
            const u32 rowSize = planes * ((width + 7) / 8);
            const Bytes packets = RandomPackets(random, 3 * rowSize + 1);
            const u32 size = static_cast<u32>(packets.size());
            ExpectAsPlain(width, planes, false, random.SomeBytes(3 * rowSize), 4);
            ExpectAsPlain(width, planes, true, packets, 12);
            ExpectAsPlain(width, planes, true, Truncated(packets, random.Below(size)), 12);
            if (HasFatalFailure()) return;
        }
    }
}

// The values of the next row, digits all of them.
std::string NextRow(BodyChunk& body, u32 nWidth) {
    const u32* const values = body.DecodeRow();
    std::string text;
    for (u32 x = 0; values && x < nWidth; ++x) text += static_cast<char>('0' + values[x]);
    return text;
}

TEST(DecodeRow, KnownRows) {
    for (const auto& [header, data, first, second] : Table<BmhdFields, Bytes, const char*, const char*>{
             {{24, 2, 2}, {0, 0, 0xFF, 0xFF, 0, 0}, "222222220000000011111111", ""},  // no plane row is padded
             {{8, 2, 1, 0, 200}, {0x80, 0xF0, 0, 0x0F}, "00000000", "00001111"},      // a cut repeat leaves its byte
             {{8, 2, 1, 0, 1}, {1, 0xF0, 0, 0x3C}, "11110000", "00111100"},           // a cut literal leaves its rest
             {{8, 2, 0}, {}, "00000000", "00000000"},                                 // no bytes are data too
         }) {
        const Picture picture(header, data);
        EXPECT_EQ(NextRow(picture.Body(), 8), "") << "before decoding has begun";
        for (int round = 0; round < 2; ++round) {
            ASSERT_TRUE(picture.Body().BeginRows());
            EXPECT_EQ(NextRow(picture.Body(), header.width), first);
            EXPECT_EQ(NextRow(picture.Body(), header.width), second);
        }
        picture.Body().EndRows();
        EXPECT_EQ(NextRow(picture.Body(), 8), "") << "decoding has ended";
    }
    const LoadedIff headless(Form("ILBM", {Chunk("BODY", {1, 2}), Bmhd({.width = 8})}));
    EXPECT_FALSE(ChildAs<BodyChunk>(headless.Root(), 0).BeginRows()) << "no header in scope";
}

// The least that a run-length coded row takes is two bytes for each 128 and one more for a rest.
TEST(BodyChunk, KnowsWhetherItsDataCanFillTheRows) {
    for (const auto& [planes, compression, size, most] :
        Table<u32, u32, u32, u32>{{2, 0, 15, 3}, {63, 1, 12, 12}, {64, 1, 13, 6}, {65, 1, 12, 4}}) {
        const Picture picture({.width = 16, .planes = planes, .compression = compression}, Bytes(size));
        EXPECT_FALSE(picture.Body().CanFillRows(1)) << "before decoding has begun";
        picture.Body().BeginRows();
        EXPECT_TRUE(picture.Body().CanFillRows(most)) << planes << " planes";
        EXPECT_FALSE(picture.Body().CanFillRows(most + 1)) << planes << " planes";
    }
}

TEST(ByteRun, LengthIsThatOfAllBytesAsOneRow) {
    for (const auto& [packed, length] : Table<Bytes, u64>{
             {Bytes(), 0},
             {{0}, 0},
             {{0x80}, 0},
             {{0x80, 0x80, 0, 1}, 1},
             {{0x81}, 0},
             {{0x81, 9}, 128},
             {{0xFF, 9, 0xFF}, 2},
             {{5, 1, 2}, 2},
         })
        EXPECT_EQ(ByteRunLength(packed.data(), static_cast<u32>(packed.size())), length) << packed.size();
}

}  // namespace
