// IFF files put together by name. Sizes and pad bytes are computed; a declared size can be made wrong on
// purpose.
#pragma once

#include "iff/iff_archive.h"
#include "support/byte_builder.h"

#include <optional>
#include <string_view>
#include <vector>

using DeclaredSize = std::optional<u32>;

// Id, size, body and, behind an odd body, the pad byte.
Bytes Chunk(std::string_view id, const Bytes& body, DeclaredSize size = {});

using Parts = std::vector<Bytes>;

Bytes Container(std::string_view id, std::string_view type, const Parts& parts, DeclaredSize size = {});
inline Bytes Form(std::string_view type, const Parts& parts, DeclaredSize size = {}) {
    return Container("FORM", type, parts, size);
}
inline Bytes List(std::string_view type, const Parts& parts) { return Container("LIST", type, parts); }
inline Bytes Cat(std::string_view type, const Parts& parts) { return Container("CAT ", type, parts); }
inline Bytes Prop(std::string_view type, const Parts& parts) { return Container("PROP", type, parts); }

// One container inside another, depth of them, the innermost empty.
Bytes Nested(u32 depth, std::string_view id);

struct BmhdFields {
    u32 width = 0, height = 0, planes = 1, masking = 0, compression = 0;
};

Bytes Bmhd(const BmhdFields& fields);
Bytes Cmap(const std::vector<IffRgb>& colours);

// A map of shades of grey, entry i being i times step.
Bytes GreyCmap(u32 entries, u32 step = 1);

struct AlphFields {
    u32 width = 0, height = 0, planes = 1, compression = 0;
    Bytes data = {};
};

Bytes Alph(const AlphFields& fields);

struct S3tcFields {
    std::string_view code = "DXT1";
    u32 width = 4, height = 4;
    Bytes data = {};
    DeclaredSize claimedSize = {};  // instead of the data's
};

// The header fields that nobody interprets hold the bytes 1 to 10.
Bytes S3tc(const S3tcFields& fields);

inline constexpr IffRgb BLACK = {0, 0, 0}, WHITE = {255, 255, 255};
inline constexpr IffRgb RED = {255, 0, 0}, GREEN = {0, 255, 0}, BLUE = {0, 0, 255};

// Plane rows of values given row by row, as a BODY holds them, raw.
Bytes PlanesOf(const std::vector<u32>& values, u32 width, u32 planes);

// ByteRun1, packed the way a careful writer does it: each plane row by itself.
Bytes ByteRun(const Bytes& planeRows, u32 planeRowSize);
