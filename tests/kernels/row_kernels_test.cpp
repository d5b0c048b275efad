// Every kernel that the processor has against the plain ones.
#include "kernels/row_kernels.h"

#include "kernels/packets.h"
#include "support/byte_builder.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr u32 EDGE = 16;  // bytes of offset, and beyond a row's end
constexpr u8 UNTOUCHED = 0xC3;

// The kernel of one table; planes of as many bytes a sample as it reads.
using Kernel = std::function<bool(const RowKernels&, u8* pOut, const std::vector<const u8*>& planes, u32 nWidth)>;

const u16* Words(const u8* pPlane) { return reinterpret_cast<const u16*>(pPlane); }
const u32* Values(const u8* pPlane) { return reinterpret_cast<const u32*>(pPlane); }

struct KernelRow {
    const char* pszName;
    u32 nPlanes;
    u32 nSampleSize;
    u32 nPixelSize;
    Kernel call;
};

constexpr u32 COLOURS = 256;
constexpr u32 MAPPED = 200;  // of them in the map

const u32* Colours() {
    static const std::vector<u32> colours = [] {
        std::vector<u32> made;
        for (u32 i = 0; i < COLOURS; ++i) made.push_back(0x010203 * i ^ 0xFF00);
        return made;
    }();
    return colours.data();
}

u32* Words32(u8* pOut) { return reinterpret_cast<u32*>(pOut); }

// Of a kernel that cannot refuse.
template <typename Call>
Kernel Always(const Call& call) {
    return [call](const RowKernels& kernels, u8* pOut, const std::vector<const u8*>& planes, u32 nWidth) {
        call(kernels, pOut, planes, nWidth);
        return true;
    };
}

// The first, the last and others, some of them twice.
std::vector<u32> ColumnsOf(u32 nWidth) {
    std::vector<u32> columns(nWidth);
    for (u32 x = 0; x < nWidth; ++x) columns[x] = x * 2 / 3 + (x + 1 == nWidth ? nWidth - 1 - x * 2 / 3 : 0);
    return columns;
}

const std::vector<KernelRow>& AllKernels() {
    static const std::vector<KernelRow> rows = {
        {"HighBytes", 1, 2, 1, Always([](auto& k, u8* out, auto& p, u32 n) { k.HighBytes(out, Words(p[0]), n); })},
        {"LowBytes", 1, 2, 1, Always([](auto& k, u8* out, auto& p, u32 n) { k.LowBytes(out, Words(p[0]), n); })},
        {"Rgb8", 3, 1, 3, Always([](auto& k, u8* out, auto& p, u32 n) { k.Rgb8(out, p[0], p[1], p[2], n); })},
        {"Rgb16", 3, 2, 3,
            Always([](auto& k, u8* out, auto& p, u32 n) { k.Rgb16(out, Words(p[0]), Words(p[1]), Words(p[2]), n); })},
        {"Cmyk8", 4, 1, 3, Always([](auto& k, u8* out, auto& p, u32 n) { k.Cmyk8(out, p[0], p[1], p[2], p[3], n); })},
        {"Cmyk16", 4, 2, 3, Always([](auto& k, u8* out, auto& p, u32 n) {
             k.Cmyk16(out, Words(p[0]), Words(p[1]), Words(p[2]), Words(p[3]), n);
         })},
        {"GreyValues", 1, 4, 3, Always([](auto& k, u8* out, auto& p, u32 n) { k.GreyValues(out, Values(p[0]), n); })},
        {"Bgra", 1, 4, 3, Always([](auto& k, u8* out, auto& p, u32 n) { k.Bgra(out, p[0], n); })},
        {"BgraAlpha", 1, 4, 3, Always([](auto& k, u8* out, auto& p, u32 n) { k.BgraAlpha(out, p[0], n); })},
        {"ColourMap", 1, 4, 3,
            [](auto& k, u8* out, auto& p, u32 n) { return k.ColourMap(out, Values(p[0]), n, Colours(), MAPPED); }},
        {"IndexedPixels", 1, 1, 4,
            Always([](auto& k, u8* out, auto& p, u32 n) { k.IndexedPixels(Words32(out), p[0], n, Colours()); })},
        {"Pixels24", 1, 3, 4, Always([](auto& k, u8* out, auto& p, u32 n) { k.Pixels24(Words32(out), p[0], n); })},
        {"IndexedColumns", 1, 1, 4, Always([](auto& k, u8* out, auto& p, u32 n) {
             k.IndexedColumns(Words32(out), p[0], ColumnsOf(n).data(), n, Colours());
         })},
        {"Columns24", 1, 3, 4,
            Always([](auto& k, u8* out, auto& p, u32 n) { k.Columns24(Words32(out), p[0], ColumnsOf(n).data(), n); })},
        {"AddBytes", 1, 1, 2,
            Always([](auto& k, u8* out, auto& p, u32 n) { k.AddBytes(reinterpret_cast<u16*>(out), p[0], n); })},
    };
    return rows;
}

// Every kind of vectors that the processor has, and the table in use for each in turn.
class EveryKernel : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        if (!UseRowKernels(GetParam())) GTEST_SKIP() << "the build or the processor lacks it";
    }
    void TearDown() override { UseRowKernels(BEST_ROW_KERNELS); }
};

// Random samples of which the map has all values, in a block that ends with them.
Bytes SamplesFor(const KernelRow& row, u32 width, Random& random) {
    Bytes samples = random.SomeBytes(width * row.nSampleSize);
    if (std::string_view(row.pszName) != "ColourMap") return samples;
    for (u32 x = 0; x < width; ++x) {
        const u32 value = random.Below(MAPPED);
        std::memcpy(samples.data() + x * 4, &value, 4);
    }
    return samples;
}

void Compare(const KernelRow& row, u32 width, u32 offset, Random& random) {
    std::vector<Bytes> blocks;
    std::vector<const u8*> planes;
    for (u32 plane = 0; plane < row.nPlanes; ++plane) {
        // Samples of several bytes stand where such samples may.
        const u32 before = row.nSampleSize == 3 ? offset : offset / row.nSampleSize * row.nSampleSize;
        Bytes block(before);
        const Bytes samples = SamplesFor(row, width, random);
        block.insert(block.end(), samples.begin(), samples.end());
        blocks.push_back(block);
    }
    for (const Bytes& block : blocks) planes.push_back(block.data() + block.size() - u64{width} * row.nSampleSize);
    const u32 size = width * row.nPixelSize;
    const u32 start = row.nPixelSize == 3 ? offset : offset / row.nPixelSize * row.nPixelSize;
    Bytes expected(start + size + EDGE, UNTOUCHED);
    Bytes made = expected;
    ASSERT_TRUE(row.call(PLAIN_ROW_KERNELS, expected.data() + start, planes, width));
    ASSERT_TRUE(row.call(TheRowKernels(), made.data() + start, planes, width));
    ASSERT_EQ(made, expected) << row.pszName << ", width " << width << ", offset " << offset;
}

}  // namespace

TEST_P(EveryKernel, MakesWhatThePlainOneMakes) {
    Random random(5);
    for (const KernelRow& row : AllKernels()) {
        for (u32 width = 0; width <= 130; ++width)
            for (u32 offset = 0; offset < EDGE; ++offset) Compare(row, width, offset, random);
        for (const u32 width : {4096u, 9001u}) Compare(row, width, width % EDGE, random);
    }
}

// Packets of all kinds and lengths, short ones most often, over rows and sources that end anywhere: each kernel
// stops where the plain one does, and has written what that has.
TEST_P(EveryKernel, UnpacksPacketsWhereverTheRowOrTheSourceEnds) {
    Random random(8);
    const auto compare = [&](auto kernel, u32 width) {
        ByteBuilder source;
        const u32 size = random.Below(width + 20);
        while (source.size() < size)
            source.U8(random.Below(3) > 0 ? random.Below(20) - 10 : random()).Append(random.SomeBytes(random.Below(9)));
        const auto packed = std::make_unique<u8[]>(size);  // of exactly that size, for the sanitizer
        std::copy_n(source.begin(), size, packed.get());
        Bytes expected(width + EDGE, UNTOUCHED);
        Bytes made = expected;
        const auto unpack = [&](const RowKernels& kernels, Bytes& out) {
            PacketRow row = {packed.get(), packed.get() + size, out.data(), out.data() + width};
            (kernels.*kernel)(row);
            std::fill(row.pOut, row.pOutEnd, UNTOUCHED);  // where it may write ahead
            return std::pair(row.pIn - packed.get(), row.pOut - out.data());
        };
        ASSERT_EQ(unpack(TheRowKernels(), made), unpack(PLAIN_ROW_KERNELS, expected)) << width;
        ASSERT_EQ(made, expected) << width;
    };
    std::vector<u32> widths = {4096, 9001};
    for (u32 width = 0; width <= 130; ++width) widths.insert(widths.end(), 20, width);
    for (u32 i = 0; i < 4000; ++i) widths.push_back(131 + random.Below(300));  // room for the longest and more
    for (const u32 width : widths) {
        compare(&RowKernels::UnpackPackBits, width);
        compare(&RowKernels::UnpackByteRun, width);
    }
}

// As many bytes as the planes of one row take, and no more.
TEST_P(EveryKernel, MakesValuesOfPlanesWhateverTheirNumber) {
    Random random(6);
    std::vector<u32> widths = {4096, 9001};
    for (u32 width = 0; width <= 130; ++width) widths.push_back(width);
    for (const u32 width : widths)
        for (const u32 planes : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 16, 17, 24, 32, 33})
            for (const u32 padding : {0, 1}) {
                const u32 planeRowSize = (width + 7) / 8 + padding;
                const Bytes rows = random.SomeBytes(planes * planeRowSize);
                std::vector<u32> expected(width + 1, UNTOUCHED);
                std::vector<u32> made = expected;
                PLAIN_ROW_KERNELS.PlanesToValues(expected.data(), rows.data(), width, planes, planeRowSize);
                TheRowKernels().PlanesToValues(made.data(), rows.data(), width, planes, planeRowSize);
                ASSERT_EQ(made, expected) << planes << " planes of " << width << " + " << padding;
                ASSERT_EQ(made[width], UNTOUCHED);
            }
}

// Both orders of the end points, and equal ones. Rows stand one above the other as in a bitmap.
TEST_P(EveryKernel, DecodesColourBlocksHoweverMany) {
    Random random(7);
    for (const u32 blocks : {0, 1, 2, 7, 8, 9, 10, 16, 17, 18, 31, 33, 1024})
        for (const u32 blockSize : {8, 16})
            for (const bool transparent : {false, true}) {
                Bytes data = random.SomeBytes(blocks * blockSize - (blocks > 0 ? blockSize - 8 : 0));
                if (blocks > 2) std::memcpy(data.data() + 2 * blockSize + 2, data.data() + 2 * blockSize, 2);
                const u32 pitch = blocks * 12 + 3;
                Bytes expected(4 * pitch, UNTOUCHED);
                Bytes made = expected;
                const auto decode = [&](const RowKernels& kernels, Bytes& out) {
                    kernels.ColourBlocks(
                        out.data() + 3 * pitch, -i64{pitch}, data.data(), blockSize, blocks, transparent);
                };
                decode(PLAIN_ROW_KERNELS, expected);
                decode(TheRowKernels(), made);
                ASSERT_EQ(made, expected) << blocks << " of " << blockSize << (transparent ? ", transparent" : "");
            }
}

TEST_P(EveryKernel, InksEveryPairOfBytesAndEveryBorderOfWords) {
    Bytes components(65536), blacks(65536), made(3 * 65536), expected(3 * 65536);
    for (u32 i = 0; i < 65536; ++i) {
        components[i] = static_cast<u8>(i);
        blacks[i] = static_cast<u8>(i >> 8);
    }
    const auto compare8 = [&](const RowKernels& kernels, Bytes& out) {
        kernels.Cmyk8(out.data(), components.data(), components.data(), components.data(), blacks.data(), 65536);
    };
    compare8(PLAIN_ROW_KERNELS, expected);
    compare8(TheRowKernels(), made);
    EXPECT_EQ(made, expected);

    // For each black and each quotient the largest component that is below it, and the next.
    std::vector<u16> words, inks;
    for (u32 black = 1; black <= 65535; black += black < 300 || black > 65000 ? 1 : 97)
        for (u32 quotient = 1; quotient <= 255; quotient += 13) {
            const u64 border = (u64{quotient} * 65535 * 256 + black - 1) / black;
            for (u64 component = border - 1; component <= border && component <= 65535; ++component) {
                words.push_back(static_cast<u16>(component));
                inks.push_back(static_cast<u16>(black));
            }
        }
    const u32 count = static_cast<u32>(words.size());
    ASSERT_GT(count, 10000u);
    Bytes made16(3 * count), expected16(3 * count);
    PLAIN_ROW_KERNELS.Cmyk16(expected16.data(), words.data(), words.data(), words.data(), inks.data(), count);
    TheRowKernels().Cmyk16(made16.data(), words.data(), words.data(), words.data(), inks.data(), count);
    EXPECT_EQ(made16, expected16);
}

TEST_P(EveryKernel, FindsAValueBeyondTheMapWhereverItStands) {
    for (const u32 width : {1u, 64u, 65u, 300u}) {
        std::vector<u32> values(width, MAPPED - 1);
        Bytes out(3 * width);
        const auto isWhole = [&] {
            return TheRowKernels().ColourMap(out.data(), values.data(), width, Colours(), MAPPED);
        };
        EXPECT_TRUE(isWhole());
        for (u32 x = 0; x < width; ++x)
            for (const u32 beyond : {MAPPED, 0x80000000u}) {
                values[x] = beyond;
                EXPECT_FALSE(isWhole()) << width << " at " << x;
                values[x] = MAPPED - 1;
            }
    }
}

INSTANTIATE_TEST_SUITE_P(Vectors, EveryKernel,
    testing::Values("best", "SSSE3", "SSE4", "AVX2", "AVX3", "AVX3_DL", "NEON"),
    [](const auto& kind) { return std::string(kind.param); });
