#include "connections/types.hpp"
#include "qvtcctl/connections/types.hpp"

#include <gtest/gtest.h>

namespace qvtc {
namespace {

TEST(TypesOfBoth, HaveTheSameNumbersInTheSameOrder) {
    std::vector<unsigned> of_library;
    for (const connections::Type& type : connections::types) of_library.push_back(type.number);
    std::vector<unsigned> of_tool;
    for (const qvtcctl::ConnectionType& type : qvtcctl::connection_types)
        of_tool.push_back(type.number);
    EXPECT_EQ(of_tool, of_library);
}

TEST(TypesOfBoth, OwnTheSameIds) {
    for (const qvtcctl::ConnectionType& type : qvtcctl::connection_types) {
        EXPECT_EQ(qvtcctl::first_id(type), type.number * connections::ids_per_type);
        EXPECT_EQ(qvtcctl::last_id(type) - qvtcctl::first_id(type) + 1, connections::ids_per_type);
    }
}

} // namespace
} // namespace qvtc
