#include "support/psd_builder.h"

#include "document/finding_text.h"
#include "document/passed_text.h"

#include <zlib.h>

static Bytes PaddedName(const std::string& strName, u64 nMultiple) {
    return ByteBuilder().U8(strName.size()).Text(strName).Repeat(nMultiple - 1 - strName.size() % nMultiple, 0xAA);
}

Bytes LayerInfo(const PsdFields& fields) {
    ByteBuilder info, images;
    info.U16(fields.layerCount.value_or(static_cast<i32>(fields.layers.size())));
    for (const auto& layer : fields.layers) {
        info.Append(LayerRecord(layer, fields.version == 2));
        for (const auto& channel : layer.channels) images.Append(channel.data);
    }
    return info.Append(images).Append(fields.layerPad);
}

Bytes Psd(const PsdFields& fields) {
    ByteBuilder out, resources, section;
    for (const auto& [signature, id, name, data, excess] : fields.resources) {
        resources.Text(signature).U16(id).Append(PaddedName(name, 2));
        resources.Block(data, excess).Repeat(data.size() % 2, 0xAA);
    }
    const bool hasLayers = fields.layerCount || !fields.layers.empty();
    const bool large = fields.version == 2;
    if (hasLayers || !fields.globalMasks.empty() || !fields.tagged.empty() || !fields.hasGlobalMasks) {
        section.Block(hasLayers ? LayerInfo(fields) : Bytes(), fields.layersExcess, large);
        if (fields.hasGlobalMasks) section.Block(fields.globalMasks, fields.globalMasksExcess);
        section.Append(fields.tagged);
    }
    out.Text("8BPS").U16(fields.version).Repeat(6, 0).U16(fields.channels);
    out.U32(fields.rows, fields.columns).U16(fields.depth, fields.mode).Block(fields.colourData, fields.colourExcess);
    out.Block(resources, fields.resourcesExcess).Block(section, fields.sectionExcess, large).U16(fields.compression);
    const u64 rowSize = fields.depth == 1 ? (fields.columns + 7) / 8 : fields.columns * fields.depth / 8;
    return fields.samples ? out.Append(*fields.samples) : out.Repeat(fields.channels * fields.rows * rowSize, 0);
}

Bytes PaddedPsd() { return Psd({.layers = {{.channels = {{.data = RawData({7})}}}}, .layerPad = Bytes(4)}); }

Bytes LayerRecord(const PsdLayerFields& fields, bool large) {
    ByteBuilder out, extra;
    out.U32(fields.top, fields.left, fields.bottom, fields.right).U16(fields.channels.size());
    for (const auto& [id, data, excess] : fields.channels)
        out.U16(id).Length(data.size() + static_cast<u64>(excess), large);
    out.Text(fields.signature).Text(fields.key).U8(fields.opacity, fields.clipping, fields.flags, 0xAA);
    extra.Block(fields.mask).Block(fields.ranges, fields.rangesExcess).Append(PaddedName(fields.name, 4));
    return out.Block(extra.Append(fields.extra), fields.extraExcess);
}

Bytes RawData(const Bytes& samples) { return ByteBuilder().U16(0).Append(samples); }

Bytes PackedData(const std::vector<Bytes>& rows, bool large) {
    ByteBuilder counts, data;
    for (const Bytes& row : rows) {
        large ? counts.U32(row.size()) : counts.U16(row.size());
        data.Append(row);
    }
    return ByteBuilder().U16(1).Append(counts).Append(data);
}

Bytes ZipData(const Bytes& samples, u32 compression, int level) {
    uLongf size = compressBound(samples.size());
    Bytes packed(size);
    compress2(packed.data(), &size, samples.data(), samples.size(), level);
    packed.resize(size);
    return ByteBuilder().U16(compression).Append(packed);
}

Bytes TaggedBlock(const std::string& key, const Bytes& data, i64 excess, bool large, const std::string& signature) {
    return ByteBuilder().Text(signature).Text(key).Block(data, excess, large);
}

PsdFields LayeredPsd() {
    PsdLayerFields layer = {.top = -1, .left = 2, .bottom = 1, .right = 5};
    layer.channels = {{.id = -1, .data = RawData({1, 2, 3, 4, 5, 6})},
        {.id = 0, .data = PackedData({{0xFE, 7}, {2, 7, 8, 9}})}, {.id = -2, .data = RawData({10, 11})}};
    layer.name = "first";
    layer.mask = ByteBuilder().U32(0xFFFFFFFF, 6, 0, 8).U8(0xFE, 0xFD).U16(0xAAAA);
    layer.ranges = ByteBuilder().Text("srcedestSRC0DST0SRC1DST1");  // none for the third
    PsdFields fields = {.rows = 2, .columns = 3, .mode = PSD_INDEXED, .layerCount = -2, .layerPad = {0}};
    fields.layers = {layer, {.channels = {{.id = -2, .data = RawData({12})}}, .ranges = Bytes(7), .extra = {1}}};
    for (u32 i = 0; i < 768; ++i) fields.colourData.push_back(static_cast<u8>(i / 256 * 80 + i % 256 / 4));
    fields.resources = {{.id = 1006, .data = {1, 'a', 0, 2, 'b', 'c'}}, {.name = "raw", .data = {1, 2, 3}}};
    fields.globalMasks = ByteBuilder().U16(0xFFFE).Text("abcdefgh").U16(0x1234).U8(0x80).Repeat(1 + 14, 0xAA);
    fields.compression = 1;
    fields.samples = Bytes{0, 2, 0, 4, 0xFE, 1, 2, 1, 2, 3};
    return fields;
}

PsdFields LargePsd() {
    const std::string name = "a name too long to be kept in place";
    ByteBuilder text;
    text.U32(name.size());
    for (const char c : name) text.U16(c);
    PsdFields layers = {.version = 2};
    layers.layers = {{.bottom = 2, .right = 3, .extra = TaggedBlock("luni", text)}, {.right = 0, .name = name}};
    for (const u32 compression : {2u, 3u})
        layers.layers[0].channels.push_back({.id = 1, .data = ZipData(Bytes(12, 1), compression)});
    layers.layers[0].channels.push_back({.data = PackedData({{0xFB, 3}, {0x80, 0xFB, 4}}, true)});
    layers.layers[0].channels.push_back({.id = -2, .data = RawData({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})});
    PsdFields fields = {.version = 2, .rows = 2, .columns = 3, .depth = 16, .compression = 1};
    fields.resources = {{.signature = "ZZZZ", .data = Bytes(2)}};
    fields.globalMasks = Bytes(17);
    fields.tagged = TaggedBlock("Lr16", LayerInfo(layers), 0, true);
    fields.samples = ByteBuilder().U32(2, 2).U8(0xFB, 1, 0xFB, 2);
    return fields;
}

// Rows of samples that a function finds by row and column.
template <typename SampleAt>
static std::string PlaneText(u32 rows, u32 columns, SampleAt sampleAt) {
    if (u64{rows} * columns > 100) return std::to_string(u64{rows} * columns) + " samples";
    std::string text;
    for (u32 i = 0; i < rows * columns; ++i)
        text += (i == 0 ? "" : i % columns == 0 ? "/" : ",") + std::to_string(u32{sampleAt(i / columns, i % columns)});
    return text;
}

std::string Outcome(const PsdImage& image) {
    if (image.GetFinding().rule != Rule::None) return "refused: " + RuleText(image.GetFinding());
    std::string text = PassedText(image.GetPassedOver()) + " |";
    for (const auto& resource : image.m_Resources) text += " r" + std::to_string(resource->m_nId);
    for (const auto& layer : image.m_Layers) {
        text += std::string(" ") + layer->m_pszName.get() + "(";
        for (const auto& channel : layer->m_Channels) {
            text += (text.back() == '(' ? "" : " ") + std::to_string(channel->m_nId) + ":";
            u8* const* const rows = channel->m_ppPlane;
            const PsdSize size = rows ? layer->SizeOf(*channel) : PsdSize();
            text += rows ? PlaneText(size.nRows, size.nColumns, [&](u32 y, u32 x) { return rows[y][x]; }) : "-";
        }
        text += ")";
    }
    for (const auto& mask : image.m_GlobalMasks) text += " m" + std::to_string(mask->m_nKind);
    text += " =";
    if (!image.m_pppPlanes) return text + " -";
    if (image.m_nChannels > 4) return text + " " + std::to_string(image.m_nChannels) + " planes";
    for (u32 channel = 0; channel < image.m_nChannels; ++channel)
        text += " " + PlaneText(image.m_nHeight, image.m_nWidth, [&](u32 y, u32 x) {
            return image.m_nDepth == 16 ? image.GetWords(channel)[y][x] : u16{image.m_pppPlanes[channel][y][x]};
        });
    return text;
}

std::string Outcome(const Bytes& bytes, const ReadingRules& rules) {
    MemoryStream source(bytes);
    PsdImage image;
    image.LoadPsd(&source.stream, rules);
    return Outcome(image);
}
