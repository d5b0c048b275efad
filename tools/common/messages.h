// What the tools say: lines on standard error, each with the name of the file that it is about.
#pragma once

#include "framework/core/exception.h"

#include <exception>
#include <string>

// Fit for a terminal: control characters and what is no UTF-8 become the replacement.
std::string PlainText(const std::string& strText, char replacement = '?');

// How a file is called.
struct FileNames {
    std::string path;
    std::string plain;  // for lines on standard error
};

FileNames NamesOf(const std::string& strPath);

[[gnu::format(printf, 2, 3)]] void Say(const FileNames& names, const char* pszFormat, ...);

// Shows how far things are, on a line whose place the next thing said takes; an empty text takes it away.
// Only on a terminal.
void ShowProgress(const std::string& strText);

// False when the call ended with an exception, which is told.
template <typename Call>
bool Guarded(const FileNames& names, const Call& call) {
    try {
        call();
        return true;
    } catch (const CMemoryException& exception) {
        Say(names, "%s", AfxMemoryText(exception).data());
    } catch (const std::exception& exception) {
        Say(names, "%s", exception.what());
    }
    return false;
}

// Whether everything that went to standard output has arrived, which is known only here: what is left in the
// buffer goes out first. Where it has not, the program says so.
bool IsOutputWritten(const char* pszProgram);
