#include "tools/describe/describe_pictures.h"

#include "display/catalogue.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "tools/common/pictures.h"
#include "tools/describe/checksum.h"
#include "tools/describe/json_writer.h"

#include <string>
#include <vector>

namespace {

void WriteNumberOrNull(JsonWriter& json, bool bKnown, u32 nValue) {
    if (bKnown)
        json.Number(nValue);
    else
        json.Null();
}

void WritePicture(JsonWriter& json, const DisplayImage& image, bool bSizeKnown) {
    const GdiBitmap* const bitmap = image.m_hBitmap;
    const PictureSums sums = bitmap ? SumsOf(*bitmap) : PictureSums();
    json.BeginObject();
    json.Key("bitmap").Bool(bitmap);
    json.Key("colours");
    WriteNumberOrNull(json, bSizeKnown, image.m_nColours);
    json.Key("crc");
    if (bitmap)
        json.Text(sums.crc);
    else
        json.Null();
    json.Key("height");
    WriteNumberOrNull(json, bSizeKnown, image.m_nHeight);
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
    WriteNumberOrNull(json, bSizeKnown, image.m_nWidth);
    json.EndObject();
}

void WriteNoPicture(JsonWriter& json) {
    json.BeginObject();
    for (const char* key : {"bitmap", "colours", "crc", "height", "info", "sum", "valid", "width"})
        json.Key(key).Null();
    json.EndObject();
}

class LayerList {
  public:
    LayerList(JsonWriter& json, const CVistrelDoc& document, const FileNames& names, u64 nMostPixels)
        : m_json(json), m_document(document), m_builder(document, names, nMostPixels) {}

    void Write() {
        const std::vector<std::string> layers = LayerNames(m_document);
        m_json.BeginArray();
        for (u32 layer = 0; layer < layers.size(); ++layer) {
            m_json.BeginObject();
            m_json.Key("channels");
            WriteChannels(layer);
            m_json.Key("name").Text(layers[layer].c_str());
            m_json.EndObject();
        }
        m_json.EndArray();
    }

  private:
    void WriteChannels(u32 nLayer) {
        const std::vector<std::string> channels = m_image.ChooseLayer(m_document, nLayer);
        m_json.BeginArray();
        for (u32 channel = 0; channel < channels.size(); ++channel) {
            m_json.BeginObject();
            m_json.Key("name").Text(channels[channel]);
            m_json.Key("picture");
            WriteSelection(nLayer, channel);
            m_json.EndObject();
        }
        m_json.EndArray();
    }

    void WriteSelection(u32 nLayer, u32 nChannel) {
        if (m_builder.HasPassedLimit()) {
            SayOnce();
            WriteNoPicture(m_json);
            return;
        }
        m_builder.Build(m_image, {nLayer, nChannel});
        // Of an IFF document the view may hold the size of the picture before.
        WritePicture(m_json, m_image, m_image.m_hBitmap || m_document.m_nDocType == DOC_PSD);
    }

    void SayOnce() {
        if (!m_bSaid) m_builder.SayTooManyPixels();
        m_bSaid = true;
    }

    JsonWriter& m_json;
    const CVistrelDoc& m_document;
    PictureBuilder m_builder;
    DisplayImage m_image;
    bool m_bSaid = false;
};

}  // namespace

void DescribeLayerList(JsonWriter& json, const CVistrelDoc& document, const FileNames& names,
                       u64 nMostPixels) {
    LayerList(json, document, names, nMostPixels).Write();
}
