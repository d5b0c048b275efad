// One file, described on one line of JSON.
#pragma once

#include <cstdio>
#include <string>

enum class DescribeResult { Accepted, Refused, CannotBeOpened };

// Reads the file as the viewer would. Lines on standard error say why one is refused, or cannot be opened;
// the latter writes nothing to out.
DescribeResult DescribeFile(const std::string& strPath, std::FILE* out);
