// What the words of the command line ask for.
#pragma once

#include "base/types.h"
#include "tools/export/choice.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

enum class PictureFormat : u8 { Png, Ppm };

struct ThumbnailOrder {
    u32 nMostSide = 0;  // pixels
    std::string input;
    std::string output;
};

struct Options {
    std::vector<std::string> files = {};
    Choice choice = {};
    std::string folder = ".";
    PictureFormat format = PictureFormat::Png;
    bool bList = false;
    bool bStrict = false;
    bool bMergeAlpha = false;
    bool bForce = false;
    std::optional<ThumbnailOrder> thumbnail = {};  // alone, beside bStrict
};

// Nothing where the words do not go together.
std::optional<Options> ParseOptions(const std::vector<std::string_view>& words);
