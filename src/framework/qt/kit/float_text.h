// Numbers as a user reads and types them in an edit field. Texts are UTF-8.
#pragma once

#include <optional>
#include <string>

// At most 6 digits, with the user's own decimal sign.
std::string FloatToText(float fValue);

// Takes full stop and comma for the decimal sign as well as the user's own one, and blanks around the number.
// Nothing for a text that is no number; one that is too large for a float is infinite.
std::optional<float> TextToFloat(const std::string& strText);
