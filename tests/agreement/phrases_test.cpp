#include "clients/failure_phrases.hpp"
#include "qvtcctl/clients/client_log.hpp"

#include <gtest/gtest.h>

namespace qvtc {
namespace {

/// Whether the tool says what a line of a client's log means.
bool is_explained(unsigned type_number, const std::string& phrase) {
    const qvtcctl::ConnectionType& type = *qvtcctl::find_type(std::to_string(type_number));
    return qvtcctl::explain(type, qvtcctl::first_id(type), phrase + "\n", "").known;
}

// What the library takes for a failure, the tool must be able to explain.
TEST(PhrasesOfBoth, AreExplained) {
    for (const clients::RdpPhrase& phrase : clients::rdp_failures)
        EXPECT_TRUE(is_explained(QVTC_TYPE_RDP, phrase.text)) << phrase.text;
    for (const char* const phrase : clients::spice_failures)
        EXPECT_TRUE(is_explained(QVTC_TYPE_SPICE, phrase)) << phrase;
    for (const char* const phrase : clients::vnc_failures)
        EXPECT_TRUE(is_explained(QVTC_TYPE_VNC, phrase)) << phrase;
    EXPECT_FALSE(is_explained(QVTC_TYPE_RDP, "a phrase that nobody knows"));
}

} // namespace
} // namespace qvtc
