// What decodes a row: packed bytes, planes and blocks, of any sizes, into memory of exactly the size that
// they make.
#include "chunks/byte_run.h"
#include "chunks/register_chunks.h"
#include "display/block_decoder.h"
#include "fuzz/fuzz_input.h"
#include "psd/pack_bits.h"
#include "support/iff_builder.h"
#include "support/loading.h"

#include <cstring>
#include <memory>

namespace {

constexpr u32 MOST_ROWS = 64;

// The sanitizers see a byte too much on either side.
struct Exact {
    explicit Exact(u64 nCount) : pBytes(std::make_unique<u8[]>(nCount)) {}
    explicit Exact(const Bytes& bytes) : Exact(bytes.size()) {
        if (!bytes.empty()) std::memcpy(pBytes.get(), bytes.data(), bytes.size());
    }

    std::unique_ptr<u8[]> pBytes;
};

void UnpackPackBits(const Bytes& packed, u32 nWidth) {
    const Exact source(packed);
    const Exact row(nWidth);
    UnpackRow(row.pBytes.get(), nWidth, source.pBytes.get(), packed.size());
    UnpackLooseRow(row.pBytes.get(), nWidth, source.pBytes.get(), static_cast<u32>(packed.size()));
}

void UnpackByteRuns(const Bytes& packed, u32 nWidth) {
    const Exact bytes(packed);
    const Exact row(nWidth);
    ByteRunSource source = {bytes.pBytes.get(), static_cast<u32>(packed.size())};
    ByteRunLength(source.pCursor, source.nRemaining);
    for (u32 y = 0; y < MOST_ROWS && UnpackByteRun(row.pBytes.get(), nWidth, source); ++y) {
    }
}

void DecodePlanes(const Bytes& body, const BmhdFields& header, const ReadingRules& rules) {
    const LoadedIff loaded(Form("ILBM", {Bmhd(header), Body(body)}));
    auto& chunk = ChildAs<BodyChunk>(loaded.Root(), 1);
    if (!chunk.ReadHeader() || !chunk.BeginRows(rules)) return;
    chunk.CanFillRows(header.height);
    for (u32 y = 0; y < MOST_ROWS && chunk.DecodeRow(); ++y) {
    }
    chunk.EndRows();
}

void DecodeBlocks(const Bytes& blocks, u32 nKind, u32 nWidth, u32 nHeight) {
    constexpr std::string_view CODES[] = {"DXT1", "DXT2", "DXT3", "DXT4", "DXT5"};
    const std::string_view code = CODES[nKind % std::size(CODES)];
    // As many blocks as the size takes, whatever the input has.
    Bytes data = blocks;
    data.resize(u64{(nWidth + 3) / 4} * ((nHeight + 3) / 4) * (code == "DXT1" ? 8 : 16));
    const LoadedIff loaded(
        Form("ILBM", {S3tc({.code = code, .width = nWidth, .height = nHeight, .data = data})}));
    const auto& chunk = ChildAs<S3tcChunk>(loaded.Root(), 0);
    const S3tcBands bands(chunk);
    if (!bands.CanDecode()) return;
    DecodeS3tcImage(chunk);
    const u64 pitch = u64{nWidth} * 3;
    const Exact colours(pitch * nHeight);
    for (u32 top = 0; top < nHeight; top += S3TC_BAND_ROWS)
        bands.PutColours(top, colours.pBytes.get() + top * pitch, static_cast<i64>(pitch));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    RegisterChunks();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const u8* data, size_t size) {
    const FuzzInput input(data, size);
    const auto& controls = input.controls;
    const u32 width = u32{controls[2]} << 8 | controls[3];
    const u32 kind = controls[1] % 4;
    if (kind == 0) UnpackPackBits(input.file, width + 1);
    if (kind == 1) UnpackByteRuns(input.file, width);
    const BmhdFields header = {width, controls[4], controls[5], controls[6], controls[7]};
    if (kind == 2) DecodePlanes(input.file, header, input.Rules());
    if (kind == 3) DecodeBlocks(input.file, controls[5], controls[3], controls[4]);
    return 0;
}
