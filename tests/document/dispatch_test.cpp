#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"

#include <gtest/gtest.h>

const Bytes PICTURE = Form("ILBM", {Bmhd({.width = 8, .height = 1}), Chunk("GRAB", Bytes(4))});

TEST(Dispatch, AnIffFileIsReadFromTheBufferThatPhotoshopLeft) {
    MemoryStream source(PICTURE);
    CVistrelDoc document;
    document.Serialize(source.archive);
    EXPECT_EQ(document.m_nDocType, DOC_IFF);
    EXPECT_TRUE(document.m_Iff.GetRoot());
    EXPECT_EQ(source.file.m_reads.nCalls, 1u);
}

TEST(Dispatch, TheFileIsLeftWhereThePhotoshopDocumentEnds) {
    const Bytes psd = Psd({});
    MemoryStream source(ByteBuilder().Append(psd).Repeat(100, 0));
    CVistrelDoc document;
    document.Serialize(source.archive);
    EXPECT_EQ(document.m_nDocType, DOC_PSD);
    EXPECT_EQ(source.file.m_nPosition, psd.size());
}

TEST(Dispatch, TheDocumentMayStandAnywhereInTheFile) {
    for (const u32 before : {7u, 1500u}) {
        // Of the second the Photoshop reader takes more than a buffer before it refuses.
        const Bytes resource = Psd({.resources = {{.data = Bytes(2000)}}, .compression = 7});
        for (const auto& [bytes, type] : {std::pair{PICTURE, DOC_IFF}, {Psd({}), DOC_PSD}, {resource, DOC_NONE}}) {
            MemoryStream source(ByteBuilder().Repeat(before, 'x').Append(bytes));
            source.file.Seek(before, CFile::begin);
            CVistrelDoc document;
            try {
                document.Serialize(source.archive);
            } catch (const CArchiveException&) {
                EXPECT_EQ(document.m_Iff.GetFinding().nPosition, before);
            }
            EXPECT_EQ(document.m_nDocType, type) << before;
        }
    }
}

TEST(Dispatch, FaultsOfTheFilePassThrough) {
    MemoryStream unflushable(PICTURE);
    unflushable.archive.m_flushes.fault.nAt = 0;
    EXPECT_THROW(CVistrelDoc().Serialize(unflushable.archive), CFileException);
}
