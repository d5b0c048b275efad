// Documents of 60 KB to 1 MB, all of whose parts have sizes about powers of two, from disk and from memory.
#include "document/vistrel_doc.h"
#include "framework/core/regular_file.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/random.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

const Bytes NOISE = Random(1).SomeBytes(1 << 19);

Bytes Noise(u32 size) { return Bytes(NOISE.begin(), NOISE.begin() + size); }

// Sizes from 2^first to 2^last, each greater by excess.
std::vector<u32> Sizes(u32 first, u32 last, u32 excess) {
    std::vector<u32> sizes;
    for (u32 power = first; power <= last; ++power) sizes.push_back((1u << power) + excess);
    return sizes;
}

Bytes IffOf(const std::vector<u32>& sizes) {
    Parts parts;
    for (const u32 size : sizes) parts.push_back(Chunk("JUNK", Noise(size)));
    return Form("ILBM", parts);
}

Bytes PackedRow(u32 width) {
    ByteBuilder row;
    for (u32 at = 0, count = 0; at < width; at += count) {
        count = std::min(width - at, 128u);
        row.U8(count - 1).Append(Bytes(&NOISE[at], &NOISE[at] + count));
    }
    return row;
}

Bytes PsdOf(const std::vector<u32>& sizes) {
    PsdFields fields;
    for (const u32 size : sizes) {
        const u32 rows = size / PSD_LONGEST_SIDE + 1, columns = size / rows;
        fields.resources.push_back({.data = Noise(size)});
        fields.layers.push_back({.bottom = static_cast<i32>(rows), .right = static_cast<i32>(columns)});
        fields.layers.back().channels = {{.data = RawData(Noise(rows * columns))},
            {.data = PackedData(std::vector<Bytes>(rows, PackedRow(columns)))}};
        fields.rows = rows, fields.columns = columns, fields.samples = Noise(rows * columns);
    }
    return Psd(fields);
}

Bytes ContentsOf(CFile& file) {
    CArchive archive(&file, CArchive::load);
    CVistrelDoc document;
    document.Serialize(archive);
    ByteBuilder contents;
    const auto add = [&](const u8* bytes, u32 size) { contents.Append(Bytes(bytes, bytes + size)); };
    if (const auto* const root = dynamic_cast<IffContainer*>(document.m_Iff.GetRoot()))
        for (const IffChunkNode* node = root->m_pFirst; node; node = node->m_pNext) {
            const auto& chunk = dynamic_cast<IffUnknownChunk&>(*node->m_pChunk);
            add(chunk.m_pData.Data(), chunk.m_nSize);
        }
    const PsdImage& psd = document.m_Psd;
    for (const auto& resource : psd.m_Resources) {
        const auto& data = dynamic_cast<PsdRawResourceData&>(*resource->m_pData);
        add(data.m_pBytes.get(), data.m_nSize);
    }
    for (const auto& layer : psd.m_Layers)
        for (const auto& channel : layer->m_Channels)
            for (i32 y = 0; y < layer->m_nBottom; ++y) add(channel->m_ppPlane[y], static_cast<u32>(layer->m_nRight));
    for (u32 y = 0; psd.m_pppPlanes && y < psd.m_nHeight; ++y) add(psd.m_pppPlanes[0][y], psd.m_nWidth);
    return contents;
}

TEST(WholeDocument, IsTheSameFromDiskAndFromMemory) {
    const TempFolder folder;
    for (const u32 last : {15u, 16u, 17u})
        for (u32 first = 6; first <= last; ++first)
            for (const i32 excess : {-1, 0, 1}) {
                const auto sizes = Sizes(first, last, static_cast<u32>(excess));
                for (const Bytes& bytes : {IffOf(sizes), PsdOf(sizes)}) {
                    SCOPED_TRACE(testing::Message() << bytes.size() << " bytes, " << sizes.front() << " first");
                    MemoryFile memory(bytes);
                    CRegularFile disk(folder.Write(bytes));
                    ASSERT_TRUE(ContentsOf(disk) == ContentsOf(memory));
                }
            }
}

}  // namespace
