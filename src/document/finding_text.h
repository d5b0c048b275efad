// A finding in words: the one place where the rules have sentences.
#pragma once

#include "reading/finding.h"

#include <string>

// "stopped at byte 14, header: 30001 rows; 1 to 30000 are read", or why nothing was read at all.
std::string FindingText(const Finding& finding);

// What was wrong, alone.
std::string RuleText(const Finding& finding);
