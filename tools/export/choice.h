// Which pictures of a document are asked for.
#pragma once

#include "tools/export/picture_list.h"

#include <string>
#include <vector>

// Each word is a position in its list where it is a number, and else a name as the list shows it, byte by
// byte. Without words it is the first entry of the list, or, with bAll, every one.
struct Choice {
    std::vector<std::string> layers = {};
    std::vector<std::string> channels = {};
    bool bAll = false;
};

struct Chosen {
    std::vector<ListedPicture> pictures;  // in the list's order
    std::vector<std::string> lacking;     // what the document lacks, in words
};

Chosen Choose(const std::vector<ListedPicture>& list, const Choice& choice);
