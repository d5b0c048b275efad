// A file that is written anew as a whole, so that nobody ever sees half of it.
#pragma once

#include <string>
#include <string_view>

// Writes beside the file and puts that in its place once the disk has it. A link to a file stays one, and
// what it leads to is replaced; the permissions stay. Only one program at a time may do so: the name beside
// the file is always the same, and whoever comes next makes use of what a killed one has left there. False
// when it failed; the file is as it was then.
bool ReplaceFile(const std::string& strPath, std::string_view content);
