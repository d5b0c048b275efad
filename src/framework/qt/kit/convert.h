// Text on its way to the screen.
#pragma once

#include <string>

class QString;

// Bytes of unknown encoding, from a file or a path: valid UTF-8 is taken as such, everything else as
// Windows-1252. Control characters show as spaces.
QString ToDisplayText(const std::string& strBytes);

// The same text as a tip shows it: tips would read marks of their own out of it.
QString ToPlainTip(const QString& text);
