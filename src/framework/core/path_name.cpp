#include "framework/core/path_name.h"

#include "framework/core/ascii.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>

namespace {

constexpr std::string_view SCHEME = "file:";
constexpr std::string_view GAP = "...";
constexpr std::string_view HEX_DIGITS = "0123456789ABCDEF";

bool IsHarmless(char c) {
    return IsAsciiAlphanumeric(c) || std::string_view("/-._~").find(c) != std::string_view::npos;
}

// -1 for no hexadecimal digit.
int DigitValue(char c) {
    const char upper = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    const std::size_t value = HEX_DIGITS.find(upper);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

// A zero byte ends no path and is in none.
std::optional<std::string> DecodePercents(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char byte = text[i];
        if (byte == '%') {
            if (i + 2 >= text.size()) return std::nullopt;
            const int high = DigitValue(text[i + 1]);
            const int low = DigitValue(text[i + 2]);
            if (high < 0 || low < 0) return std::nullopt;
            byte = static_cast<char>(high * 16 + low);
            i += 2;
        }
        if (byte == '\0') return std::nullopt;
        bytes += byte;
    }
    return bytes;
}

bool IsInsideCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The name without its middle; its end, where the extension stands, stays.
std::string AbbreviateName(const std::string& name, std::size_t nMaxLength) {
    if (name.size() <= nMaxLength) return name;
    const std::size_t room = nMaxLength - std::min(nMaxLength, GAP.size());
    std::size_t head = room - room / 2;
    std::size_t tail = name.size() - room / 2;
    while (head > 0 && IsInsideCharacter(name[head])) --head;
    while (tail < name.size() && IsInsideCharacter(name[tail])) ++tail;
    return name.substr(0, head).append(GAP).append(name, tail);
}

}  // namespace

std::string ToFileUri(const std::string& strPath) {
    std::string uri = "file://";
    for (const char c : strPath) {
        if (IsHarmless(c)) {
            uri += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            uri += {'%', HEX_DIGITS[byte >> 4], HEX_DIGITS[byte & 15]};
        }
    }
    return uri;
}

std::optional<std::string> FromFileUri(const std::string& strUri) {
    std::string_view rest = strUri;
    if (!rest.starts_with(SCHEME)) return std::nullopt;
    rest.remove_prefix(SCHEME.size());
    if (rest.starts_with("//")) {
        rest.remove_prefix(2);
        const std::string_view host = rest.substr(0, rest.find('/'));
        if (!host.empty() && host != "localhost") return std::nullopt;
        rest.remove_prefix(host.size());
    }
    if (!rest.starts_with('/')) return std::nullopt;
    return DecodePercents(rest);
}

std::string GetFullPath(const std::string& strPath) {
    std::error_code failed;
    const std::filesystem::path path = std::filesystem::absolute(strPath, failed);
    if (failed) return strPath;
    if (std::ranges::find(path, "..") == path.end()) return path.lexically_normal();
    // What stands above a folder is known only once links are followed.
    const std::filesystem::path folder = std::filesystem::canonical(path.parent_path(), failed);
    return failed ? path.native() : (folder / path.filename()).native();
}

bool IsSameFile(const std::string& strPath, const std::string& strOther) {
    std::error_code failed;
    return strPath == strOther || std::filesystem::equivalent(strPath, strOther, failed);
}

std::string AbbreviatePath(const std::string& strPath, std::size_t nMaxLength) {
    if (strPath.size() <= nMaxLength) return strPath;
    const std::string name = strPath.substr(strPath.rfind('/') + 1);
    const std::size_t first = strPath.find('/', 1);  // behind the first folder
    if (first == std::string::npos || first + 1 > strPath.size() - name.size())
        return AbbreviateName(strPath, nMaxLength);
    const std::string lead = strPath.substr(0, first + 1).append(GAP);

    // As many of the last folders as there is room for.
    std::size_t tail = first;
    do tail = strPath.find('/', tail + 1);
    while (tail != std::string::npos && lead.size() + strPath.size() - tail > nMaxLength);
    if (tail != std::string::npos) return lead + strPath.substr(tail);
    return std::string(GAP) + "/" + AbbreviateName(name, nMaxLength - std::min(nMaxLength, GAP.size() + 1));
}
