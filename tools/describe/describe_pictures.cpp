#include "tools/describe/describe_pictures.h"

#include "display/catalogue.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "tools/describe/checksum.h"
#include "tools/describe/json_writer.h"

#include <cstdio>
#include <new>

namespace {

void WriteNumberOrNull(JsonWriter& json, bool known, u32 value) {
    if (known)
        json.Number(value);
    else
        json.Null();
}

void WritePicture(JsonWriter& json, const DisplayImage& image, bool sizeIsKnown) {
    const GdiBitmap* const bitmap = image.m_hBitmap;
    const PictureSums sums = bitmap ? SumsOf(*bitmap) : PictureSums();
    json.BeginObject();
    json.Key("bitmap").Bool(bitmap);
    json.Key("colours");
    WriteNumberOrNull(json, sizeIsKnown, image.m_nColours);
    json.Key("crc");
    if (bitmap)
        json.Text(sums.crc);
    else
        json.Null();
    json.Key("height");
    WriteNumberOrNull(json, sizeIsKnown, image.m_nHeight);
    json.Key("info").Text(image.InfoText());
    json.Key("sum");
    if (bitmap) {
        json.BeginArray();
        for (const u64 sum : sums.sums) json.Number(static_cast<i64>(sum));
        json.EndArray();
    } else {
        json.Null();
    }
    json.Key("valid").Bool(image.m_bValid != 0);
    json.Key("width");
    WriteNumberOrNull(json, sizeIsKnown, image.m_nWidth);
    json.EndObject();
}

// False when memory refuses the picture, which is not valid then.
bool Build(DisplayImage& image, const CVistrelDoc& document, u32 layer, u32 channel) {
    try {
        image.BuildBitmap(document, layer, channel);
        if (!image.m_bMemoryRefused) return true;
    } catch (const std::bad_alloc&) {
    } catch (const CMemoryException&) {
    }
    image.m_bValid = 0;
    return false;
}

}  // namespace

void DescribeLayerList(JsonWriter& json, const CVistrelDoc& document, const std::string& strFileName) {
    DisplayImage image;
    const std::vector<std::string> layers = LayerNames(document);
    json.BeginArray();
    for (u32 layer = 0; layer < layers.size(); ++layer) {
        const std::vector<std::string> channels = image.ChooseLayer(document, layer);
        json.BeginObject();
        json.Key("channels").BeginArray();
        for (u32 channel = 0; channel < channels.size(); ++channel) {
            if (!Build(image, document, layer, channel))
                std::fprintf(stderr, "%s: layer %u, channel %u: %s\n", strFileName.c_str(), layer, channel,
                             CMemoryException().what());
            json.BeginObject();
            json.Key("name").Text(channels[channel]);
            json.Key("picture");
            // Of an IFF document the view may hold the size of the picture before.
            WritePicture(json, image, image.m_hBitmap || document.m_nDocType == DOC_PSD);
            json.EndObject();
        }
        json.EndArray();
        json.Key("name").Text(layers[layer].c_str());
        json.EndObject();
    }
    json.EndArray();
}
