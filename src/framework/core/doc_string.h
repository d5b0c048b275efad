// The document string of a template: seven fields in one string resource, divided by line ends.
#pragma once

#include <string>
#include <vector>

enum class DocStringField {
    WindowTitle,
    DocName,
    FileNewName,
    FilterName,
    FilterExt,  // with its dot; further patterns may follow it, divided by semicolons
    RegFileTypeId,
    RegFileTypeName
};

// A field that the string does not reach to is empty.
std::string GetDocString(const std::string& strDocString, DocStringField field);

// Whether the file's extension is that of the field FilterExt, whatever its case. A field that holds several
// patterns stands for no extension of its own and matches none.
bool MatchesFilterExt(const std::string& strFilterExt, const std::string& strPathName);

// The patterns of the field FilterExt, each with its asterisk.
std::vector<std::string> FilterPatterns(const std::string& strFilterExt);
