#include "psd/zip_rows.h"

#include "psd/field_reader.h"
#include "psd/sample_rows.h"

#include <algorithm>
#include <limits>
#include <new>
#include <zlib.h>

struct ZipRows::Inflater {
    Inflater() {
        const int result = inflateInit(&zlib);
        if (result != Z_OK) throw std::bad_alloc();
    }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;
    ~Inflater() { inflateEnd(&zlib); }

    z_stream zlib = {};
};

ZipRows::ZipRows(ByteStream& stream, u64 nPacked, u32 nDepth, u32 nWidth, bool bPredicted)
    : m_stream(stream),
      m_nPacked(nPacked),
      m_nDepth(nDepth),
      m_nWidth(nWidth),
      m_bPredicted(bPredicted),
      m_pInflater(std::make_unique<Inflater>()) {
    if (bPredicted && nDepth == 32) m_bytes = LargeBlock::Allocate(SampleRowSize(nDepth, nWidth));
}

ZipRows::~ZipRows() = default;

bool ZipRows::Next(u8* pRow) {
    u8* const inflated = m_bytes ? m_bytes.Data() : pRow;
    if (!Inflate(inflated)) return false;
    if (!m_bPredicted) return true;
    if (m_nDepth == 32)
        SumFloats(pRow, inflated, m_nWidth);
    else if (m_nDepth == 16)
        SumWords(pRow, m_nWidth);
    else
        SumBytes(pRow, SampleRowSize(m_nDepth, m_nWidth));
    return true;
}

bool ZipRows::Inflate(u8* pOut) {
    z_stream& zlib = m_pInflater->zlib;
    const u64 size = SampleRowSize(m_nDepth, m_nWidth);
    static_assert(std::numeric_limits<uInt>::max() >= std::numeric_limits<u32>::max());
    zlib.next_out = pOut;
    zlib.avail_out = static_cast<uInt>(size);
    while (zlib.avail_out > 0) {
        if (zlib.avail_in == 0 && m_nPacked > 0) {
            const u32 count = static_cast<u32>(std::min<u64>(m_nPacked, m_input.size()));
            ReadInto(m_stream, m_input.data(), count);
            if (!m_stream.IsGood()) return false;
            m_nPacked -= count;
            zlib.next_in = m_input.data();
            zlib.avail_in = count;
        }
        const int result = inflate(&zlib, Z_NO_FLUSH);
        if (result == Z_MEM_ERROR) throw std::bad_alloc();
        if (result != Z_OK) return result == Z_STREAM_END && zlib.avail_out == 0;
    }
    return true;
}
