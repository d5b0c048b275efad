// What the desktop is told of the program: the kinds of files that are its own, as a MIME package, and how it
// is started, as a desktop entry.
#pragma once

#include <span>
#include <string>

// A kind of file, from the document string of its template.
struct ShellFileType {
    std::string strExtension;  // with its dot, in upper case
    std::string strTypeId;     // as in "Program.Picture"
    std::string strTypeName;   // as it is shown

    // The MIME type that stands for the type id.
    std::string GetMimeType() const;
};

// Where another package claims an extension, it keeps it.
std::string MakeMimePackage(std::span<const ShellFileType> types);

struct DesktopEntry {
    std::string strId;  // names its icon too
    std::string strName;
    std::string strComment;
    std::string strProgram;  // absolute path, or a name that is looked for
    std::string strOffered;  // further MIME types that it opens, each with a semicolon behind it
};

// The program is started with the switch that passes its files on to the copy that runs.
std::string MakeDesktopEntry(const DesktopEntry& entry, std::span<const ShellFileType> types);
