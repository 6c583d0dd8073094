#include "tree/AstNodeAllocator.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using lf::astapi::AstNodeAllocator;

TEST(AstNodeAllocator, FillsPagesAndLooksForRoomInTheNewestOnly) {
    AstNodeAllocator allocator(64);
    auto* first = static_cast<std::byte*>(allocator.allocate(13));
    EXPECT_EQ(static_cast<std::byte*>(allocator.allocate(32)), first + 16);
    EXPECT_EQ(static_cast<std::byte*>(allocator.allocate(16)), first + 48);
    allocator.allocate(24); // a second page
    allocator.allocate(32);
    EXPECT_EQ(allocator.getCounters().pages, 2U);
    allocator.allocate(16); // 8 bytes are left there
    EXPECT_EQ(allocator.getCounters().pages, 3U);
    EXPECT_EQ(allocator.getCounters().wastedBytes, 8U);
    EXPECT_EQ(allocator.getCounters().smallBytes, 13U + 32 + 16 + 24 + 32 + 16);
}

TEST(AstNodeAllocator, GivesBlocksOfTheirOwnToWhatIsLargerThanHalfAPage) {
    AstNodeAllocator allocator(64);
    allocator.allocate(8);
    std::memset(allocator.allocate(33), 1, 33);
    std::memset(allocator.allocate(1000), 1, 1000);
    EXPECT_EQ(allocator.getCounters().largeRequests, 2U);
    EXPECT_EQ(allocator.getCounters().pages, 1U);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(allocator.allocate(1)) % 8, 0U);
}

TEST(AstNodeAllocator, GrowsItsPagesWithAllThatItHas) {
    AstNodeAllocator allocator(64);
    for (int i = 0; i < 10'000; ++i) {
        std::memset(allocator.allocate(24), 1, 24);
    }
    EXPECT_LT(allocator.getCounters().pages, 50U);
    EXPECT_LT(allocator.getCounters().pageBytes, 2 * allocator.getCounters().smallBytes);
}

TEST(AstNodeAllocator, CleansUpInOrderOfRegistration) {
    std::string order;
    {
        AstNodeAllocator allocator(64);
        for (const char c : {'a', 'b', 'c'}) {
            allocator.addCleanUp([&order, c] { order += c; });
        }
        EXPECT_EQ(order, "");
    }
    EXPECT_EQ(order, "abc");
}

TEST(AstNodeAllocatorDeathTest, EndsTheProcessOnAnEmptyCleanUp) {
    EXPECT_DEATH(
        {
            AstNodeAllocator allocator(64);
            allocator.addCleanUp({});
        },
        "bad_function_call");
}
