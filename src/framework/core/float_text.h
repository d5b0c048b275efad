// Numbers as a user reads and types them in an edit field.
#pragma once

#include <optional>
#include <string>

// At most 6 digits, with the decimal sign given.
std::string FloatToText(float fValue, const std::string& strDecimalSign);

// Takes a full stop as well as the decimal sign given, and blanks around the number. Nothing for a text that
// is no number. One beyond the range of a float is infinite or 0.
std::optional<float> TextToFloat(const std::string& strText, const std::string& strDecimalSign);
