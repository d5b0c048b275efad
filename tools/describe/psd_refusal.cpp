#include "psd/channel_data.h"
#include "psd/field_reader.h"
#include "psd/psd_image.h"
#include "tools/describe/refusal.h"

#include <algorithm>
#include <cstdlib>

namespace {

// What reads like a compression where a newer document goes on with "8BIM".
constexpr i32 TAGGED_BLOCK = '8' << 8 | 'B';

std::string Text(u64 number) {
    return std::to_string(number);
}

// A field of the header, as it was before its sign was spread.
std::string Field(u32 value) {
    return std::to_string(static_cast<i32>(value));
}

std::string Signed(i64 number) {
    return std::to_string(number);
}

constexpr const char* NO_MEMORY = "there is not enough memory for it";

bool HasMemory(u64 size) {
    return bool(LargeBlock::Try(size));
}

class PsdWalk {
  public:
    explicit PsdWalk(ByteStream& stream) : m_stream(stream) {}

    Refusal Walk() {
        // Each answers whether the next section is reached.
        if (ReadHeader() && ReadColourModeData() && ReadResources() && ReadLayersAndMasks()) ReadComposite();
        return m_refusal;
    }

  private:
    // Always false. The rule is what a whole file breaks; one that has ended breaks no other.
    bool Stop(const std::string& reading, const std::string& rule) {
        return StopAt(m_stream.GetPosition(), reading, rule);
    }

    bool StopAt(u32 position, const std::string& reading, const std::string& rule) {
        // A length can lead beyond the end of the data before that is noticed.
        m_refusal = m_stream.IsGood() ? Refusal{position, reading, rule}
                                      : Refusal{std::min(position, DataLength(m_stream)), reading,
                                                DescribeBadState(m_stream)};
        return false;
    }

    bool ReadHeader() {
        if (!Matches(m_stream, "8BPS"))
            return StopHeader(m_stream.GetPosition() - (m_stream.IsGood() ? 1 : 0),
                              "it does not begin with 8BPS");
        const i32 version = ReadI16(m_stream);
        if (version != 1) return StopHeader(4, "version " + Signed(version) + "; version 1 is read");
        Skip(m_stream, 6);
        m_nChannels = static_cast<u32>(ReadI16(m_stream));
        m_nHeight = ReadU32(m_stream);
        m_nWidth = ReadU32(m_stream);
        m_nDepth = static_cast<u32>(ReadI16(m_stream));
        m_nMode = static_cast<u32>(ReadI16(m_stream));
        if (!m_stream.IsGood()) return Stop("header", "");
        if (m_nChannels == 0 || m_nChannels > 24)
            return StopHeader(12, Field(m_nChannels) + " channels; 1 to 24 are read");
        if (!IsPsdSide(m_nHeight)) return StopHeader(14, Text(m_nHeight) + " rows; 1 to 30000 are read");
        if (!IsPsdSide(m_nWidth)) return StopHeader(18, Text(m_nWidth) + " columns; 1 to 30000 are read");
        if (m_nDepth != 1 && m_nDepth != 8 && m_nDepth != 16)
            return StopHeader(22, Field(m_nDepth) + " bits a sample; 1, 8 or 16 are read");
        if (m_nMode > 9 || m_nMode == 5 || m_nMode == 6)
            return StopHeader(24, "colour mode " + Field(m_nMode) + "; 0 to 4 and 7 to 9 are read");
        return true;
    }

    bool StopHeader(u32 position, const std::string& rule) { return StopAt(position, "header", rule); }

    bool ReadColourModeData() {
        const u32 length = ReadU32(m_stream);
        if (m_nMode == PSD_INDEXED && length != 3 * PSD_PALETTE_SIZE)
            return Stop("colour mode data", Text(length) + " bytes of palette; 768 are read");
        if (m_nMode == PSD_INDEXED && !CanDeliver(m_stream, length)) return Stop("colour mode data", "");
        Skip(m_stream, length);
        return m_stream.IsGood() || Stop("colour mode data", "");
    }

    bool ReadResources() {
        const u32 length = ReadU32(m_stream);
        if (!m_stream.IsGood()) return Stop("image resources", "");
        if (length == 0) return true;
        const u32 end = m_stream.GetPosition() + length;
        for (u32 n = 0; n == 0 || m_stream.GetPosition() < end; ++n) {
            const u32 start = m_stream.GetPosition();
            if (!PsdResource().ReadResourceBlock(m_stream)) return StopResource(n, start);
        }
        return IsAtEnd("image resources", end);
    }

    // Reads the fields of a refused block that say why.
    bool StopResource(u32 n, u32 start) {
        const std::string reading = "resource " + Text(n);
        if (!m_stream.IsGood()) return Stop(reading, "");
        const u32 stop = m_stream.GetPosition();
        m_stream.SetPosition(start);
        if (!Matches(m_stream, "8BIM")) return StopAt(stop, reading, "no 8BIM at its start");
        const u32 id = ReadU16(m_stream);
        const u32 name = ReadU8(m_stream);
        Skip(m_stream, name + (name % 2 == 0 ? 1 : 0));
        const u32 size = ReadU32(m_stream);
        if (size >= 1 << 24) return StopAt(stop, reading, Text(size) + " bytes; less than 16777216 are read");
        if (id == PSD_RESOURCE_ALPHA_NAMES && stop - m_stream.GetPosition() > size)
            return StopAt(stop, reading, "its names do not end with its " + Text(size) + " bytes");
        return StopAt(stop, reading, NO_MEMORY);
    }

    bool IsAtEnd(const std::string& section, u32 end) {
        const u32 position = m_stream.GetPosition();
        if (position == end && m_stream.IsGood()) return true;
        return Stop(section,
                    "the section ends at byte " + Text(end) + ", its parts at byte " + Text(position));
    }

    bool ReadLayersAndMasks() {
        const u32 length = ReadU32(m_stream);
        if (!m_stream.IsGood()) return Stop("layer and mask information", "");
        return length == 0 || (ReadLayers() && ReadGlobalMasks());
    }

    bool ReadLayers() {
        const u32 length = ReadU32(m_stream);
        if (length == 0) return m_stream.IsGood() || Stop("layer information", "");
        const u32 end = m_stream.GetPosition() + length;
        const u32 count = static_cast<u32>(std::abs(ReadI16(m_stream)));
        PsdList<PsdLayer> layers;
        u64 announced = 0;
        for (u32 n = 0; n < count; ++n) {
            const u32 start = m_stream.GetPosition();
            auto layer = MakePsdObject<PsdLayer>();
            if (!layer || !layer->ReadLayerRecord(m_stream))
                return layer ? StopRecord(n, *layer, start) : Stop("layers", NO_MEMORY);
            announced += layer->LeastImageDataSize();
            if (announced > DataLength(m_stream)) return StopAnnounced(n);
            if (!layers.Append(std::move(layer))) return Stop("layers", NO_MEMORY);
        }
        for (u32 n = 0; n < count; ++n)
            if (!ReadChannels(n, *layers.GetAt(n))) return false;
        const u32 pad = end - m_stream.GetPosition();
        if (pad <= 1) Skip(m_stream, pad);
        if (pad > 1 && pad < 4)
            return Stop("layer information", "it is padded by " + Text(pad) + " bytes; 0 or 1 is read");
        return IsAtEnd("layer information", end);
    }

    // The reader leaves the stream as reading all of it would have.
    bool StopAnnounced(u32 n) {
        Stop("layer record " + Text(n), "its channels announce more image data than the file holds");
        m_stream.m_nStatus |= BS_END;
        return false;
    }

    // Reads the fields of a refused record that say why.
    bool StopRecord(u32 n, const PsdLayer& layer, u32 start) {
        const std::string reading = "layer record " + Text(n);
        if (!m_stream.IsGood()) return Stop(reading, "");
        const u32 stop = m_stream.GetPosition();
        m_stream.SetPosition(start + 16);
        const u32 channels = ReadU16(m_stream);
        const u32 read = layer.m_Channels.GetCount();
        if (read < channels) {
            Skip(m_stream, 6 * read + 2);
            return StopAt(stop, "channel " + Text(read) + " of " + reading,
                          Text(ReadU32(m_stream)) + " bytes of image data; less than 16777216 are read");
        }
        Skip(m_stream, 6 * channels);
        if (!Matches(m_stream, "8BIM")) return StopAt(stop, reading, "no 8BIM before the blend mode");
        Skip(m_stream, 8);
        const u32 extra = ReadU32(m_stream);
        const u32 mask = ReadU32(m_stream);
        if (mask != 0 && mask != 20)
            return StopAt(stop, reading, "layer mask data of " + Text(mask) + " bytes; 0 or 20 are read");
        return StopAt(stop, reading,
                      "its fields do not fit into its extra data of " + Text(extra) + " bytes");
    }

    bool ReadChannels(u32 n, const PsdLayer& layer) {
        const std::string reading = "layer " + Text(n);
        const u32 rows = PsdDistance(layer.m_nTop, layer.m_nBottom),
                  columns = PsdDistance(layer.m_nLeft, layer.m_nRight);
        const u32 maskRows = PsdDistance(layer.m_nMaskTop, layer.m_nMaskBottom);
        const u32 maskColumns = PsdDistance(layer.m_nMaskLeft, layer.m_nMaskRight);
        if (!IsPsdSide(rows) || !IsPsdSide(columns)) return StopSize(reading, rows, columns);
        for (u32 m = 0; m < layer.m_Channels.GetCount(); ++m) {
            PsdLayerChannel& channel = *layer.m_Channels.GetAt(m);
            const bool isMask = channel.m_nId == PSD_CHANNEL_USER_MASK && layer.m_bHasMask;
            if (isMask && (!IsPsdSide(maskRows) || !IsPsdSide(maskColumns)))
                return StopSize("the mask of " + reading, maskRows, maskColumns);
            if (!ReadChannel("channel " + Text(m) + " of " + reading, channel, isMask ? maskRows : rows,
                             isMask ? maskColumns : columns))
                return false;
        }
        return true;
    }

    bool StopSize(const std::string& reading, u32 rows, u32 columns) {
        return Stop(reading,
                    Text(rows) + " rows and " + Text(columns) + " columns; 1 to 30000 of each are read");
    }

    bool ReadChannel(const std::string& reading, PsdLayerChannel& channel, u32 rows, u32 columns) {
        const u32 start = m_stream.GetPosition();
        if (channel.ReadChannelData(m_stream, rows, columns)) return true;
        const u32 stop = m_stream.GetPosition();
        if (!m_stream.IsGood()) return Stop(reading, "");
        m_stream.SetPosition(start);
        const i32 compression = ReadI16(m_stream);
        const u64 raw = u64{rows} * columns + 2;
        if (compression == 0 && channel.m_nLength != raw)
            return StopAt(stop, reading,
                          Text(channel.m_nLength) + " bytes of raw data; " + Text(raw) + " are read");
        if ((compression == 0 || compression == 1) && !HasMemory(raw))
            return StopAt(stop, reading, NO_MEMORY);
        if (compression == 1) return StopAt(stop, reading, "its PackBits rows are not of the lengths given");
        return StopAt(stop, reading,
                      "compression " + Signed(compression) +
                          (compression == 2 || compression == 3 ? " (ZIP)" : "") + "; 0 or 1 is read");
    }

    bool ReadGlobalMasks() {
        const u32 length = ReadU32(m_stream);
        if (!m_stream.IsGood()) return Stop("global layer mask", "");
        if (length == 0) return true;
        const u32 end = m_stream.GetPosition() + length;
        do {
            if (!PsdGlobalMask().ReadGlobalMask(m_stream)) return Stop("global layer mask", "");
        } while (m_stream.GetPosition() < end);
        return IsAtEnd("global layer mask", end);
    }

    void ReadComposite() {
        const i32 compression = ReadI16(m_stream);
        if (compression == TAGGED_BLOCK)
            Stop("composite", "a tagged block stands before it");
        else if (compression != 0 && !(compression == 1 && m_nDepth == 8))
            Stop("composite", "compression " + Signed(compression) + " with " + Text(m_nDepth) +
                                  " bits a sample; 0, or 1 with 8 bits, is read");
        else if (compression == 1)
            ReadPackedComposite();
        else
            ReadRawComposite();
    }

    void ReadRawComposite() {
        const u64 rowSize = m_nDepth == 1 ? (m_nWidth + 7) / 8 : u64{m_nWidth} * (m_nDepth / 8);
        CanDeliver(m_stream, rowSize * m_nHeight * m_nChannels);
        Stop("composite", NO_MEMORY);
    }

    void ReadPackedComposite() {
        PackedCounts counts;
        const u64 rows = u64{m_nChannels} * m_nHeight;
        if (!counts.Read(m_stream, rows)) {
            Stop("row lengths of the composite", NO_MEMORY);
            return;
        }
        std::vector<u8> row(m_nWidth);
        for (u64 y = 0; y < rows; ++y) {
            if (DecodePackBitsRow(row.data(), m_stream, m_nWidth, counts.At(y))) continue;
            Stop("row " + Text(y % m_nHeight) + " of channel " + Text(y / m_nHeight) + " of the composite",
                 "it does not unpack to its width from " + Text(counts.At(y)) + " bytes");
            return;
        }
        Stop("composite", NO_MEMORY);
    }

    ByteStream& m_stream;
    Refusal m_refusal = {0, "nothing", ""};
    u32 m_nChannels = 0;
    u32 m_nHeight = 0;
    u32 m_nWidth = 0;
    u32 m_nDepth = 0;
    u32 m_nMode = 0;
};

}  // namespace

Refusal WhyNotPsd(ByteStream& stream) {
    return PsdWalk(stream).Walk();
}
