// Every call that can fail fails: the first, the second and so on, until a run has none left to fail.
#include "support/has.h"
#include "support/sample_files.h"
#include "support/table.h"
#include "support/trial.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Calls = std::pair<std::string, Fault Plan::*>;

const Calls READS = {"read", &Plan::reads}, SEEKS = {"seek", &Plan::seeks}, LENGTHS = {"length", &Plan::lengths};
const Calls REQUESTS = {"request", &Plan::requests};

constexpr u64 MOST_CALLS = 20'000;  // of one kind in a run

bool IsRefused(const Answer& answer, const std::string& strReason) {
    return answer.strLoad.starts_with("refused") && Has(answer.strLoad, strReason);
}

// Runs each sample under both sets of rules with each plan that struck(fault) makes, and hands what came of it to
// judge(answer, whole, plan). Afterwards the same document takes the file as if nothing had been.
template <typename Judge>
void Sweep(const Calls& calls, Fault::Way way, const Judge& judge) {
    const auto& [strCalls, pFault] = calls;
    for (const auto& [name, bytes] : SampleFiles())
        for (const Tolerance tolerance : {Tolerance::None, Tolerance::Always})
            for (const bool once : {false, true}) {
                Plan plan = {.tolerance = tolerance};
                const Answer whole = Trial().Run(bytes, plan);
                bool struck = true;
                for (u64 call = 0; struck; ++call) {
                    SCOPED_TRACE(
                        name + ", " + strCalls + " " + std::to_string(call) + (once ? " alone" : " and all after it"));
                    ASSERT_LT(call, MOST_CALLS);
                    Trial trial;
                    plan.*pFault = {call, once, way};
                    const Answer answer = trial.Run(bytes, plan);
                    struck = answer.bStruck;
                    if (struck)
                        judge(answer, whole, plan);
                    else
                        ASSERT_EQ(answer, whole);
                    ASSERT_EQ(trial.Run(bytes, {.tolerance = tolerance}), whole);
                }
            }
}

TEST(Faults, OfTheFileRefuseItOrChangeNothing) {
    for (const Calls& calls : {READS, SEEKS, LENGTHS})
        Sweep(calls, Fault::Way::Throw, [](const Answer& answer, const Answer& whole, const Plan&) {
            EXPECT_TRUE(answer == whole || IsRefused(answer, "Input/output error")) << answer;
        });
}

// Under the tolerant rules files that end early are read as far as they go, which is said. Those that end early once,
// for the strict rules alone, the tolerant ones read whole.
TEST(Faults, CallsThatDoLessAreLikeFilesThatEnd) {
    for (const Calls& calls : {READS, SEEKS, LENGTHS})
        for (const Fault::Way way : {Fault::Way::Half, Fault::Way::Nothing})
            Sweep(calls, way, [&](const Answer& answer, const Answer& whole, const Plan& plan) {
                const bool once = (plan.*calls.second).bOnce;
                const bool tolerantly = plan.tolerance != Tolerance::None && (once || answer.strLoad != whole.strLoad);
                EXPECT_TRUE(answer == whole || IsRefused(answer, "") || tolerantly) << answer;
            });
}

// While documents are read, lack of memory refuses them. Elsewhere one picture alone may lack it.
void JudgeMemory(const Answer& answer, const Answer& whole, const Plan& plan) {
    if (answer == whole) return;
    if (!answer.IsOpen()) {
        EXPECT_TRUE(answer.strLoad == MEMORY || IsRefused(answer, "not enough memory")) << answer;
        return;
    }
    EXPECT_EQ(answer.strLoad, whole.strLoad);
    EXPECT_NE(std::find(answer.pictures.begin(), answer.pictures.end(), MEMORY), answer.pictures.end());
    // A layer whose list cannot be had lacks all its pictures.
    if (answer.pictures.size() != whole.pictures.size()) return;
    u32 lacking = 0;
    for (size_t i = 0; i < whole.pictures.size(); ++i) {
        lacking += answer.pictures[i] == MEMORY;
        EXPECT_TRUE(answer.pictures[i] == MEMORY || answer.pictures[i] == whole.pictures[i]) << answer;
    }
    EXPECT_TRUE(lacking == 1 || !plan.requests.bOnce) << answer;
}

TEST(Faults, OfMemoryRefuseOrLeaveOutOnePicture) { Sweep(REQUESTS, Fault::Way::Throw, JudgeMemory); }

TEST(Faults, AnyLimitOnMemoryRefusesOrLeavesOutPictures) {
    for (const auto& [name, bytes] : SmallSampleFiles())
        for (const Tolerance tolerance : {Tolerance::None, Tolerance::Always}) {
            const Answer whole = Trial().Run(bytes, {.tolerance = tolerance});
            Answer answer;
            for (u64 limit = 0; !(answer == whole); ++limit) {
                SCOPED_TRACE(name + ", " + std::to_string(limit) + " bytes");
                ASSERT_LT(limit, MOST_CALLS);
                Trial trial;
                answer = trial.Run(bytes, {.tolerance = tolerance, .nMemory = limit});
                JudgeMemory(answer, whole, {});
                ASSERT_EQ(trial.Run(bytes, {.tolerance = tolerance}), whole);
            }
        }
}

}  // namespace
