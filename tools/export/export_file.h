// One document, and the pictures that are asked of it.
#pragma once

#include "tools/export/options.h"
#include "tools/export/picture_names.h"

#include <string>

// Writes the pictures, or lists them on standard output where the options say so. names: of all files of the
// run. False when the document was not read, lacks a picture that was asked for by name, or one could not be
// written; each is told, and the others are written.
bool ExportFile(const std::string& strPath, const Options& options, PictureNames& names);
