// Whether one text stands in another, for expectations that can be read aloud.
#pragma once

#include <gtest/gtest.h>

#include <string_view>

// Its failure names the text.
inline testing::AssertionResult Has(std::string_view text, std::string_view part) {
    return testing::AssertionResult(text.find(part) != std::string_view::npos) << "in \"" << text << '"';
}
