#include "tools/describe/describe_psd.h"

#include "psd/psd_image.h"
#include "tools/describe/checksum.h"
#include "tools/describe/json_writer.h"

#include <cstdio>
#include <string>

namespace {

// In file order.
template <typename ByteArray>
std::string Hex(const ByteArray& bytes) {
    std::string text;
    for (const u8 byte : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof(digits), "%02x", byte);
        text += digits;
    }
    return text;
}

template <typename List, typename Write>
void WriteList(JsonWriter& json, const List& list, Write write) {
    json.BeginArray();
    for (const auto& element : list) write(json, *element);
    json.EndArray();
}

void WriteRect(JsonWriter& json, i32 nTop, i32 nLeft, i32 nBottom, i32 nRight) {
    json.BeginArray();
    json.Numbers(nTop, nLeft, nBottom, nRight);
    json.EndArray();
}

void WriteGlobalMask(JsonWriter& json, const PsdGlobalMask& mask) {
    json.BeginObject();
    json.Key("colour").Text(Hex(mask.m_Colour));
    json.Key("colour_space").Number(mask.m_nColourSpace);
    json.Key("kind").Number(mask.m_nKind);
    json.Key("opacity").Number(mask.m_nOpacity);
    json.EndObject();
}

void WriteChannel(JsonWriter& json, const PsdLayerChannel& channel) {
    json.BeginObject();
    json.Key("dest_range").Text(Hex(channel.m_DestRange));
    json.Key("id").Number(channel.m_nId);
    json.Key("length").Number(channel.m_nLength);
    json.Key("source_range").Text(Hex(channel.m_SourceRange));
    json.EndObject();
}

void WriteMask(JsonWriter& json, const PsdLayer& layer) {
    if (!layer.m_bHasMask) {
        json.Null();
        return;
    }
    json.BeginObject();
    json.Key("colour").Number(layer.m_nMaskDefaultColour);
    json.Key("flags").Number(layer.m_nMaskFlags);
    json.Key("rect");
    WriteRect(json, layer.m_nMaskTop, layer.m_nMaskLeft, layer.m_nMaskBottom, layer.m_nMaskRight);
    json.EndObject();
}

void WriteLayer(JsonWriter& json, const PsdLayer& layer) {
    json.BeginObject();
    json.Key("blend_key").Text({reinterpret_cast<const char*>(&layer.m_BlendKey), 4});
    json.Key("channels");
    WriteList(json, layer.m_Channels, WriteChannel);
    json.Key("clipping").Number(layer.m_nClipping);
    json.Key("dest_range").Text(Hex(layer.m_DestRange));
    json.Key("flags").Number(layer.m_nFlags);
    json.Key("mask");
    WriteMask(json, layer);
    json.Key("name").Text(layer.m_pszName.get());
    json.Key("opacity").Number(layer.m_nOpacity);
    json.Key("rect");
    WriteRect(json, layer.m_nTop, layer.m_nLeft, layer.m_nBottom, layer.m_nRight);
    json.Key("source_range").Text(Hex(layer.m_SourceRange));
    json.EndObject();
}

void WriteAlphaNames(JsonWriter& json, const PsdAlphaNamesData& names) {
    json.BeginArray();
    for (u32 i = 0; i < names.m_Names.GetCount(); ++i) json.Text(names.m_Names.GetAt(i));
    json.EndArray();
}

void WriteResource(JsonWriter& json, const PsdResource& resource) {
    const auto* const raw = dynamic_cast<const PsdRawResourceData*>(resource.m_pData.get());
    const auto* const names = dynamic_cast<const PsdAlphaNamesData*>(resource.m_pData.get());
    json.BeginObject();
    json.Key("crc");
    if (raw)
        json.Text(Crc(raw->m_pBytes.Data(), raw->m_nSize));
    else
        json.Null();
    json.Key("id").Number(resource.m_nId);
    json.Key("name").Text(resource.m_pszName.get());
    json.Key("names");
    if (names)
        WriteAlphaNames(json, *names);
    else
        json.Null();
    json.Key("size").Number(resource.m_pData->GetSize());
    json.EndObject();
}

}  // namespace

void DescribePsd(JsonWriter& json, const PsdImage& psd) {
    json.BeginObject();
    json.Key("channels").Number(psd.m_nChannels);
    json.Key("depth").Number(psd.m_nDepth);
    json.Key("global_masks");
    WriteList(json, psd.m_GlobalMasks, WriteGlobalMask);
    json.Key("height").Number(psd.m_nHeight);
    json.Key("layers");
    WriteList(json, psd.m_Layers, WriteLayer);
    json.Key("merged_alpha").Bool(psd.m_bMergedAlpha);
    json.Key("mode").Number(psd.m_nMode);
    json.Key("palette");
    if (psd.m_pPalette)
        json.Text(Crc(psd.m_pPalette.get(), 3 * PSD_PALETTE_SIZE));
    else
        json.Null();
    json.Key("resources");
    WriteList(json, psd.m_Resources, WriteResource);
    json.Key("width").Number(psd.m_nWidth);
    json.EndObject();
}
