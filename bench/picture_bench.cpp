// The steps from the bytes of an IFF picture to the screen: decoding rows and blocks, packing, drawing.

#include "chunks/body_chunk.h"
#include "chunks/extension_chunks.h"
#include "chunks/register_chunks.h"
#include "display/block_decoder.h"
#include "framework/core/stretch.h"
#include "kernels/packets.h"
#include "kernels/row_kernels.h"
#include "photograph.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/random.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <malloc.h>
#include <vector>

namespace {

constexpr u32 SIDE = 1024;

// Smooth areas beside noise, so that runs and literals mix.
Bytes PictureOf(u32 nPlanes, bool bPacked) {
    Random random(1);
    std::vector<u32> values(SIDE * SIDE);
    for (u32 i = 0; i < values.size(); ++i)
        values[i] = (i / 64 % 2 ? random() : i / SIDE / 8) & ((1u << nPlanes) - 1);
    const Bytes rows = PlanesOf(values, SIDE, nPlanes);
    return Form("ILBM", {Bmhd({.width = SIDE, .height = SIDE, .planes = nPlanes, .compression = bPacked}),
                         GreyCmap(1u << nPlanes), Body(bPacked ? ByteRun(rows, SIDE / 8) : rows)});
}

// Arguments: planes, whether packed. Bytes are those of the 24-bit picture.
void DecodeRows(benchmark::State& state) {
    const LoadedIff file(PictureOf(static_cast<u32>(state.range(0)), state.range(1) != 0));
    auto& body = ChildAs<BodyChunk>(file.Root(), 2);
    for (auto _ : state) {
        body.BeginRows();
        for (u32 y = 0; y < SIDE; ++y) benchmark::DoNotOptimize(body.DecodeRow());
    }
    body.EndRows();
    state.SetItemsProcessed(static_cast<i64>(state.iterations()) * SIDE * SIDE);
}
BENCHMARK(DecodeRows)->ArgsProduct({{1, 5, 8}, {0, 1}})->ArgNames({"planes", "packed"});

// Bytes are those of the decoded pixels. Blocks that were had before are had again, so that no fresh pages
// count.
void DecodeBlocks(benchmark::State& state) {
    constexpr u32 WIDE = 4096;
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    const bool oneBit = state.range(0) == 1;
    const Bytes data = Random(3).SomeBytes(WIDE / 4 * (WIDE / 4) * (oneBit ? 8 : 16));
    const LoadedIff file(Form(
        "ILBM", {S3tc({.code = oneBit ? "DXT1" : "DXT5", .width = WIDE, .height = WIDE, .data = data})}));
    const auto& chunk = ChildAs<S3tcChunk>(file.Root(), 0);
    for (auto _ : state) benchmark::DoNotOptimize(DecodeS3tcImage(chunk));
    state.SetBytesProcessed(static_cast<i64>(state.iterations()) * WIDE * WIDE * 4);
}
BENCHMARK(DecodeBlocks)->Arg(1)->Arg(5)->ArgName("code")->Unit(benchmark::kMillisecond);

// Kernels alone over a picture of 4096 x 4096 that is there already. Bytes are those written, to be held
// against those of memcpy.
constexpr u32 LARGE = 4096;
constexpr u64 LARGE_BITMAP = u64{LARGE} * LARGE * 3;

void SetWritten(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<i64>(state.iterations() * LARGE_BITMAP));
}

LargeBlock Written(u64 nSize) {
    LargeBlock block = LargeBlock::Allocate(nSize);
    std::memset(block.Data(), 1, nSize);
    return block;
}

void CopyLarge(benchmark::State& state) {
    const LargeBlock from = Written(LARGE_BITMAP);
    const LargeBlock to = Written(LARGE_BITMAP);
    for (auto _ : state) {
        std::memcpy(to.Data(), from.Data(), LARGE_BITMAP);
        benchmark::ClobberMemory();
    }
    SetWritten(state);
}
BENCHMARK(CopyLarge)->Unit(benchmark::kMillisecond);

void PlanesToColours(benchmark::State& state) {
    const LargeBlock planes = Written(LARGE_BITMAP);
    const LargeBlock out = Written(LARGE_BITMAP);
    constexpr u64 PLANE = u64{LARGE} * LARGE;
    for (auto _ : state)
        for (u64 y = 0; y < LARGE; ++y) {
            const u8* const row = planes.Data() + y * LARGE;
            TheRowKernels().Rgb8(out.Data() + y * LARGE * 3, row, row + PLANE, row + 2 * PLANE, LARGE);
        }
    SetWritten(state);
}
BENCHMARK(PlanesToColours)->Unit(benchmark::kMillisecond);

void UnpackPhotograph(benchmark::State& state) {
    Photograph photograph(LARGE);
    PacketCounts packets;
    Row packed;
    for (u32 y = 0; y < 3 * LARGE; ++y) {
        const Row row = PackRow(photograph.NextRow(y / LARGE, y % LARGE), packets);
        packed.insert(packed.end(), row.begin(), row.end());
    }
    const LargeBlock out = Written(LARGE_BITMAP);
    for (auto _ : state) {
        const u8* in = packed.data();
        for (u64 y = 0; y < 3 * LARGE; ++y) {
            u8* const to = out.Data() + y * LARGE;
            PacketRow row = {in, packed.data() + packed.size(), to, to + LARGE};
            TheRowKernels().UnpackPackBits(row);
            in = row.pIn;
        }
    }
    SetWritten(state);
}
BENCHMARK(UnpackPhotograph)->Unit(benchmark::kMillisecond);

void BitPlanesToColours(benchmark::State& state) {
    const Bytes planes = Random(4).SomeBytes(LARGE * LARGE);
    const LargeBlock out = Written(LARGE_BITMAP);
    std::vector<u32> values(LARGE);
    std::vector<u32> colours(256);
    for (u32 i = 0; i < colours.size(); ++i) colours[i] = i * 0x010203;
    for (auto _ : state)
        for (u64 y = 0; y < LARGE; ++y) {
            TheRowKernels().PlanesToValues(values.data(), planes.data() + y * LARGE, LARGE, 8, LARGE / 8);
            TheRowKernels().ColourMap(out.Data() + y * LARGE * 3, values.data(), LARGE, colours.data(), 256);
        }
    SetWritten(state);
}
BENCHMARK(BitPlanesToColours)->Unit(benchmark::kMillisecond);

void BlocksToColours(benchmark::State& state) {
    const Bytes blocks = Random(3).SomeBytes(LARGE / 4 * (LARGE / 4) * 8);
    const LargeBlock out = Written(LARGE_BITMAP);
    for (auto _ : state)
        for (u64 y = 0; y < LARGE; y += 4)
            TheRowKernels().ColourBlocks(out.Data() + y * LARGE * 3, i64{LARGE} * 3,
                                         blocks.data() + y / 4 * (LARGE / 4) * 8, 8, LARGE / 4, true);
    SetWritten(state);
}
BENCHMARK(BlocksToColours)->Unit(benchmark::kMillisecond);

// Arguments: the scale at which a screenful of a large picture is drawn, in 32nds, and its bits a pixel.
void StretchScreen(benchmark::State& state) {
    const u32 dest = static_cast<u32>(LARGE * state.range(0) / 32);
    GdiBitmap bitmap;
    bitmap.header.biBitCount = static_cast<u16>(state.range(1));
    bitmap.nWidth = LARGE;
    bitmap.nHeight = LARGE;
    bitmap.bits = Written(LARGE * DibStride(LARGE, bitmap.header.biBitCount));
    std::vector<u32> screen(1920 * 1080);
    const CRect exposed = {0, 0, static_cast<int>(std::min(1920u, dest)),
                           static_cast<int>(std::min(1080u, dest))};
    for (auto _ : state) {
        StretchExposed(bitmap, {LARGE, LARGE, dest, dest}, exposed, screen.data(), 1920);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<i64>(state.iterations()) * exposed.Width() * exposed.Height());
}
BENCHMARK(StretchScreen)
    ->ArgsProduct({{1, 16, 32, 48, 1024}, {8, 24}})
    ->ArgNames({"scale32", "bits"})
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    RegisterChunks();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
