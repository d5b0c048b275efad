// Rows of samples out of one zlib stream. What it holds beyond them is not looked at.
#pragma once

#include "psd/row_source.h"

#include <array>
#include <memory>

// What zlib can make of one byte, at the most.
constexpr u32 ZIP_EXPANSION = 1032;

class ZipRows final : public RowSource {
  public:
    // The stream holds nPacked bytes of compressed rows of nWidth samples. Predicted ones are summed up.
    ZipRows(ByteStream& stream, u64 nPacked, u32 nDepth, u32 nWidth, bool bPredicted);
    ~ZipRows() override;
    bool Next(u8* pRow) override;

  private:
    struct Inflater;

    bool Inflate(u8* pOut);

    ByteStream& m_stream;
    u64 m_nPacked;  // bytes that have not been read yet
    u32 m_nDepth;
    u32 m_nWidth;
    bool m_bPredicted;
    std::unique_ptr<Inflater> m_pInflater;
    std::array<u8, 16 * 1024> m_input;
    LargeBlock m_bytes;  // of one row, where it cannot be summed where it stands
};
