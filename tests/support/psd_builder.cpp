#include "support/psd_builder.h"

#include <sstream>

static Bytes PaddedName(const std::string& strName, u64 nMultiple) {
    return ByteBuilder().U8(strName.size()).Text(strName).Repeat(nMultiple - 1 - strName.size() % nMultiple, 0xAA);
}

static Bytes LayerInfo(const PsdFields& fields) {
    ByteBuilder info, images;
    info.U16(fields.layerCount.value_or(static_cast<i32>(fields.layers.size())));
    for (const auto& layer : fields.layers) {
        info.Append(LayerRecord(layer));
        for (const auto& channel : layer.channels) images.Append(channel.data);
    }
    return info.Append(images).Append(fields.layerPad);
}

Bytes Psd(const PsdFields& fields) {
    ByteBuilder out, resources, section;
    for (const auto& [signature, id, name, data] : fields.resources) {
        resources.Text(signature).U16(id).Append(PaddedName(name, 2));
        resources.Block(data).Repeat(data.size() % 2, 0xAA);
    }
    const bool hasLayers = fields.layerCount || !fields.layers.empty();
    if (hasLayers || !fields.globalMasks.empty()) {
        section.Block(hasLayers ? LayerInfo(fields) : Bytes(), fields.layersExcess);
        section.Block(fields.globalMasks, fields.globalMasksExcess);
    }
    out.Text(fields.signature).U16(fields.version).Repeat(6, 0).U16(fields.channels);
    out.U32(fields.rows, fields.columns).U16(fields.depth, fields.mode).Block(fields.colourData, fields.colourExcess);
    out.Block(resources, fields.resourcesExcess).Block(section, fields.sectionExcess).U16(fields.compression);
    const u64 rowSize = fields.depth == 1 ? (fields.columns + 7) / 8 : fields.columns * fields.depth / 8;
    return fields.samples ? out.Append(*fields.samples) : out.Repeat(fields.channels * fields.rows * rowSize, 0);
}

Bytes LayerRecord(const PsdLayerFields& fields) {
    ByteBuilder out, extra;
    out.U32(fields.top, fields.left, fields.bottom, fields.right).U16(fields.channels.size());
    for (const auto& [id, data, excess] : fields.channels) out.U16(id).U32(data.size() + static_cast<u64>(excess));
    out.Text(fields.signature).Text(fields.key).U8(fields.opacity, fields.clipping, fields.flags, 0xAA);
    extra.Block(fields.mask).Block(fields.ranges, fields.rangesExcess).Append(PaddedName(fields.name, 4));
    return out.Block(extra.Append(fields.extra), fields.extraExcess);
}

Bytes RawData(const Bytes& samples) { return ByteBuilder().U16(0).Append(samples); }

Bytes PackedData(const std::vector<Bytes>& rows) {
    ByteBuilder counts, data;
    for (const Bytes& row : rows) counts.U16(row.size()), data.Append(row);
    return ByteBuilder().U16(1).Append(counts).Append(data);
}

PsdFields LayeredPsd() {
    PsdLayerFields layer = {.top = -1, .left = 2, .bottom = 1, .right = 5};
    layer.channels = {{.id = -1, .data = RawData({1, 2, 3, 4, 5, 6})},
        {.id = 0, .data = PackedData({{0xFE, 7}, {2, 7, 8, 9}})}, {.id = -2, .data = RawData({10, 11})}};
    layer.opacity = 254, layer.clipping = 0xFF, layer.flags = 0xF0, layer.name = "first";
    layer.mask = ByteBuilder().U32(0xFFFFFFFF, 6, 0, 8).U8(0xFE, 0xFD).U16(0xAAAA);
    layer.ranges = ByteBuilder().Text("srcedestSRC0DST0SRC1DST1");  // none for the third
    PsdFields fields = {.rows = 2, .columns = 3, .mode = PSD_INDEXED, .layerCount = -2, .layerPad = {0}};
    fields.layers = {layer, {.channels = {{.id = -2, .data = RawData({12})}}, .ranges = Bytes(7), .extra = {1}}};
    for (u32 i = 0; i < 768; ++i) fields.colourData.push_back(static_cast<u8>(i / 256 * 80 + i % 256 / 4));
    fields.resources = {{.id = 1006, .data = {1, 'a', 0, 2, 'b', 'c'}}, {.name = "raw", .data = {1, 2, 3}}};
    fields.globalMasks = ByteBuilder().U16(0xFFFE).Text("abcdefgh").U16(0x1234).U8(0x80).Repeat(1 + 14, 0xAA);
    fields.compression = 1, fields.samples = Bytes{0, 2, 0, 4, 0xFE, 1, 2, 1, 2, 3};
    return fields;
}

std::string Description(const PsdImage& image) {
    std::ostringstream out;
    const auto put = [&](const auto&... values) { ((out << values << ' '), ...); };
    const auto putBytes = [&](const char* pszTitle, const u8* pBytes, u64 nSize) {
        out << pszTitle << ' ';
        for (u64 i = 0; i < nSize; ++i) put(u32{pBytes[i]});
    };
    put(image.m_nChannels, image.m_nHeight, image.m_nWidth, image.m_nDepth, image.m_nMode);
    putBytes(image.m_bMergedAlpha ? "merged" : "", image.m_pPalette.get(), image.m_pPalette ? 768 : 0);
    for (const auto& r : image.m_Resources) put("\nresource", r->m_pszName.get(), r->m_nId, r->m_pData->GetSize());
    for (const auto& l : image.m_Layers) {
        put("\nlayer", l->m_pszName.get(), l->m_nTop, l->m_nLeft, l->m_nBottom, l->m_nRight, l->m_nOpacity);
        put(l->m_nClipping, l->m_nFlags);
        for (const auto& channel : l->m_Channels) {
            put("\n channel", channel->m_nId);
            putBytes("range", channel->m_DestRange.data(), 4);
            const bool isMask = channel->m_nId == PSD_CHANNEL_USER_MASK && l->m_bHasMask;
            const i32 rows = isMask ? l->m_nMaskBottom - l->m_nMaskTop : l->m_nBottom - l->m_nTop;
            const i32 columns = isMask ? l->m_nMaskRight - l->m_nMaskLeft : l->m_nRight - l->m_nLeft;
            for (i32 y = 0; y < rows; ++y) putBytes("|", channel->m_ppPlane[y], static_cast<u32>(columns));
        }
    }
    for (const auto& mask : image.m_GlobalMasks) put("\nmask", mask->m_nColourSpace, mask->m_nOpacity, mask->m_nKind);
    for (u32 row = 0; row < image.m_nChannels * image.m_nHeight; ++row)
        putBytes(row ? "|" : "\nplanes", image.m_pppPlanes[0][row], image.m_nWidth * image.m_nDepth / 8);
    return out.str();
}
