#include "tools/export/picture_names.h"

#include "framework/core/ascii.h"
#include "tools/common/messages.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

// What one file system or the other does not take in a name.
constexpr std::string_view NOT_IN_NAMES = "/\\:*?\"<>|";

std::string Harmless(const std::string& strText) {
    std::string text = PlainText(strText, '_');
    const auto isHarmful = [](char c) { return NOT_IN_NAMES.find(c) != std::string_view::npos; };
    std::ranges::replace_if(text, isHarmful, '_');
    return text;
}

// The same for names that one file system or the other takes for one.
std::string CaseOf(std::string strName) {
    std::ranges::transform(strName, strName.begin(), AsciiLower);
    return strName;
}

bool IsInsideCharacter(char byte) {
    return (static_cast<u8>(byte) & 0xC0) == 0x80;
}

void DropLastCharacter(std::string& strText) {
    while (IsInsideCharacter(strText.back())) strText.pop_back();
    strText.pop_back();
}

// The parts with dots between them, in at most nMost bytes.
std::string Joined(std::array<std::string, 3> parts, size_t nMost) {
    const size_t dots = parts.size() - 1;
    while (parts[0].size() + parts[1].size() + parts[2].size() + dots > nMost)
        DropLastCharacter(
            *std::ranges::max_element(parts, {}, [](const std::string& strPart) { return strPart.size(); }));
    return parts[0] + "." + parts[1] + "." + parts[2];
}

}  // namespace

std::string PictureNames::Next(const std::string& strFile, const std::string& strLayer,
                               const std::string& strChannel) {
    const std::array<std::string, 3> parts = {Harmless(strFile), Harmless(strLayer), Harmless(strChannel)};
    std::string plain = Joined(parts, MOST_BYTES - m_strExtension.size()) + m_strExtension;
    u32 number = 1;
    const auto [given, isNew] = m_given.try_emplace(CaseOf(plain), number);
    if (isNew) return plain;
    number = given->second;
    std::string name;
    do {
        ++number;
        const std::string end = "." + std::to_string(number) + m_strExtension;
        name = Joined(parts, MOST_BYTES - end.size()) + end;
    } while (!m_given.try_emplace(CaseOf(name), 1).second);
    m_given[CaseOf(plain)] = number;
    return name;
}
