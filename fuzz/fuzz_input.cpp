#include "fuzz/fuzz_input.h"

#include <algorithm>

namespace {

constexpr u32 SMALLEST_LIMITS = 26;  // powers of two, up to 32 MiB

}  // namespace

FuzzInput::FuzzInput(const u8* pData, size_t nSize) : file(pData, pData + nSize) {
    if (nSize < CONTROLS) return;
    std::copy(file.end() - CONTROLS, file.end(), controls.begin());
    file.resize(nSize - CONTROLS);
}

const ReadingRules& FuzzInput::Rules() const {
    return (controls[0] & 1) != 0 ? TOLERANT : STRICT;
}

Plan FuzzInput::ToPlan() const {
    Plan plan = {.nMemory = u64{32} << 20};
    constexpr std::array TOLERANCES = {Tolerance::None, Tolerance::Always, Tolerance::Never, Tolerance::Ask};
    plan.tolerance = TOLERANCES[controls[0] % TOLERANCES.size()];
    constexpr std::array WAYS = {Fault::Way::Throw, Fault::Way::Half, Fault::Way::Nothing};
    Fault fault = {.nAt = controls[1], .bOnce = (controls[0] & 0x20) != 0};
    fault.way = WAYS[(controls[0] >> 6) % WAYS.size()];
    switch (controls[0] >> 2 & 7) {
        case 1:
            plan.reads = fault;
            break;
        case 2:
            plan.seeks = fault;
            break;
        case 3:
            plan.lengths = fault;
            break;
        case 4:
            fault.nAt += u64{controls[2]} << 8;
            plan.requests = fault;
            break;
        default:
            break;
    }
    if (controls[3] != 0) plan.nMemory = u64{1} << controls[3] % SMALLEST_LIMITS;
    if (controls[4] != 0) plan.selections = {{controls[4], controls[5]}, {controls[6], controls[7]}};
    return plan;
}

void SetFaults(MemoryFile& file, const Plan& plan) {
    file.m_reads.fault = plan.reads;
    file.m_seeks.fault = plan.seeks;
    file.m_lengths.fault = plan.lengths;
}
