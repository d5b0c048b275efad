#include "tools/export/number.h"

#include <charconv>

std::optional<u32> ToNumber(std::string_view word) {
    u32 number = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    if (error != std::errc() || end != word.data() + word.size()) return std::nullopt;
    return number;
}
