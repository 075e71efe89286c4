#include "clients/start_marker.hpp"

#include "connections/documents.hpp"
#include "support/scripted_os.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class StartMarker : public test::FreshTerminal {};

} // namespace

TEST_F(StartMarker, NamesTheSecondAndIsStored) {
    test::ScriptedOs system;
    system.time = 1'763'700'000;
    EXPECT_EQ(store_start_marker(), "[1763700000]start to connect...");
    EXPECT_EQ(test::stored_document(),
              test::document_text(
                  {{"configItem",
                    {{"com.valmora.thinclient.para_10_0", "[1763700000]start to connect..."}}}}));
    system.time = 1'763'700'001;
    EXPECT_EQ(store_start_marker(), "[1763700001]start to connect...");
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[1763700001]start to connect...");
}

TEST_F(StartMarker, HoldsSecondsBeyondThirtyTwoBits) {
    test::ScriptedOs system;
    system.time = 4'294'967'296;
    EXPECT_EQ(store_start_marker(), "[4294967296]start to connect...");
}

} // namespace qvtc::clients
