#include "framework/core/path_name.h"

#include <algorithm>
#include <filesystem>

std::string GetFullPath(const std::string& strPath) {
    std::error_code failed;
    const std::filesystem::path path = std::filesystem::absolute(strPath, failed);
    if (failed) return strPath;
    if (std::ranges::find(path, "..") == path.end()) return path.lexically_normal();
    // What stands above a folder is known only once links are followed.
    const std::filesystem::path folder = std::filesystem::canonical(path.parent_path(), failed);
    return failed ? path.native() : (folder / path.filename()).native();
}

std::string FileNameOf(const std::string& strPath) {
    return strPath.substr(strPath.rfind('/') + 1);
}

std::string FolderOf(const std::string& strPath) {
    return strPath.substr(0, strPath.rfind('/') + 1);
}

bool IsSameFile(const std::string& strPath, const std::string& strOther) {
    std::error_code failed;
    return strPath == strOther || std::filesystem::equivalent(strPath, strOther, failed);
}
