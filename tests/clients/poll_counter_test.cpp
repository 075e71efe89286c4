#include "clients/poll_counter.hpp"

#include <gtest/gtest.h>

extern "C" int counter;

TEST(PollCounter, IsTheExportedOneAndBeginsAtZero) {
    EXPECT_EQ(&qvtc::clients::poll_counter(), &counter);
    EXPECT_EQ(counter, 0);
}
