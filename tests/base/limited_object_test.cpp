#include "base/limited_object.h"

#include "support/memory_limit.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <vector>

namespace {

class Small : public LimitedObject {
  public:
    virtual ~Small() = default;
};

struct Larger final : public Small {
    u8 bytes[500];
};

TEST(LimitedObject, CountsLikeABlockAndGivesBackWhatItTook) {
    constexpr u64 MOST = 10'000;
    const MemoryLimit limit(MOST);
    std::vector<std::unique_ptr<Small>> objects;
    objects.push_back(std::make_unique<Larger>());
    const u64 size = MOST - LargeBlock::Left();
    EXPECT_GE(size, sizeof(Larger));
    while (LargeBlock::Left() >= size) objects.push_back(std::make_unique<Larger>());
    EXPECT_EQ(objects.size(), MOST / size);
    EXPECT_THROW(new Larger, std::bad_alloc);
    const LargeBlock rest = LargeBlock::Allocate(LargeBlock::Left());
    EXPECT_THROW(new Small, std::bad_alloc);
    objects.clear();
    EXPECT_EQ(LargeBlock::Left(), MOST - rest.Size());
}

}  // namespace
