// What a fuzzer's input means: a file and, behind it, a few bytes that say what happens while it is read.
#pragma once

#include "reading/reading_rules.h"
#include "support/memory_file.h"
#include "support/trial.h"

#include <array>
#include <cstddef>

struct FuzzInput {
    static constexpr size_t CONTROLS = 8;

    // Of fewer bytes all are file, and nothing happens.
    FuzzInput(const u8* pData, size_t nSize);

    // Rules, faults, memory and selections.
    Plan ToPlan() const;
    const ReadingRules& Rules() const;

    Bytes file;
    std::array<u8, CONTROLS> controls = {};
};

// A file in memory, with the plan's faults.
void SetFaults(MemoryFile& file, const Plan& plan);
