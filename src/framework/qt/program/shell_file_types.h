// What the program leaves in the user's own folders for the desktop to know it by.
#pragma once

#include "base/types.h"

#include <string>

// Tells the user's desktop of the program, of the kinds of files that are its own and of its icon, where it
// does not know yet. The program runs on when it cannot be told.
void AfxRegisterShellFileTypes(u32 nIDIcon);

// The desktop entry for a program that is started by its absolute path and not by its name.
std::string AfxMakeDesktopEntry(const std::string& strEntry, const std::string& strProgram);
