// One opened file and what was read from it. Every file is offered to the Photoshop reader first and, when
// that refuses it, to the IFF reader, whatever its name. The strict rules come first; what they refuse may be
// read again under the tolerant ones.
#pragma once

#include "framework/core/document.h"
#include "iff/iff_file.h"
#include "psd/psd_image.h"
#include "reading/reading_rules.h"

#include <memory>
#include <optional>

constexpr u32 DOC_IFF = 0;   // m_Iff is valid
constexpr u32 DOC_PSD = 1;   // m_Psd is valid
constexpr u32 DOC_NONE = 2;  // neither is

enum class Tolerance : u8 {
    None,   // the strict rules alone
    Never,  // likewise, but a refusal says where the tolerant ones would read the file
    Ask,    // the tolerant ones for a file that the strict ones refuse, shown where the user says so
    Always  // shown at once, and so are the pictures of an IFF file that the tolerant ones show otherwise
};

class CVistrelDoc : public CDocument {
    // Memory that documents have freed is kept for the next one, and goes when there is none any more. The
    // first member, so that this one's is freed by then.
    class Presence {
      public:
        Presence() { ++s_nOpen; }
        Presence(const Presence&) = delete;
        Presence& operator=(const Presence&) = delete;
        ~Presence();

      private:
        static inline u32 s_nOpen = 0;
    };
    Presence m_presence;

  public:
    // Never makes a document: there is nothing to put into an empty one.
    bool OnNewDocument() override;

    // Loads the file behind a loading archive, and does nothing for a storing one. Throws CArchiveException
    // when both readers have refused it.
    void Serialize(CArchive& archive) override;

    // The reason of the reader that the file is for, as its first bytes say. Empty where they say neither,
    // and nothing kept them from being read.
    std::string GetRefusalReason() const override;

    bool NeedsConsent() const override { return m_tolerance == Tolerance::Ask && m_bStrictlyRefused; }

    // The rules under which the document was read, and its pictures are made.
    const ReadingRules& GetRules() const { return *m_pRules; }
    bool IsReadTolerantly() const { return m_pRules == &TOLERANT; }

    // Whether the strict rules refuse the file.
    bool IsStrictlyRefused() const { return m_bStrictlyRefused; }

    // What the reader passed over in the file.
    const PassedOver& GetPassedOver() const;

    // The IFF file as the rules read it: under the tolerant ones there can be more to a tree that was read
    // strictly, until the next call is made.
    const IffFile& GetIff(const ReadingRules& rules) const;

    // What the tolerant rules pass over in the file, of which the pictures have been looked at for it.
    // Nothing else needs the other tree, so that its memory is free for them.
    void KeepPassedOver(const PassedOver& passedOver);
    const std::optional<PassedOver>& GetKeptPassedOver() const { return m_keptPassedOver; }

    Tolerance m_tolerance = Tolerance::None;  // of the next load
    u32 m_nDocType = DOC_NONE;
    PsdImage m_Psd;  // of the two only the one that m_nDocType names means anything
    IffFile m_Iff;

  private:
    bool Load(CArchive& archive, const ReadingRules& rules);
    bool LoadUnderEitherRules(CArchive& archive);
    bool LoadOtherReading(CArchive& archive, i64 nStart);
    std::string ReasonOfReaders() const;
    void LoadTolerantIff(CArchive& archive);

    const ReadingRules* m_pRules = &STRICT;
    bool m_bStrictlyRefused = false;
    std::string m_strStrictReason;            // where the tolerant rules were tried, but are not to be used
    bool m_bTolerantlyAccepted = false;       // what they said there
    std::unique_ptr<IffFile> m_pTolerantIff;  // where it holds more than m_Iff, which was read strictly
    std::optional<PassedOver> m_keptPassedOver;
};
