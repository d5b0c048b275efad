// The image resources of a Photoshop document. Each is kept as the bytes it holds; only the names of the
// alpha channels are understood.
#pragma once

#include "base/large_block.h"
#include "psd/psd_object.h"

#include <memory>

class ByteStream;
class PsdReading;

constexpr u32 PSD_RESOURCE_ALPHA_NAMES = 1006;

// The payload of a resource.
class PsdResourceData : public PsdObject {
  public:
    // Fills the payload from the next nSize bytes, which the data holds. False when they make no such
    // payload. A read that fails shows in the stream's state only.
    virtual bool Read(ByteStream& stream, u32 nSize) = 0;

    // The bytes that the payload takes in a file.
    virtual u32 GetSize() const = 0;

    // Puts those bytes to the stream; false when it is no longer in a good state.
    virtual bool Write(ByteStream& stream) const = 0;
};

class PsdRawResourceData final : public PsdResourceData {
  public:
    bool Read(ByteStream& stream, u32 nSize) override;
    u32 GetSize() const override { return m_nSize; }
    bool Write(ByteStream& stream) const override;

    u32 m_nSize = 0;
    LargeBlock m_pBytes;  // none before reading
};

// Names one after the other, each after a byte with its length. They stay in one block, in which a zero
// takes the place of the next name's length byte, so that a million empty names cost no million heap blocks.
class PsdAlphaNamesData final : public PsdResourceData {
  public:
    // The names in file order, each zero-terminated and borrowed.
    class NameList {
      public:
        u32 GetCount() const { return m_nCount; }
        const char* GetAt(u32 nIndex) const;

      private:
        friend class PsdAlphaNamesData;

        const char* Characters() const { return reinterpret_cast<const char*>(m_pBlock.Data()); }
        u32* Offsets() const { return reinterpret_cast<u32*>(m_pOffsets.Data()); }

        LargeBlock m_pBlock;
        LargeBlock m_pOffsets;  // of each name's first character in the block, a word each
        u32 m_nCount = 0;
    };

    bool Read(ByteStream& stream, u32 nSize) override;
    u32 GetSize() const override;
    bool Write(ByteStream& stream) const override;

    NameList m_Names;

  private:
    bool Split(u32 nSize);
};

class PsdResource : public PsdObject {
  public:
    // Reads one block, its padding included. False leaves the resource partly read, to be released.
    bool ReadResourceBlock(PsdReading& reading);

    u32 m_nId = 0;
    std::unique_ptr<char[]> m_pszName;  // bytes in no particular encoding; null before reading
    PsdPtr<PsdResourceData> m_pData;    // null before reading
};
