// IFF files put together by name. Sizes and pad bytes are computed; a declared size can be made wrong on
// purpose.
#pragma once

#include "iff/iff_archive.h"
#include "support/byte_builder.h"

#include <optional>
#include <string_view>
#include <vector>

using DeclaredSize = std::optional<u32>;

// Id, size, body and, after an odd body, the pad byte.
inline Bytes Chunk(std::string_view id, const Bytes& body, DeclaredSize size = {}) {
    ByteBuilder chunk;
    chunk.Text(id).U32(size.value_or(static_cast<u32>(body.size())));
    return chunk.Append(body).Repeat(body.size() % 2, 0);
}

using Parts = std::vector<Bytes>;

inline Bytes Container(std::string_view id, std::string_view type, const Parts& parts, DeclaredSize size = {}) {
    ByteBuilder body;
    body.Text(type);
    for (const Bytes& part : parts) body.Append(part);
    return Chunk(id, body, size);
}
inline Bytes Form(std::string_view type, const Parts& parts, DeclaredSize size = {}) {
    return Container("FORM", type, parts, size);
}
inline Bytes List(std::string_view type, const Parts& parts) { return Container("LIST", type, parts); }
inline Bytes Cat(std::string_view type, const Parts& parts) { return Container("CAT ", type, parts); }
inline Bytes Prop(std::string_view type, const Parts& parts) { return Container("PROP", type, parts); }

// One container inside another, nDepth of them, the innermost empty.
inline Bytes Nested(u32 nDepth, std::string_view id) {
    ByteBuilder file;
    for (u32 level = nDepth; level > 0; --level) file.Text(id).U32(level * 12 - 8).Text("ILBM");
    return file;
}

struct BmhdFields {
    u32 width = 0, height = 0, planes = 1, masking = 0, compression = 0;
};

inline Bytes Bmhd(const BmhdFields& fields) {
    ByteBuilder body;
    body.U16(fields.width, fields.height, 0, 0).U8(fields.planes, fields.masking, fields.compression, 0);
    return Chunk("BMHD", body.U16(0).U8(10, 11).U16(fields.width, fields.height));
}
inline Bytes Cmap(const std::vector<IffRgb>& colours) {
    ByteBuilder body;
    for (const IffRgb& colour : colours) body.U8(colour.red, colour.green, colour.blue);
    return Chunk("CMAP", body);
}

inline Bytes Body(const Bytes& planeRows, DeclaredSize size = {}) { return Chunk("BODY", planeRows, size); }

// A map of shades of grey, entry i being i times nStep.
inline Bytes GreyCmap(u32 nEntries, u32 nStep = 1) {
    ByteBuilder body;
    for (u32 i = 0; i < nEntries; ++i) body.Repeat(3, i * nStep);
    return Chunk("CMAP", body);
}

struct AlphFields {
    u32 width = 0, height = 0, planes = 1, compression = 0;
    Bytes data = {};
};

inline Bytes Alph(const AlphFields& fields) {
    ByteBuilder body;
    body.U16(fields.width, fields.height).U8(fields.planes, fields.compression);
    return Chunk("ALPH", body.Append(fields.data));
}

struct S3tcFields {
    std::string_view code = "DXT1";
    u32 width = 4, height = 4;
    Bytes data = {};
    DeclaredSize claimedSize = {};  // instead of the data's
};

// The header fields that nobody interprets hold the bytes 1 to 10.
inline Bytes S3tc(const S3tcFields& fields) {
    ByteBuilder body;
    body.U32(0x01020304).Text(fields.code).U16(0x0506, 0x0708, 0x090A, fields.width, fields.height);
    body.U32(fields.claimedSize.value_or(static_cast<u32>(fields.data.size())));
    return Chunk("S3TC", body.Append(fields.data));
}

inline constexpr IffRgb BLACK = {0, 0, 0}, WHITE = {255, 255, 255};
inline constexpr IffRgb RED = {255, 0, 0}, GREEN = {0, 255, 0}, BLUE = {0, 0, 255};

// Plane rows of values given row by row, as a BODY holds them, raw.
inline Bytes PlanesOf(const std::vector<u32>& values, u32 nWidth, u32 nPlanes) {
    const u32 planeRowSize = (nWidth + 7) / 8;
    Bytes body(values.size() / nWidth * nPlanes * planeRowSize);
    for (u32 i = 0; i < values.size() * nPlanes; ++i) {
        const u32 x = i % nWidth, plane = i / nWidth % nPlanes, y = i / nWidth / nPlanes;
        if (values[y * nWidth + x] >> plane & 1)
            body[i / nWidth * planeRowSize + x / 8] |= static_cast<u8>(0x80 >> x % 8);
    }
    return body;
}

// ByteRun1, packed the way a careful writer does it: each plane row by itself.
inline Bytes ByteRun(const Bytes& planeRows, u32 nPlaneRowSize) {
    ByteBuilder packed;
    for (u64 at = 0, end = nPlaneRowSize; at < planeRows.size(); end += nPlaneRowSize) {
        const auto runAt = [&](u64 nStart) {
            u64 length = 1;
            while (nStart + length < end && length < 128 && planeRows[nStart + length] == planeRows[nStart]) ++length;
            return length;
        };
        while (at < end) {
            const u64 run = runAt(at);
            u64 stop = at + run;
            while (run <= 2 && stop < end && stop - at < 128 && runAt(stop) <= 2) ++stop;
            packed.U8(run > 2 ? 257 - run : stop - at - 1);
            packed.Append(Bytes(&planeRows[at], &planeRows[at] + (run > 2 ? 1 : stop - at)));
            at = stop;
        }
    }
    return packed;
}
