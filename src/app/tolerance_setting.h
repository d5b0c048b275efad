// How files that break rules of their formats are opened: the setting, and the question where it says to ask.
#pragma once

#include "document/vistrel_doc.h"
#include "framework/core/answers.h"

#include <memory>
#include <string>
#include <vector>

inline constexpr const char* TOLERANT_SWITCH = "--tolerant";  // "always" for one run
inline constexpr const char* TOLERANT_SECTION = "Reading";
inline constexpr const char* TOLERANT_ENTRY = "Tolerant";  // "ask", "always" or "never"

// What the kept text says; any other text is "ask".
Tolerance ToTolerance(const std::string& strKept);

// Names the files, and what was passed over in each.
YesNoQuestion ConsentQuestion(const std::vector<std::shared_ptr<CDocument>>& documents);
