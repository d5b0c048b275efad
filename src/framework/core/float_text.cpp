#include "framework/core/float_text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr int FLOAT_DIGITS = 6;

}  // namespace

std::string FloatToText(float fValue, const std::string& strDecimalSign) {
    char digits[32];
    const auto [end, error] =
        std::to_chars(digits, digits + sizeof digits, fValue, std::chars_format::general, FLOAT_DIGITS);
    std::string text(digits, end);
    if (const auto point = text.find('.'); point != std::string::npos) text.replace(point, 1, strDecimalSign);
    return text;
}

std::optional<float> TextToFloat(const std::string& strText, const std::string& strDecimalSign) {
    const std::size_t first = strText.find_first_not_of(" \t");
    if (first == std::string::npos) return std::nullopt;
    std::string text = strText.substr(first, strText.find_last_not_of(" \t") - first + 1);
    if (const auto sign = text.find(strDecimalSign); sign != std::string::npos)
        text.replace(sign, strDecimalSign.size(), ".");
    // The conversion knows no plus; a sign behind it is no number either.
    if (text[0] == '+' && text.find_first_of("+-", 1) != 1) text.erase(0, 1);

    double value = 0;
    const char* const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, value);
    const bool isBeyond = error == std::errc::result_out_of_range;
    if ((error != std::errc() && !isBeyond) || end != textEnd || !std::isfinite(value)) return std::nullopt;
    // Beyond the range of a double lies what is too large as well as what is too small; the sign of the
    // exponent tells, unless somebody wrote hundreds of zeros.
    if (isBeyond && text.find("e-") == std::string::npos && text.find("E-") == std::string::npos)
        value = std::copysign(std::numeric_limits<double>::infinity(), text[0] == '-' ? -1 : 1);
    return static_cast<float>(value);
}
