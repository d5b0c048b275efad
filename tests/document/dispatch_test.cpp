#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "support/iff_builder.h"
#include "support/memory_file.h"
#include "support/psd_builder.h"

#include <gtest/gtest.h>

namespace {

// What the document made of some bytes, and the calls that reached file and archive on the way.
struct Opened {
    explicit Opened(Bytes bytes) : file(std::move(bytes)), archive(&file, CArchive::load) {
        archive.m_strFileName = "picture";
        try {
            document.Serialize(archive);
        } catch (const CArchiveException& exception) {
            bRefused = exception.m_cause == CArchiveException::generic && exception.m_strFileName == "picture";
        }
    }

    MemoryFile file;
    CountingArchive archive;
    CVistrelDoc document;
    bool bRefused = false;
};

const Bytes PICTURE = Form("ILBM", {Bmhd({.width = 8, .height = 1}), Chunk("GRAB", Bytes(4))});

TEST(Dispatch, AnIffFileIsReadFromTheBufferThatPhotoshopLeft) {
    const Opened opened(PICTURE);
    EXPECT_EQ(opened.document.m_nDocType, DOC_IFF);
    EXPECT_TRUE(opened.document.m_Iff.GetRoot());
    EXPECT_EQ(opened.file.m_nReads, 1u);
}

TEST(Dispatch, TheFileIsLeftWhereThePhotoshopDocumentEnds) {
    const Bytes document = Psd({});
    const Opened opened(ByteBuilder().Append(document).Repeat(100, 0));
    EXPECT_EQ(opened.document.m_nDocType, DOC_PSD);
    EXPECT_EQ(opened.file.m_nPosition, document.size());
}

TEST(Dispatch, WhatBothReadersRefuseIsThrownOut) {
    for (const Bytes& bytes : {Bytes{}, Bytes{'8'}, Bytes(5000, 'x'), Truncated(PICTURE, 1), Truncated(Psd({}), 1)}) {
        const Opened opened(bytes);
        EXPECT_TRUE(opened.bRefused) << bytes.size();
        EXPECT_EQ(opened.document.m_nDocType, DOC_NONE);
    }
}

TEST(Dispatch, FaultsOfTheFileRefuseItOrPassThrough) {
    MemoryFile file(PICTURE);
    CountingArchive archive(&file, CArchive::load);
    file.m_nThrowAt = 20;
    EXPECT_THROW(CVistrelDoc().Serialize(archive), CArchiveException);
    archive.m_nThrowAtFlush = 0;
    EXPECT_THROW(CVistrelDoc().Serialize(archive), CFileException);
}

TEST(Dispatch, NothingIsStoredAndNothingIsNew) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    CVistrelDoc().Serialize(archive);
    EXPECT_TRUE(file.m_bytes.empty() && !CVistrelDoc().OnNewDocument());
}

}  // namespace
