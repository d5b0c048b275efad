// Every kernel that the processor has against the plain ones.
#include "display/row_packing.h"

#include "support/byte_builder.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

namespace {

constexpr u32 LARGEST_PIXEL = 4;  // bytes
constexpr u32 EDGE = 16;          // bytes of offset, and beyond a row's end
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

const std::vector<IffRgb>& Map() {
    static const std::vector<IffRgb> map = [] {
        std::vector<IffRgb> entries;
        for (u32 i = 0; i < 200; ++i)
            entries.push_back({static_cast<u8>(i), static_cast<u8>(i * 3), static_cast<u8>(255 - i)});
        return entries;
    }();
    return map;
}

// Of a kernel that cannot refuse.
template <typename Call>
Kernel Always(const Call& call) {
    return [call](const RowKernels& kernels, u8* pOut, const std::vector<const u8*>& planes, u32 nWidth) {
        call(kernels, pOut, planes, nWidth);
        return true;
    };
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
            [](auto& k, u8* out, auto& p, u32 n) {
                return k.ColourMap(out, Values(p[0]), n, Map().data(), static_cast<u32>(Map().size()));
            }},
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
        const u32 value = random.Below(static_cast<u32>(Map().size()));
        std::memcpy(samples.data() + x * 4, &value, 4);
    }
    return samples;
}

void Compare(const KernelRow& row, u32 width, u32 offset, Random& random) {
    std::vector<Bytes> blocks;
    std::vector<const u8*> planes;
    for (u32 plane = 0; plane < row.nPlanes; ++plane) {
        // Samples of several bytes stand where such samples may.
        const u32 before = offset / row.nSampleSize * row.nSampleSize;
        Bytes block(before);
        const Bytes samples = SamplesFor(row, width, random);
        block.insert(block.end(), samples.begin(), samples.end());
        blocks.push_back(block);
    }
    for (const Bytes& block : blocks) planes.push_back(block.data() + block.size() - u64{width} * row.nSampleSize);
    const u32 size = width * row.nPixelSize;
    Bytes expected(offset + size + EDGE, UNTOUCHED);
    Bytes made = expected;
    ASSERT_TRUE(row.call(PLAIN_ROW_KERNELS, expected.data() + offset, planes, width));
    ASSERT_TRUE(row.call(TheRowKernels(), made.data() + offset, planes, width));
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
        std::vector<u32> values(width, 199);
        Bytes out(3 * width);
        const auto isWhole = [&] {
            return TheRowKernels().ColourMap(out.data(), values.data(), width, Map().data(), 200);
        };
        EXPECT_TRUE(isWhole());
        for (u32 x = 0; x < width; ++x)
            for (const u32 beyond : {200u, 0x80000000u}) {
                values[x] = beyond;
                EXPECT_FALSE(isWhole()) << width << " at " << x;
                values[x] = 199;
            }
    }
}

INSTANTIATE_TEST_SUITE_P(Vectors, EveryKernel, testing::Values("best", "SSSE3", "SSE4", "AVX2", "AVX3", "NEON"),
    [](const auto& kind) { return std::string(kind.param); });
