#include "tools/describe/describe_iff.h"

#include "chunks/alph_chunk.h"
#include "chunks/extension_chunks.h"
#include "chunks/ilbm_chunks.h"
#include "iff/container.h"
#include "tools/describe/checksum.h"
#include "tools/describe/json_writer.h"

#include <string_view>

namespace {

std::string_view Characters(const IffId& id) {
    return {reinterpret_cast<const char*>(&id.m_nValue), 4};
}

void WriteData(JsonWriter& json, const LargeBlock& data, u32 nSize) {
    json.Number(nSize);
    json.Text(Crc(data.Data(), nSize));
}

void WriteFields(JsonWriter& json, const IffChunk& chunk) {
    if (const auto* const unknown = dynamic_cast<const IffUnknownChunk*>(&chunk)) {
        WriteData(json, unknown->m_pData, unknown->m_nSize);
    } else if (const auto* const bmhd = dynamic_cast<const BmhdChunk*>(&chunk)) {
        json.Numbers(bmhd->m_nWidth, bmhd->m_nHeight, bmhd->m_nX, bmhd->m_nY, bmhd->m_nPlanes,
                     bmhd->m_nMasking, bmhd->m_nCompression, bmhd->m_nPad, bmhd->m_nTransparentColour,
                     bmhd->m_nXAspect, bmhd->m_nYAspect, bmhd->m_nPageWidth, bmhd->m_nPageHeight);
    } else if (const auto* const cmap = dynamic_cast<const CmapChunk*>(&chunk)) {
        json.Number(cmap->m_nEntries);
        json.Text(Crc(cmap->Entries(), u64{cmap->m_nEntries} * 3));
    } else if (const auto* const grab = dynamic_cast<const GrabChunk*>(&chunk)) {
        json.Numbers(grab->m_nX, grab->m_nY);
    } else if (const auto* const alph = dynamic_cast<const AlphChunk*>(&chunk)) {
        json.Numbers(alph->m_nAlphaWidth, alph->m_nAlphaHeight, alph->m_nAlphaPlanes,
                     alph->m_nAlphaCompression);
        WriteData(json, alph->m_pData, alph->m_nDataSize);
    } else if (const auto* const body = dynamic_cast<const BodyChunk*>(&chunk)) {
        WriteData(json, body->m_pData, body->m_nDataSize);
    } else if (const auto* const tran = dynamic_cast<const TranChunk*>(&chunk)) {
        json.Numbers(tran->m_nByte, tran->m_nFirst, tran->m_nSecond, tran->m_Colour.red, tran->m_Colour.green,
                     tran->m_Colour.blue);
    } else if (const auto* const cont = dynamic_cast<const ContChunk*>(&chunk)) {
        json.Numbers(cont->m_nLevels, cont->m_nByte);
    } else if (const auto* const s3tc = dynamic_cast<const S3tcChunk*>(&chunk)) {
        json.Number(s3tc->m_nValue);
        json.Text(Characters(s3tc->m_Code));
        json.Numbers(s3tc->m_nFirst, s3tc->m_nSecond, s3tc->m_nThird, s3tc->m_nWidth, s3tc->m_nHeight);
        WriteData(json, s3tc->m_pData, s3tc->m_nDataSize);
    }
}

}  // namespace

void DescribeChunk(JsonWriter& json, const IffChunk& chunk) {
    const auto* const container = dynamic_cast<const IffContainer*>(&chunk);
    json.BeginObject();
    json.Key("children").BeginArray();
    for (const IffChunkNode* node = container ? container->m_pFirst : nullptr; node; node = node->m_pNext)
        DescribeChunk(json, *node->m_pChunk);
    json.EndArray();
    json.Key("fields").BeginArray();
    WriteFields(json, chunk);
    json.EndArray();
    json.Key("id").Text(Characters(chunk.m_Id));
    json.Key("type");
    if (container)
        json.Text(Characters(container->m_Type));
    else
        json.Null();
    json.Key("unknown").Bool(chunk.IsUnknown());
    json.EndObject();
}
