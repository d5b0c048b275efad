// Settings as text: a line in brackets begins a section, each other line is a name and a value. It is the
// format that desktops know, so a person can put something right by hand.
#pragma once

#include "framework/core/profile.h"

#include <map>
#include <string>
#include <string_view>

using IniSections = std::map<std::string, ProfileSection>;

// Lines that are neither, and those before the first section, are passed over. Of entries with one name the
// last one counts.
IniSections ParseIni(std::string_view text);

// What ParseIni reads back, whatever bytes names and values hold.
std::string FormatIni(const IniSections& sections);
