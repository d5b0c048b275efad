// One file read as the viewer would.
#pragma once

#include "tools/common/messages.h"

#include <memory>

class CFile;
class CRegularFile;
class CVistrelDoc;

// Null where it cannot be opened, which is told.
std::unique_ptr<CRegularFile> OpenFile(const FileNames& names);

// Failed: something other than what the file holds kept it from being read, lack of memory most of all.
enum class Loading { Read, Refused, Failed };

// Loads the file into the document, as its m_tolerance says. Why it is not read is told: of a refused one how
// far each reader got.
Loading LoadDocument(CVistrelDoc& document, CFile& file, const FileNames& names);
