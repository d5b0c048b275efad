#include "tools/describe/json_writer.h"

#include <cassert>
#include <cinttypes>

void JsonWriter::Separate() {
    if (!m_bFirst) std::fputc(',', m_out);
    m_bFirst = false;
    m_bKeyWaits = false;
}

void JsonWriter::Begin(char bracket, char end) {
    m_levels.push_back({end, {}});  // before anything is written, since it may throw
    Separate();
    std::fputc(bracket, m_out);
    m_bFirst = true;
}

void JsonWriter::End() {
    std::fputc(m_levels.back().end, m_out);
    m_levels.pop_back();
    m_bFirst = m_levels.empty();  // the next line begins anew
}

void JsonWriter::CloseTo(size_t nDepth) {
    if (m_bKeyWaits) Null();
    while (Depth() > nDepth) End();
}

JsonWriter& JsonWriter::Key(std::string_view name) {
    assert(m_levels.back().key < name);
    m_levels.back().key = name;
    Text(name);
    std::fputc(':', m_out);
    m_bFirst = true;
    m_bKeyWaits = true;
    return *this;
}

void JsonWriter::Number(i64 nValue) {
    Separate();
    std::fprintf(m_out, "%" PRId64, nValue);
}

void JsonWriter::Bool(bool bValue) {
    Separate();
    std::fputs(bValue ? "true" : "false", m_out);
}

void JsonWriter::Null() {
    Separate();
    std::fputs("null", m_out);
}

void JsonWriter::Text(std::string_view bytes) {
    Separate();
    std::fputc('"', m_out);
    for (const char c : bytes) {
        const bool plain = c >= 0x20 && c <= 0x7E && c != '"' && c != '\\';
        if (plain)
            std::fputc(c, m_out);
        else
            std::fprintf(m_out, "\\u%04x", static_cast<u8>(c));
    }
    std::fputc('"', m_out);
}
