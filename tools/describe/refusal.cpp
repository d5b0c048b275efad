#include "tools/describe/refusal.h"

#include "framework/core/archive.h"
#include "framework/core/file.h"
#include "iff/archive_byte_stream.h"

#include <new>

namespace {

constexpr u32 BUFFER_SIZE = 1024;

std::string Sentence(const Refusal& refusal) {
    const std::string place =
        "stopped at byte " + std::to_string(refusal.nPosition) + ", " + refusal.strReading;
    return refusal.strRule.empty() ? place : place + ": " + refusal.strRule;
}

}  // namespace

std::string DescribeBadState(const ByteStream& stream) {
    if (stream.m_nStatus & BS_UNSUPPORTED) return "the file is too large";
    if (stream.m_nStatus & BS_ERROR) return "the file cannot be read";
    return "the file ends";
}

std::string DescribeRefusal(CFile& file) try {
    CArchive archive(&file, CArchive::load);
    file.Seek(0, CFile::begin);
    ArchiveByteStream psd(&archive, BUFFER_SIZE);
    const std::string first = "Photoshop reader: " + Sentence(WhyNotPsd(psd)) + "; IFF reader: ";
    // What the first reader has done to the stream stays, and keeps the second one from reading.
    const bool usable = psd.IsGood();
    psd.Close();
    if (!usable) return first + "not asked, since the first had come to no good end";
    file.Seek(0, CFile::begin);
    ArchiveByteStream iff(&archive, BUFFER_SIZE);
    const std::string second = Sentence(WhyNotIff(iff));
    iff.Close();
    return first + second;
} catch (const std::bad_alloc&) {
    return "There is not enough memory to tell why";
}
