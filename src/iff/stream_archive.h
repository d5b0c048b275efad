// The archive that reads chunks from a byte stream. It never writes.
#pragma once

#include "iff/byte_stream.h"
#include "iff/iff_archive.h"

class IffStreamArchive final : public IffArchive {
  public:
    // The root archive of a file, to be attached. What is borrowed outlives it.
    IffStreamArchive(Finding& noted, PassedOver& passedOver, const ReadingRules& rules = STRICT)
        : IffArchive(true, 0, noted, passedOver, rules) {}
    ~IffStreamArchive() override;

    i32 GetRemaining() override { return m_nRemaining; }
    IffArchive* OpenChunk(u32 nSize) override;
    void CloseChunk(IffArchive* pChild) override;
    void Attach(ByteStream* pStream) override;
    void Detach() override;
    void Transfer(IffId& value) override;
    void Transfer(u64& nValue) override;
    void Transfer(i64& nValue) override;
    void Transfer(u32& nValue) override;
    void Transfer(i32& nValue) override;
    void Transfer(u16& nValue) override;
    void Transfer(i16& nValue) override;
    void Transfer(u8& nValue) override;
    void Transfer(i8& nValue) override;
    void Transfer(IffRgb& value) override;
    void TransferBytes(void* pData, u32 nCount) override;
    void RefuseChunk(Rule rule, i64 nFound, i64 nRead) override;
    void RefuseField(u32 nBytes, Rule rule, i64 nFound, i64 nRead) override;
    bool Require(i64 nCount) override;
    bool MayLackPadByte() override;

  private:
    IffStreamArchive(IffStreamArchive& parent, u32 nStart, u32 nSize);

    void Note(Rule rule, u32 nPosition, i64 nFound, i64 nRead);
    void RefuseEnd();
    void RefuseOverrun();
    bool Take(u32 nCount);
    void TakeOff(u32 nCount);
    void FailOnBadStream();
    template <typename Integer>
    void TransferInteger(Integer& value);

    CountedPtr<ByteStream> m_pStream;
    i32 m_nRemaining = 0;  // stays negative once a transfer has overrun the chunk
    u32 m_nEnd = 0;        // stream position at which the chunk ends
    u32 m_nSize = 0;       // of the chunk, as it says
    u32 m_nSizeAt = 0;     // stream position of that size
};
