// What a document offers for display.
#pragma once

#include <string>
#include <vector>

class CVistrelDoc;

// The entries of the Layer list, in their order. Names are bytes of unknown encoding.
std::vector<std::string> LayerNames(const CVistrelDoc& document);
