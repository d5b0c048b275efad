// What the program leaves in the user's own folders for the desktop to know it by.
#pragma once

#include "base/types.h"

#include <string>

// Tells the user's desktop of the program, of the kinds of files that are its own and of its icon, where it
// does not know yet. Where the program is installed for all users, what was told for this one is taken back.
// The program runs on when the desktop cannot be told.
void AfxRegisterShellFileTypes(u32 nIDIcon);

// The desktop entry for a program that is started by its absolute path and not by its name, from the one that
// is installed. Its first comment says what "#user" marks in it.
std::string AfxMakeDesktopEntry(const std::string& strEntry, const std::string& strProgram);
