// The tagged blocks that stand at the end of a layer record and of the section of layers and masks: "8BIM" or
// "8B64", four characters that say what it is, a length and as many bytes. Up to three bytes may stand
// between two of them.
#pragma once

#include "psd/field_reader.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

class PsdReading;

// Moves to the data of the first block with one of the keys, from the position on to the end of the part that
// is read. Nothing, with the position anywhere in the part, where there is none. The data may pass the part.
std::optional<LengthField> FindTaggedBlock(PsdReading& reading, std::initializer_list<std::string_view> keys);

// A count of characters and as many of UTF-16, of which those before the first zero are kept, as UTF-8. What
// is half a pair becomes U+FFFD. Empty where the part ends before they do.
std::string ReadUtf16(PsdReading& reading);
