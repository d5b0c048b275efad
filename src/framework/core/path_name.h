// Paths are bytes, in no particular encoding. What they are compared by, and the texts they are written as.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

// The path from the root on, for one that begins in the current folder. Links keep their names.
std::string GetFullPath(const std::string& strPath);

// Whether both paths lead to the same file. One that leads to none is the same as itself.
bool IsSameFile(const std::string& strPath, const std::string& strOther);

// The path in at most nMaxLength bytes: folders in its middle give way to "...", and where that is not enough
// the middle of the name. No UTF-8 character is cut.
std::string AbbreviatePath(const std::string& strPath, std::size_t nMaxLength);

// The absolute path as a URI, which is plain ASCII whatever the path's bytes are.
std::string ToFileUri(const std::string& strPath);

// None for what names no file of this computer.
std::optional<std::string> FromFileUri(const std::string& strUri);
