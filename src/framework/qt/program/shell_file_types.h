// What the program leaves in the user's own folders for the desktop to know it by.
#pragma once

#include "base/types.h"

struct ShellRegistration;

// Tells the user's desktop of the program, of the kinds of files that are its own and of its icon, where it
// does not know yet. The program runs on when it cannot be told.
void AfxRegisterShellFileTypes(const ShellRegistration& registration, u32 nIDIcon);
