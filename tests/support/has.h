// Whether one text stands in another, for expectations that can be read aloud.
#pragma once

#include <string_view>

inline bool Has(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }
