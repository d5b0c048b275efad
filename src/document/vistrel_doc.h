// One opened file and what was read from it. Every file is offered to the Photoshop reader first and, when
// that refuses it, to the IFF reader, whatever its name.
#pragma once

#include "framework/core/document.h"
#include "iff/iff_file.h"
#include "psd/psd_image.h"

constexpr u32 DOC_IFF = 0;   // m_Iff is valid
constexpr u32 DOC_PSD = 1;   // m_Psd is valid
constexpr u32 DOC_NONE = 2;  // neither is

class CVistrelDoc : public CDocument {
  public:
    // Never makes a document: there is nothing to put into an empty one.
    bool OnNewDocument() override;

    // Loads the file behind a loading archive, and does nothing for a storing one. Throws CArchiveException
    // when both readers have refused it.
    void Serialize(CArchive& archive) override;

    // The reason of the reader that the file is for, as its first bytes say. Empty where they say neither,
    // and nothing kept them from being read.
    std::string GetRefusalReason() const override;

    u32 m_nDocType = DOC_NONE;
    PsdImage m_Psd;  // of the two only the one that m_nDocType names means anything
    IffFile m_Iff;
};
