// Paths, which are bytes in no particular encoding, and whether two of them mean one file.
#pragma once

#include <string>

// The path from the root on, for one that begins in the current folder. Links keep their names.
std::string GetFullPath(const std::string& strPath);

// What stands behind the last slash, and all up to it, that slash included; the folder is empty without one.
std::string FileNameOf(const std::string& strPath);
std::string FolderOf(const std::string& strPath);

// Whether both paths lead to the same file. One that leads to none is the same as itself.
bool IsSameFile(const std::string& strPath, const std::string& strOther);
