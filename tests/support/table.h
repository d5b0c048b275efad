// A family of values, a row for each: for (const auto& [name, value] : Table<const char*, u32>{...}).
#pragma once

#include <tuple>
#include <vector>

template <typename... Columns>
using Table = std::vector<std::tuple<Columns...>>;
