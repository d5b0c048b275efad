// Numbers among the words of a command line.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

// Nothing where the word is something else than decimal digits, or too large.
template <typename Number>
std::optional<Number> ToNumber(std::string_view word) {
    Number number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
    return number;
}
