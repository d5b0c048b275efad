// Documents of 50 KB to 1 MB, all of whose parts have sizes about powers of two, from disk and from memory.
#include "document/vistrel_doc.h"
#include "framework/core/regular_file.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/random.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

const Bytes NOISE = Random(1).SomeBytes(1 << 18);

Bytes Noise(u32 nSize) { return Bytes(NOISE.begin(), NOISE.begin() + nSize); }

struct Documents {
    void AddPartsOf(u32 nSize) {
        const u32 rows = nSize / STRICT.nLongestSide + 1, columns = nSize / rows;
        iff.push_back(Chunk("JUNK", Noise(nSize)));
        psd.resources.push_back({.data = Noise(nSize)});
        psd.layers.push_back({.bottom = static_cast<i32>(rows), .right = static_cast<i32>(columns)});
        psd.layers.back().channels = {{.data = RawData(Noise(rows * columns))},
            {.data = PackedData(std::vector<Bytes>(rows, ByteRun(Noise(columns), columns)))}};
        psd.rows = rows, psd.columns = columns, psd.samples = Noise(rows * columns);
    }

    Parts iff;
    PsdFields psd;
};

Bytes ContentsOf(CFile& file) {
    CArchive archive(&file, CArchive::load);
    CVistrelDoc document;
    document.Serialize(archive);
    ByteBuilder contents;
    const auto add = [&](const u8* pBytes, u32 nSize) { contents.Append(Bytes(pBytes, pBytes + nSize)); };
    const auto* const root = dynamic_cast<IffContainer*>(document.m_Iff.GetRoot());
    for (const IffChunkNode* node = root ? root->m_pFirst : nullptr; node; node = node->m_pNext) {
        const auto& chunk = dynamic_cast<IffUnknownChunk&>(*node->m_pChunk);
        add(chunk.m_pData.Data(), chunk.m_nSize);
    }
    const PsdImage& psd = document.m_Psd;
    for (const auto& resource : psd.m_Resources) {
        const auto& data = dynamic_cast<PsdRawResourceData&>(*resource->m_pData);
        add(data.m_pBytes.Data(), data.m_nSize);
    }
    for (const auto& layer : psd.m_Layers)
        for (const auto& channel : layer->m_Channels)
            for (i32 y = 0; y < layer->m_nBottom; ++y) add(channel->m_ppPlane[y], static_cast<u32>(layer->m_nRight));
    for (u32 y = 0; psd.m_pppPlanes && y < psd.m_nHeight; ++y) add(psd.m_pppPlanes[0][y], psd.m_nWidth);
    return contents;
}

TEST(WholeDocument, IsTheSameFromDiskAndFromMemory) {
    const TempFolder folder;
    for (u32 from = 6; from <= 14; ++from)
        for (const u32 end : {16u, 17u, 18u})
            for (const i32 excess : {-1, 0, 1}) {
                Documents documents;
                for (u32 power = from; power < end; ++power)
                    documents.AddPartsOf((1u << power) + static_cast<u32>(excess));
                for (const Bytes& bytes : {Form("ILBM", documents.iff), Psd(documents.psd)}) {
                    MemoryFile memory(bytes);
                    CRegularFile disk(folder.Write(bytes));
                    ASSERT_TRUE(ContentsOf(disk) == ContentsOf(memory)) << from << " to " << end << ", " << excess;
                }
            }
}

}  // namespace
