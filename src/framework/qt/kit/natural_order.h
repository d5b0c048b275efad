// The order in which people look for names: numbers in them count by their value, letters by the alphabet of
// the user's language.
#pragma once

#include <string>
#include <vector>

// Names are bytes, whose text is taken as it is shown. Those that are the same to a reader follow their
// bytes.
void SortNaturally(std::vector<std::string>& names);
