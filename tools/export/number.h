// Numbers among the words of the command line.
#pragma once

#include "base/types.h"

#include <optional>
#include <string_view>

// Nothing where the word is something else than decimal digits, or too large.
std::optional<u32> ToNumber(std::string_view word);
