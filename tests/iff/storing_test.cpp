// Chunks move their contents in either direction. The viewer never writes; what it would write is what it read.

#include "iff/container.h"
#include "support/iff_builder.h"
#include "support/loading.h"

#include <gtest/gtest.h>

namespace {

// Keeps what is transferred to it. A child's bytes follow its header, which the parent is given once they are there.
class StoringArchive final : public IffArchive {
  public:
    StoringArchive(Finding& noted, PassedOver& passedOver) : IffArchive(false, 0, noted, passedOver, STRICT) {}

    i32 GetRemaining() override { return static_cast<i32>(m_bytes.size()); }
    IffArchive* OpenChunk(u32) override { return new StoringArchive(m_noted, m_passedOver); }
    void CloseChunk(IffArchive* pChild) override {
        const auto child = CountedPtr<IffArchive>::Adopt(pChild);
        m_bytes.Append(static_cast<StoringArchive&>(*child).m_bytes);
    }
    void Attach(ByteStream*) override {}
    void Detach() override {}

    void Transfer(IffId& value) override { TransferBytes(&value.m_nValue, sizeof(value.m_nValue)); }
    void Transfer(u64& nValue) override { m_bytes.U32(nValue >> 32, nValue); }
    void Transfer(i64& nValue) override { m_bytes.U32(nValue >> 32, nValue); }
    void Transfer(u32& nValue) override { m_bytes.U32(nValue); }
    void Transfer(i32& nValue) override { m_bytes.U32(nValue); }
    void Transfer(u16& nValue) override { m_bytes.U16(nValue); }
    void Transfer(i16& nValue) override { m_bytes.U16(nValue); }
    void Transfer(u8& nValue) override { m_bytes.U8(nValue); }
    void Transfer(i8& nValue) override { m_bytes.U8(nValue); }
    void Transfer(IffRgb& value) override { m_bytes.U8(value.red, value.green, value.blue); }
    void TransferBytes(void* pData, u32 nCount) override {
        m_bytes.Append(Bytes(static_cast<u8*>(pData), static_cast<u8*>(pData) + nCount));
    }

    void RefuseChunk(Rule, i64, i64) override { SetFailed(); }
    void RefuseField(u32, Rule, i64, i64) override { SetFailed(); }
    bool Require(i64) override { return true; }
    bool MayLackPadByte() override { return false; }

    ByteBuilder m_bytes;
};

struct Stored {
    explicit Stored(IffFile& file) { file.Transfer(archive); }

    Finding finding;
    PassedOver passedOver;
    StoringArchive archive{finding, passedOver};
};

}  // namespace

TEST(Storing, WhatWasLoaded) {
    const Bytes odd = Body({1, 2, 3});
    const Bytes form = Form("ILBM", {Bmhd({.width = 8, .height = 1}), GreyCmap(2), odd});
    for (const Bytes& bytes :
        {form, List("ILBM", {Prop("ILBM", {Bmhd({})}), form, Cat("ILBM", {form})}), Form("ILBM", {})}) {
        LoadedIff loaded(bytes);
        ASSERT_TRUE(loaded.bLoaded);
        const Stored stored(loaded.iff);
        EXPECT_FALSE(stored.archive.HasFailed());
        EXPECT_EQ(stored.archive.m_bytes, bytes);
    }
}

TEST(Storing, NothingCannotBe) {
    IffFile empty;
    EXPECT_TRUE(Stored(empty).archive.HasFailed());
}
