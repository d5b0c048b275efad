#include "support/iff_builder.h"

#include <algorithm>

Bytes Chunk(std::string_view id, const Bytes& body, DeclaredSize size) {
    ByteBuilder chunk;
    chunk.Text(id).U32(size.value_or(static_cast<u32>(body.size())));
    return chunk.Append(body).Repeat(body.size() % 2, 0);
}

Bytes Container(std::string_view id, std::string_view type, const Parts& parts, DeclaredSize size) {
    ByteBuilder body;
    body.Text(type);
    for (const Bytes& part : parts) body.Append(part);
    return Chunk(id, body, size);
}

Bytes Nested(u32 depth, std::string_view id) {
    ByteBuilder file;
    for (u32 level = depth; level > 0; --level) file.Text(id).U32(level * 12 - 8).Text("ILBM");
    return file;
}

Bytes Bmhd(const BmhdFields& fields) {
    ByteBuilder body;
    body.U16(fields.width, fields.height, 0, 0).U8(fields.planes, fields.masking, fields.compression, 0);
    return Chunk("BMHD", body.U16(0).U8(10, 11).U16(fields.width, fields.height));
}

Bytes Cmap(const std::vector<IffRgb>& colours) {
    ByteBuilder body;
    for (const IffRgb& colour : colours) body.U8(colour.red, colour.green, colour.blue);
    return Chunk("CMAP", body);
}

Bytes GreyCmap(u32 entries, u32 step) {
    ByteBuilder body;
    for (u32 i = 0; i < entries; ++i) body.Repeat(3, i * step);
    return Chunk("CMAP", body);
}

Bytes Alph(const AlphFields& fields) {
    ByteBuilder body;
    body.U16(fields.width, fields.height).U8(fields.planes, fields.compression);
    return Chunk("ALPH", body.Append(fields.data));
}

Bytes S3tc(const S3tcFields& fields) {
    ByteBuilder body;
    body.U32(0x01020304).Text(fields.code).U16(0x0506, 0x0708, 0x090A, fields.width, fields.height);
    body.U32(fields.claimedSize.value_or(static_cast<u32>(fields.data.size())));
    return Chunk("S3TC", body.Append(fields.data));
}

Bytes PlanesOf(const std::vector<u32>& values, u32 width, u32 planes) {
    const u32 planeRowSize = (width + 7) / 8;
    Bytes body(values.size() / width * planes * planeRowSize);
    for (u32 i = 0; i < values.size() * planes; ++i) {
        const u32 x = i % width, plane = i / width % planes, y = i / width / planes;
        if (values[y * width + x] >> plane & 1)
            body[i / width * planeRowSize + x / 8] |= static_cast<u8>(0x80 >> x % 8);
    }
    return body;
}

Bytes ByteRun(const Bytes& planeRows, u32 planeRowSize) {
    ByteBuilder packed;
    for (u64 at = 0, end = planeRowSize; at < planeRows.size(); end += planeRowSize) {
        const auto runAt = [&](u64 start) {
            u64 length = 1;
            while (start + length < end && length < 128 && planeRows[start + length] == planeRows[start]) ++length;
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
