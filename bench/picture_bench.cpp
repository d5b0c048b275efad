// The steps from the bytes of an IFF picture to the screen: decoding rows and blocks, packing, drawing.

#include "chunks/body_chunk.h"
#include "chunks/extension_chunks.h"
#include "chunks/register_chunks.h"
#include "display/block_decoder.h"
#include "framework/core/stretch.h"
#include "kernels/row_kernels.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/random.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

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
                         GreyCmap(1u << nPlanes), Chunk("BODY", bPacked ? ByteRun(rows, SIDE / 8) : rows)});
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

void PackCmyk8(benchmark::State& state) {
    const Bytes samples = Random(2).SomeBytes(4 * SIDE);
    Bytes out(3 * SIDE);
    const u8* const row = samples.data();
    for (auto _ : state) {
        TheRowKernels().Cmyk8(out.data(), row, row + SIDE, row + 2 * SIDE, row + 3 * SIDE, SIDE);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<i64>(state.iterations()) * SIDE);
}
BENCHMARK(PackCmyk8);

// Arguments: the scale at which a screenful of a large picture is drawn, and its bits a pixel.
void StretchScreen(benchmark::State& state) {
    const u32 scale = static_cast<u32>(state.range(0));
    GdiBitmap bitmap;
    bitmap.header.biBitCount = static_cast<u16>(state.range(1));
    bitmap.nWidth = SIDE;
    bitmap.nHeight = SIDE;
    bitmap.bits = LargeBlock::Allocate(SIDE * DibStride(SIDE, bitmap.header.biBitCount));
    std::vector<u32> screen(1920 * 1080);
    const CRect exposed = {0, 0, static_cast<int>(std::min(1920u, SIDE * scale)),
                           static_cast<int>(std::min(1080u, SIDE * scale))};
    for (auto _ : state) {
        StretchExposed(bitmap, {SIDE, SIDE, SIDE * scale, SIDE * scale}, exposed, screen.data(), 1920);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<i64>(state.iterations()) * exposed.Width() * exposed.Height());
}
BENCHMARK(StretchScreen)->ArgsProduct({{1, 2, 32}, {8, 24}})->ArgNames({"scale", "bits"});

}  // namespace

int main(int argc, char** argv) {
    RegisterChunks();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
