// Why a file was refused. The readers answer without giving reasons; this walks the file once more, with the
// readers' own parts, one at a time, and tells from what they leave behind.
#pragma once

#include "base/types.h"

#include <string>

class ByteStream;
class CFile;

// Where a reader stopped.
struct Refusal {
    u32 nPosition = 0;       // byte of the file
    std::string strReading;  // what it was reading
    std::string strRule;     // what it would have taken; empty where that cannot be told
};

// What a stream in bad state has run into.
std::string DescribeBadState(const ByteStream& stream);

// Each walks from the stream's position on; only for a file that the reader has refused.
Refusal WhyNotPsd(ByteStream& stream);
Refusal WhyNotIff(ByteStream& stream);

// Both readers' refusals in one line.
std::string DescribeRefusal(CFile& file);
