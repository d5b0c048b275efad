// Files of very many small parts: whole they open, and without their last byte the reader that knows them says where
// they end.
#include "support/failing_new.h"
#include "support/has.h"
#include "support/hostile_files.h"
#include "support/memory_limit.h"
#include "support/trial.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr u32 COUNT = 4096;
constexpr u64 MOST_PER_BYTE = 25;  // bytes of memory that one of a file may take

TEST(Hostile, FilesOfManyPartsAreReadOrRefusedAlike) {
    for (const HostileFile& file : HostileFiles()) {
        SCOPED_TRACE(file.pszName);
        const Bytes bytes = file.make(COUNT);
        const Answer whole = Trial().Run(bytes);
        EXPECT_TRUE(whole.IsOpen()) << whole;
        // With a hash behind it.
        const auto isValid = [](const std::string& strPicture) { return bool{Has(strPicture, " valid ")}; };
        const bool shows = std::any_of(whole.pictures.begin(), whole.pictures.end(), isValid);
        EXPECT_EQ(shows, file.bHasPicture) << whole;
        const Answer cut = Trial().Run(Truncated(bytes, 1));
        EXPECT_TRUE(cut.strLoad.starts_with("refused")) << cut;
        EXPECT_TRUE(Has(cut.strLoad, "the file ends")) << cut;
        for (const u8 fill : {u8{0x00}, u8{0xFF}}) {
            const FilledMemory memory(fill);
            EXPECT_EQ(Trial().Run(bytes), whole);
            EXPECT_EQ(Trial().Run(Truncated(bytes, 1)), cut);
        }
    }
}

// What is small counts against the limit, too, where a file can want any number of it.
TEST(Hostile, FilesOfManyPartsStayWithinTheLimit) {
    for (const HostileFile& file : HostileFiles()) {
        SCOPED_TRACE(file.pszName);
        const Bytes many = file.make(COUNT);
        const u64 left = LargeBlock::Left();
        const Plan plan = {.nMemory = many.size()};
        const Answer answer = Trial().Run(many, plan);
        EXPECT_FALSE(answer.IsOpen()) << answer;
        EXPECT_TRUE(Has(answer.strLoad, "memory")) << answer;
        const bool isPhotoshop = many[0] == '8';
        EXPECT_EQ(answer.strLoad.starts_with("refused: "), isPhotoshop) << answer;
        EXPECT_EQ(LargeBlock::Left(), left);
        EXPECT_TRUE(Trial().Run(many, {.nMemory = MOST_PER_BYTE * many.size()}).IsOpen());
    }
}

}  // namespace
