#include "support/iff_builder.h"

#include <algorithm>

Bytes Chunk(std::string_view id, const Bytes& body, std::optional<u32> declaredSize) {
    const u32 size = static_cast<u32>(body.size());
    ByteBuilder chunk;
    chunk.Text(id).U32(declaredSize.value_or(size)).Append(body);
    if (size % 2 != 0) chunk.U8(0);
    return chunk;
}

Bytes Container(
    std::string_view id, std::string_view type, const std::vector<Bytes>& children, std::optional<u32> declaredSize) {
    ByteBuilder body;
    body.Text(type);
    for (const Bytes& child : children) body.Append(child);
    return Chunk(id, body, declaredSize);
}

Bytes Form(std::string_view type, const std::vector<Bytes>& children, std::optional<u32> declaredSize) {
    return Container("FORM", type, children, declaredSize);
}

Bytes List(std::string_view type, const std::vector<Bytes>& children) { return Container("LIST", type, children); }

Bytes Cat(std::string_view type, const std::vector<Bytes>& children) { return Container("CAT ", type, children); }

Bytes Prop(std::string_view type, const std::vector<Bytes>& children) { return Container("PROP", type, children); }

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
    std::vector<IffRgb> colours;
    for (u32 i = 0; i < entries; ++i) {
        const u8 grey = static_cast<u8>(i * step);
        colours.push_back({grey, grey, grey});
    }
    return Cmap(colours);
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
    return Chunk("S3TC", body.Append(fields.data).Append(fields.rest));
}

Bytes PlanesOf(const std::vector<u32>& values, u32 width, u32 planes) {
    Bytes body;
    const u32 planeRowSize = (width + 7) / 8;
    for (u64 row = 0; row < values.size(); row += width) {
        for (u32 p = 0; p < planes; ++p) {
            const u64 start = body.size();
            body.resize(start + planeRowSize);
            for (u32 x = 0; x < width; ++x)
                if (values[row + x] >> p & 1) body[start + x / 8] |= static_cast<u8>(0x80 >> x % 8);
        }
    }
    return body;
}

Bytes ByteRun(const Bytes& planeRows, u32 planeRowSize) {
    ByteBuilder packed;
    for (u64 start = 0; start < planeRows.size(); start += planeRowSize) {
        const u64 end = start + planeRowSize;
        const auto runAt = [&](u64 at) {
            u64 length = 1;
            while (at + length < end && length < 128 && planeRows[at + length] == planeRows[at]) ++length;
            return length;
        };
        for (u64 at = start; at < end;) {
            if (const u64 run = runAt(at); run > 2) {
                packed.U8(257 - run, planeRows[at]);
                at += run;
                continue;
            }
            u64 stop = at + 1;
            while (stop < end && stop - at < 128 && runAt(stop) <= 2) ++stop;
            packed.U8(stop - at - 1);
            for (; at < stop; ++at) packed.U8(planeRows[at]);
        }
    }
    return packed;
}
