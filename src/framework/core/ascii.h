// Characters of texts that are plain ASCII, whatever the locale has to say of them.
#pragma once

constexpr char AsciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool IsAsciiAlphanumeric(char c) {
    return (AsciiLower(c) >= 'a' && AsciiLower(c) <= 'z') || (c >= '0' && c <= '9');
}
