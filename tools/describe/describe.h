// One file, described on one line of JSON.
#pragma once

#include "base/types.h"
#include "document/vistrel_doc.h"
#include "tools/common/pictures.h"

#include <cstdio>
#include <string>

// NotWhole: something other than the file kept its line from being whole, lack of memory most of all.
enum class DescribeResult { Accepted, Refused, NotWhole, CannotBeOpened };

// Reads the file as the viewer would. Once it is open, and the little memory that reading takes is there, it
// gives one finished line, whatever happens; before that nothing is written to pOut. Lines on standard error
// say what went wrong.
// Where it is told to read tolerantly, the line has a key more: what was passed over.
DescribeResult DescribeFile(const std::string& strPath, std::FILE* pOut,
                            Tolerance tolerance = Tolerance::None, u64 nMostPixels = MOST_PIXELS);
