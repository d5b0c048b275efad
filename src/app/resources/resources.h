// The program's resources.
#pragma once

#include "framework/core/resource.h"

extern const ResourceTables g_resources;

// Made from the descriptions of the artwork that stand beside this file.
constexpr int PICTURE_COUNT = 12;
extern const PictureResource PICTURES[PICTURE_COUNT];

// The files in share/ that an installation puts into the system's folders.
extern const char SHELL_PACKAGE[];
extern const char SHELL_ENTRY[];
