// One file, described on one line of JSON.
#pragma once

#include "base/types.h"
#include "document/vistrel_doc.h"

#include <cstdio>
#include <string>

// NotWhole: something other than the file kept its line from being whole, lack of memory most of all.
enum class DescribeResult { Accepted, Refused, NotWhole, CannotBeOpened };

// Once the pictures built for one file have passed so many pixels together, no more are built.
constexpr u64 MOST_PIXELS = u64{1} << 32;

// Reads the file as the viewer would. Once it is open, and the little memory that reading takes is there, it
// gives one finished line, whatever happens; before that nothing is written to pOut. Lines on standard error
// say what went wrong.
// Where it is told to read tolerantly, the line has a key more: what was passed over.
DescribeResult DescribeFile(const std::string& strPath, std::FILE* pOut,
                            Tolerance tolerance = Tolerance::None, u64 nMostPixels = MOST_PIXELS);

// Fit for a terminal: control characters and what is no UTF-8 become '?'.
std::string PlainText(const std::string& strText);
