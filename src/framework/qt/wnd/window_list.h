// The list of all child windows, for when there are more of them than their menu has room for.
#pragma once

#include <optional>
#include <string>
#include <vector>

// Asks for one of the windows, the current one being chosen at first; its position, or nothing.
std::optional<int> AfxChooseWindow(const std::vector<std::string>& titles, int nCurrent);
