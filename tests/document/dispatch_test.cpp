#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "iff/archive_byte_stream.h"
#include "support/iff_builder.h"
#include "support/memory_file.h"

#include <gtest/gtest.h>

namespace {

// What the document made of some bytes, and the calls that reached the archive on the way.
struct Opened {
    explicit Opened(Bytes bytes) : file(std::move(bytes)), archive(&file, CArchive::load) {
        archive.m_strFileName = "picture";
        try {
            document.Serialize(archive);
        } catch (const CArchiveException& exception) {
            bRefused =
                exception.m_cause == CArchiveException::generic && exception.m_strFileName == "picture";
        }
    }

    MemoryFile file;
    CountingArchive archive;
    CVistrelDoc document;
    bool bRefused = false;
};

const Bytes PICTURE = Form("ILBM", {Bmhd({.width = 8, .height = 1}), Chunk("BODY", {1})});

TEST(Dispatch, AnIffFileIsReadFromTheBufferThatPhotoshopLeft) {
    Opened opened(PICTURE);
    EXPECT_EQ(opened.document.m_nDocType, DOC_IFF);
    EXPECT_TRUE(opened.document.m_Iff.GetRoot());

    // The same walk by hand, counted.
    MemoryFile file(PICTURE);
    CountingArchive archive(&file, CArchive::load);
    ArchiveByteStream stream(&archive, 1024);
    const u32 start = stream.GetPosition();
    PsdImage image;
    EXPECT_FALSE(image.LoadPsd(&stream));
    const u64 calls = archive.m_nCalls, seeks = file.m_nSeeks;
    stream.SetPosition(start);
    u8 byte = 0;
    stream.GetByte(byte);
    EXPECT_EQ(byte, 'F');
    EXPECT_EQ(archive.m_nCalls, calls);
    EXPECT_EQ(file.m_nSeeks, seeks);
    EXPECT_EQ(file.m_nReads, 1u);
    stream.Close();
}

TEST(Dispatch, WhatBothReadersRefuseIsThrownOut) {
    for (const Bytes& bytes : {Bytes{}, Bytes{'8'}, Bytes{'F'}, Bytes(5000, 'x'), Truncated(PICTURE, 1)}) {
        Opened opened(bytes);
        EXPECT_TRUE(opened.bRefused) << bytes.size();
        EXPECT_EQ(opened.document.m_nDocType, DOC_NONE);
    }
}

// The end of the data that the first reader met stays in the stream's state.
TEST(Dispatch, APhotoshopFileCutShortIsNotOfferedAgain) {
    Opened opened(ByteBuilder().Text("8BPS").U16(1));
    EXPECT_TRUE(opened.bRefused);
    EXPECT_FALSE(opened.document.m_Iff.GetRoot());
}

TEST(Dispatch, FaultsOfTheFileRefuseItOrPassThrough) {
    MemoryFile file(PICTURE);
    file.m_nThrowAt = 20;
    CountingArchive archive(&file, CArchive::load);
    CVistrelDoc document;
    EXPECT_THROW(document.Serialize(archive), CArchiveException);

    MemoryFile whole(PICTURE);
    CountingArchive unflushable(&whole, CArchive::load);
    unflushable.m_bThrowOnFlush = true;
    EXPECT_THROW(document.Serialize(unflushable), CFileException);
}

TEST(Dispatch, NothingIsStoredAndNothingIsNew) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    CVistrelDoc document;
    document.Serialize(archive);
    EXPECT_TRUE(file.m_bytes.empty());
    EXPECT_FALSE(document.OnNewDocument());
    EXPECT_FALSE(document.IsModified());
}

}  // namespace
