#include "core/edge.hpp"

#include <gtest/gtest.h>
#include <new>
#include <pthread.h>
#include <stdexcept>
#include <thread>

namespace qvtc::test {

TEST(Guard, HandsOnTheResult) {
    EXPECT_EQ(guard(-1, [] { return 7; }), 7);
    int calls = 0;
    guard_void([&] { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(Guard, TurnsAnExceptionIntoTheResultOfAFailure) {
    EXPECT_EQ(guard(-1, []() -> int { throw std::runtime_error("x"); }), -1);
    EXPECT_EQ(guard(-1, []() -> int { throw std::bad_alloc(); }), -1);
    guard_void([] { throw std::logic_error("x"); });
}

TEST(Guard, LetsAThreadThatEndsItselfUnwind) {
    bool unwound = false;
    bool went_on = false;
    pthread_t thread{};
    struct Flags {
        bool &unwound, &went_on;
    } flags{unwound, went_on};
    const auto body = [](void* argument) -> void* {
        const Flags& seen = *static_cast<Flags*>(argument);
        struct Note {
            bool& unwound;
            ~Note() { unwound = true; }
        } note{seen.unwound};
        guard_void([] { pthread_exit(nullptr); });
        seen.went_on = true;
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, nullptr, body, &flags), 0);
    pthread_join(thread, nullptr);
    EXPECT_TRUE(unwound);
    EXPECT_FALSE(went_on);
}

} // namespace qvtc::test
