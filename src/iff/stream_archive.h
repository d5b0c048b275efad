// The archive that reads chunks from a byte stream. It never writes.
#pragma once

#include "iff/byte_stream.h"
#include "iff/iff_archive.h"

class IffStreamArchive final : public IffArchive {
  public:
    // The root archive of a file, to be attached.
    IffStreamArchive() : IffStreamArchive(0) {}
    ~IffStreamArchive() override;

    i32 GetRemaining() override { return m_nRemaining; }
    IffArchive* OpenChunk(u32 size) override;
    void CloseChunk(IffArchive* child) override;
    void Attach(ByteStream* stream) override;
    void Detach() override;
    void Transfer(IffId& value) override;
    void Transfer(u64& value) override;
    void Transfer(i64& value) override;
    void Transfer(u32& value) override;
    void Transfer(i32& value) override;
    void Transfer(u16& value) override;
    void Transfer(i16& value) override;
    void Transfer(u8& value) override;
    void Transfer(i8& value) override;
    void Transfer(IffRgb& value) override;
    void TransferBytes(void* data, u32 count) override;

  private:
    explicit IffStreamArchive(u32 nDepth) : IffArchive(true, nDepth) {}

    u32 GetSourceRemaining() override;
    bool TakeOff(u32 count);
    void FailOnBadStream();
    template <typename Integer>
    void TransferInteger(Integer& value);

    CountedPtr<ByteStream> m_pStream;
    i32 m_nRemaining = 0;  // stays negative once a transfer has overrun the chunk
    u32 m_nEnd = 0;        // stream position at which the chunk ends
};
