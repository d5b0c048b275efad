#include "tools/export/picture_names.h"

#include "tools/common/messages.h"

#include <algorithm>
#include <array>

namespace {

std::string Harmless(const std::string& strText) {
    std::string text = PlainText(strText, '_');
    std::ranges::replace(text, '/', '_');
    return text;
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
    const auto [given, isNew] = m_given.try_emplace(plain, number);
    if (isNew) return plain;
    number = given->second;
    std::string name;
    do {
        ++number;
        const std::string end = "." + std::to_string(number) + m_strExtension;
        name = Joined(parts, MOST_BYTES - end.size()) + end;
    } while (!m_given.try_emplace(name, 1).second);
    m_given[plain] = number;
    return name;
}
