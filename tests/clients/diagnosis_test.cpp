// What is read out of a client's log, given as text. What is asked of the system, and for which
// connections, is in client_status_test.cpp.

#include "clients/diagnosis.hpp"

#include "clients/failure_phrases.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

using Texts = std::vector<std::string>;

// The phrases of the contract, in its order. Those of the earlier form are marked.
const std::pair<std::string, bool> rdp_phrases[] = {
    {"unable to connect to", true},
    {"HTTP/1.1 401 Unauthorized", true},
    {"Authentication failure", true},
    {"RAIL exec error:", true},
    {"The user cannot connect to the server", true},
    {"ERRCONNECT_AUTHENTICATION_FAILED", false},
    {"ERRINFO_UNKNOWN", true},
    {"connect: No route to host", true},
    {"There are no available endpoints", true},
    {"An error occurred", true},
    {"SSL_read: Failure", true},
    {"Error: protocol security", true},
    {"Connection reset by peer", true},
    {"ERRINFO_LICENSE_CANT_FINISH_PROTOCOL", true},
    {"Protocol Security Negotiation Failure", false},
    {"out of service", true},
    {"ERRCONNECT_NO_OR_MISSING_CREDENTIALS", false},
};
const std::string spice_phrases[] = {
    "openssl_verify: Error in certificate chain verification",
    "main channel: failed to connect",
    "main channel: auth failure (wrong password?)",
    "out of service",
};
const std::string vnc_phrases[] = {
    "Authentication failure",
    "Connection refused",
    "No route to host",
};

/// Every phrase, found or not, with what the verdict makes of a log that holds it and the rest
/// of the line; then each two neighbours in the other order, of which the first of the table
/// wins.
template <typename Phrases, typename Verdict>
void expect_table(const Phrases& phrases, Verdict verdict) {
    const std::string before = "[1000]start to connect...\nsome words\n";
    const std::string* former = nullptr;
    for (const std::string& phrase : phrases) {
        EXPECT_EQ(verdict(before + "x " + phrase + " 10.0.0.5\nmore\n"),
                  status_value::failure(phrase + " 10.0.0.5\nmore\n"));
        EXPECT_EQ(verdict(before + phrase + " once, " + phrase + " twice"),
                  status_value::failure(phrase + " once, " + phrase + " twice"));
        if (former != nullptr) {
            EXPECT_EQ(verdict(before + phrase + ", and then " + *former + " as well"),
                      status_value::failure(*former + " as well"));
            EXPECT_EQ(verdict(before + *former + ", and then " + phrase),
                      status_value::failure(*former + ", and then " + phrase));
        }
        former = &phrase;
    }
}

Texts phrases_of(RdpForm form) {
    Texts texts;
    for (const auto& [phrase, in_earlier_form] : rdp_phrases) {
        if (form == RdpForm::current || in_earlier_form) texts.push_back(phrase);
    }
    return texts;
}

} // namespace

TEST(StatusValue, FailuresAreTheBase64OfTheirWords) {
    const std::pair<const char*, const char*> cases[] = {
        {"parameter error!", "cGFyYW1ldGVyIGVycm9yIQ=="},
        {"unkown error!", "dW5rb3duIGVycm9yIQ=="},
        {"encode error!", "ZW5jb2RlIGVycm9yIQ=="},
        {"", "ZW5jb2RlIGVycm9yIQ=="}, // nothing to encode
        {"not velopane!", "bm90IHZlbG9wYW5lIQ=="},
        {"unable to connect to 10.0.0.5", "dW5hYmxlIHRvIGNvbm5lY3QgdG8gMTAuMC4wLjU="},
    };
    for (const auto& [words, value] : cases) EXPECT_EQ(status_value::failure(words), value);
}

TEST(SinceMarker, IsTheTextFromTheFirstMarkerOn) {
    using Words = std::optional<std::string_view>;
    EXPECT_EQ(since_marker("old [1]start to connect...\nnew", "[1]start to connect..."),
              Words("[1]start to connect...\nnew"));
    EXPECT_EQ(since_marker("a [1] b [1] c", "[1]"), Words("[1] b [1] c"));
    EXPECT_EQ(since_marker("a b", "[1]"), std::nullopt);
    EXPECT_EQ(since_marker("", "[1]"), std::nullopt);
    EXPECT_EQ(since_marker("a b", ""), Words("a b")); // no marker was ever stored
    EXPECT_EQ(since_marker("", ""), Words(""));
}

TEST(RdpVerdict, NamesTheFirstPhraseOfTheTableFromItsFirstOccurrenceOn) {
    const auto verdict = [](const std::string& words) {
        return rdp_verdict(words, RdpForm::current).value_or("nothing");
    };
    expect_table(phrases_of(RdpForm::current), verdict);
    EXPECT_EQ(verdict("Authentication failure, later unable to connect to 10.0.0.5"),
              status_value::failure("unable to connect to 10.0.0.5"));
    EXPECT_EQ(std::size(rdp_failures), std::size(rdp_phrases));
}

TEST(RdpVerdict, OfTheEarlierFormLacksThreePhrases) {
    const auto verdict = [](const std::string& words) {
        return rdp_verdict(words, RdpForm::earlier).value_or("nothing");
    };
    expect_table(phrases_of(RdpForm::earlier), verdict);
    EXPECT_EQ(phrases_of(RdpForm::earlier).size(), 14U);
    for (const auto& [phrase, in_earlier_form] : rdp_phrases) {
        if (!in_earlier_form) {
            EXPECT_EQ(verdict(phrase), "nothing");
        }
    }
}

TEST(RdpVerdict, IsConnectedOncePicturesArePlayed) {
    for (const RdpForm form : {RdpForm::current, RdpForm::earlier}) {
        EXPECT_EQ(rdp_verdict("a xf_player_thread : b", form), "1");
        EXPECT_EQ(rdp_verdict("xf_player_thread: b", form), std::nullopt);
        EXPECT_EQ(rdp_verdict("xf_player_thread : b, then An error occurred.", form),
                  status_value::failure("An error occurred."));
        EXPECT_EQ(rdp_verdict("", form), std::nullopt);
        EXPECT_EQ(rdp_verdict("UNABLE TO CONNECT TO", form), std::nullopt);
    }
}

TEST(SpiceVerdict, NamesTheFirstPhraseOfTheTable) {
    expect_table(spice_phrases, spice_verdict);
    EXPECT_EQ(std::size(spice_failures), std::size(spice_phrases));
}

TEST(SpiceVerdict, IsConnectedOnceTheMainChannelIsOpen) {
    EXPECT_EQ(spice_verdict("(remote-viewer:1): main channel: opened\n"), "1");
    EXPECT_EQ(spice_verdict("main channel: open"), "0");
    EXPECT_EQ(spice_verdict(""), "0");
    EXPECT_EQ(spice_verdict("main channel: opened\nout of service"),
              status_value::failure("out of service"));
}

TEST(VncVerdict, NamesTheFirstPhraseOfTheTable) {
    expect_table(vnc_phrases, vnc_verdict);
    EXPECT_EQ(std::size(vnc_failures), std::size(vnc_phrases));
}

TEST(VncVerdict, IsConnectedOnceTheServerAnswered) {
    EXPECT_EQ(vnc_verdict("Connected to RFB server, using protocol version 3.8\n"), "1");
    EXPECT_EQ(vnc_verdict("Connected to host"), "0");
    EXPECT_EQ(vnc_verdict(""), "0");
}

TEST(CountedPoll, TheSeventhPollAndEverySixthAfterItIsConnected) {
    int counter = 0;
    Texts values;
    for (int poll = 1; poll <= 20; ++poll) values.push_back(counted_poll("0", true, counter));
    EXPECT_EQ(values, (Texts{"0", "0", "0", "0", "0", "0", "1", "0", "0", "0",
                             "0", "0", "1", "0", "0", "0", "0", "0", "1", "0"}));
    EXPECT_EQ(counter, 2);
}

TEST(CountedPoll, OverridesAFailureToo) {
    int counter = 6;
    EXPECT_EQ(counted_poll("ZmFpbHVyZQ==", true, counter), "1");
    EXPECT_EQ(counter, 1);
    EXPECT_EQ(counted_poll("ZmFpbHVyZQ==", true, counter), "ZmFpbHVyZQ==");
    EXPECT_EQ(counter, 2);
}

TEST(CountedPoll, DoesNotCountWhileNoClientRuns) {
    for (int start = 0; start <= 6; ++start) {
        int counter = start;
        EXPECT_EQ(counted_poll("0", false, counter), "0");
        EXPECT_EQ(counter, start);
    }
}

} // namespace qvtc::clients
