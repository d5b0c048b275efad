#include "framework/core/ini_text.h"

#include "framework/core/ascii.h"

#include <algorithm>
#include <optional>

namespace {

constexpr std::string_view HEX_DIGITS = "0123456789ABCDEF";
constexpr std::string_view BLANKS = " \t\r";

std::string Hex(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return {HEX_DIGITS[byte >> 4], HEX_DIGITS[byte & 15]};
}

// The byte whose two digits the text begins with.
std::optional<char> FromHex(std::string_view text) {
    if (text.size() < 2) return std::nullopt;
    const auto digit = [](char c) {
        return HEX_DIGITS.find(c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c);
    };
    const std::size_t high = digit(text[0]);
    const std::size_t low = digit(text[1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
    return static_cast<char>(high << 4 | low);
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(BLANKS) + 1 - first);
}

// In names whatever could be taken for more than a name is a percent sign and its two digits.
std::string FormatName(std::string_view name) {
    std::string text;
    for (const char c : name) {
        if (IsAsciiAlphanumeric(c) || c == '_' || c == '-' || c == '.')
            text += c;
        else
            text += '%' + Hex(c);
    }
    return text;
}

std::string ParseName(std::string_view text) {
    std::string name;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::optional<char> byte = text[i] == '%' ? FromHex(text.substr(i + 1)) : std::nullopt;
        name += byte.value_or(text[i]);
        if (byte) i += 2;
    }
    return name;
}

std::string FormatValue(std::string_view value) {
    std::string text;
    bool plain = Trimmed(value).size() == value.size();
    for (const char c : value) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') text += '\\';
        if (byte < 0x20 || byte > 0x7E)
            text += "\\x" + Hex(c);
        else
            text += c;
        plain = plain && c != ';' && c != ',' && c != '=';
    }
    return plain ? text : '"' + text + '"';
}

std::string ParseValue(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') continue;
        if (text[i] == '\\' && i + 1 < text.size()) {
            ++i;
            if (text[i] == 'x') {
                if (const std::optional<char> byte = FromHex(text.substr(i + 1))) {
                    value += *byte;
                    i += 2;
                    continue;
                }
            }
        }
        value += text[i];
    }
    return value;
}

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";  // of some editors

}  // namespace

IniSections ParseIni(std::string_view text) {
    IniSections sections;
    ProfileSection* section = nullptr;
    if (text.starts_with(BYTE_ORDER_MARK)) text.remove_prefix(BYTE_ORDER_MARK.size());
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = Trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const std::size_t equals = line.find('=');
        if (line.starts_with('[') && line.ends_with(']'))
            section = &sections[ParseName(line.substr(1, line.size() - 2))];
        else if (section && !line.starts_with(';') && equals != std::string_view::npos)
            (*section)[ParseName(Trimmed(line.substr(0, equals)))] =
                ParseValue(Trimmed(line.substr(equals + 1)));
    }
    return sections;
}

std::string FormatIni(const IniSections& sections) {
    std::string text;
    for (const auto& [title, section] : sections) {
        if (section.empty()) continue;
        text += (text.empty() ? "[" : "\n[") + FormatName(title) + "]\n";
        for (const auto& [name, value] : section) text += FormatName(name) + '=' + FormatValue(value) + '\n';
    }
    return text;
}
