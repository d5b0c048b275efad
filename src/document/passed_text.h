// What tolerant reading passed over, in words: the one place that has them.
#pragma once

#include "reading/passed_over.h"

#include <string>
#include <vector>

// One text for each kind, in their order: "empty layers (2)", where a number says something.
std::vector<std::string> PassedTexts(const PassedOver& passedOver);

// All of them: "empty layers (2); tagged blocks".
std::string PassedText(const PassedOver& passedOver);
