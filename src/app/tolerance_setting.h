// The settings of reading, and the question that one of them asks about files that break rules of their
// formats.
#pragma once

#include "document/vistrel_doc.h"
#include "framework/core/answers.h"

#include <memory>
#include <string>
#include <vector>

inline constexpr const char* TOLERANT_SWITCH = "--tolerant";  // "always" for one run

// Of the settings. What an entry may say, it says in these words.
inline constexpr const char* READING_SECTION = "Reading";
inline constexpr const char* TOLERANT_ENTRY = "Tolerant";  // ALWAYS, NEVER, or anything else for asking
inline constexpr const char* RELOAD_ENTRY = "Reload";      // ALWAYS, or anything else for F5 alone
inline constexpr const char* ALWAYS = "always";
inline constexpr const char* NEVER = "never";

// What the kept text says; any other text is "ask".
Tolerance ToTolerance(const std::string& strKept);

// Names the files, and what was passed over in each.
YesNoQuestion ConsentQuestion(const std::vector<std::shared_ptr<CDocument>>& documents);
