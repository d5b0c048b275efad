// What the desktop is told of the program: the kinds of files that are its own, as a MIME package, and how it
// is started, as a desktop entry.
#pragma once

#include <string>
#include <vector>

// A kind of file, from the document string of its template.
struct ShellFileType {
    std::string strExtension;  // with its dot
    std::string strTypeId;     // as in "Program.Picture"
    std::string strTypeName;   // as it is shown

    // The MIME type that stands for the type id.
    std::string GetMimeType() const;
};

struct ShellRegistration {
    std::string strId;  // as in "com.maker.Program"; names the icon too
    std::string strName;
    std::string strComment;
    std::string strClaimed;  // a MIME type of others that its own are kinds of, and that it is registered for
    std::string strOffered;  // and one that it opens when it is asked to, but leaves to those who claim it
    std::string strOfferedName;  // as that one is shown
    std::vector<ShellFileType> types;

    // An extension that another package claims stays with that one.
    std::string MakeMimePackage() const;

    // strProgram: an absolute path, or a name that is looked for. It is started with the switch that passes
    // its files on to the copy that runs.
    std::string MakeDesktopEntry(const std::string& strProgram) const;

  private:
    std::string GetOfferType() const;
};
