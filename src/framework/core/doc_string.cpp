#include "framework/core/doc_string.h"

#include "framework/core/ascii.h"
#include "framework/core/path_name.h"

#include <algorithm>
#include <cstddef>

std::string GetDocString(const std::string& strDocString, DocStringField field) {
    std::size_t start = 0;
    for (int i = 0; i < static_cast<int>(field); ++i) {
        start = strDocString.find('\n', start);
        if (start == std::string::npos) return {};
        ++start;
    }
    return strDocString.substr(start, strDocString.find('\n', start) - start);
}

bool MatchesFilterExt(const std::string& strFilterExt, const std::string& strPathName) {
    const std::string name = FileNameOf(strPathName);
    const std::size_t dot = name.rfind('.');
    if (dot == std::string::npos) return false;
    return std::ranges::equal(name.substr(dot), strFilterExt, {}, AsciiLower, AsciiLower);
}

std::vector<std::string> FilterPatterns(const std::string& strFilterExt) {
    std::vector<std::string> patterns;
    std::size_t start = 0;
    while (start < strFilterExt.size()) {
        const std::size_t end = std::min(strFilterExt.find(';', start), strFilterExt.size());
        const std::string pattern = strFilterExt.substr(start, end - start);
        patterns.push_back(pattern[0] == '.' ? "*" + pattern : pattern);
        start = end + 1;
    }
    return patterns;
}
