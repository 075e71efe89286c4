#include "qvtcctl/clients/client_log.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using Lines = std::vector<std::string>;

const ConnectionType& rdp = *find_type("rdp");

TEST(QvtcctlClientLog, OnlyWhatFollowsTheLastStartCounts) {
    EXPECT_EQ(since_last_start("a\n[1]start to connect...\nb\n[22]start to connect...\nc\n"),
              "[22]start to connect...\nc\n");
    EXPECT_EQ(since_last_start("no start\n"), "no start\n");
    EXPECT_EQ(since_last_start("[1]start to connect...\na\n[2]start to connect...\n", 1),
              "[1]start to connect...\na\n[2]start to connect...\n");
    EXPECT_EQ(since_last_start("[1]start to connect...\na\n", 5), "[1]start to connect...\na\n");
    // VNC's log has no marks; its viewer begins with a banner.
    EXPECT_EQ(since_last_start("\nTigerVNC Viewer 64-bit v1.12.0\n refused\n"
                               "\nTigerVNC Viewer 64-bit v1.12.0\n connected\n"),
              "\nTigerVNC Viewer 64-bit v1.12.0\n connected\n");
    EXPECT_EQ(since_last_start(""), "");
}

TEST(QvtcctlClientLog, ReasonIsWhatABase64StatusHides) {
    EXPECT_EQ(reason_of("dW5rb3duIGVycm9yIQ=="), "unkown error!");
    EXPECT_EQ(reason_of("0"), "");
    EXPECT_EQ(reason_of("1"), "");
    EXPECT_EQ(reason_of(""), "");
    EXPECT_EQ(reason_of("not base64"), "");
}

constexpr std::string_view refused_log =
    "[1700000000]start to connect...\n"
    "[09:00:01:100] [11:12] [ERROR][com.freerdp.utils] - Caught signal 'Terminated' [15]\n"
    "[09:00:01:100] [11:12] [ERROR][com.freerdp.utils] - 0: libwinpr2.so.2(+0x562fe) [0x7fd2]\n"
    "\n"
    "[09:00:02:100] [21:22] [ERROR][com.freerdp.core.transport] - BIO_should_retry returned a "
    "system error 32: Broken pipe\n"
    "[09:00:02:100] [21:22] [ERROR][com.freerdp.core] - transport_write:freerdp_set_last_error_ex "
    "ERRCONNECT_CONNECT_TRANSPORT_FAILED [0x0002000D]\n"
    "[09:00:02:200] [21:22] [ERROR][com.freerdp.core.transport] - BIO_should_retry returned a "
    "system error 32: Broken pipe\n"
    "[09:00:02:200] [21:22] [ERROR][com.freerdp.core] - transport_write:freerdp_set_last_error_ex "
    "ERRCONNECT_CONNECT_TRANSPORT_FAILED [0x0002000D]\n"
    "[09:00:02:200] [21:22] [ERROR][com.freerdp.core] - freerdp_post_connect failed\n";

TEST(QvtcctlClientLog, AFailureIsToldWithItsLinesOnceAndWithoutTheOldClientsFarewell) {
    const Explanation told = explain(rdp, 33, refused_log, "unkown error!");
    EXPECT_TRUE(told.known);
    EXPECT_EQ(told.means, "Nothing answered at the server's port. Probably it is closed, or the "
                          "server is switched off.");
    EXPECT_EQ(told.advice, "Check serverAddress and its port, and that the server is switched on.");
    EXPECT_EQ(told.words, "ERRCONNECT_CONNECT_TRANSPORT_FAILED");
    EXPECT_EQ(told.log, "/home/root/freerdp.log");
    EXPECT_EQ(told.lines, (Lines{"[ERROR][com.freerdp.core.transport] - BIO_should_retry returned "
                                 "a system error 32: Broken pipe",
                                 "[ERROR][com.freerdp.core] - "
                                 "transport_write:freerdp_set_last_error_ex "
                                 "ERRCONNECT_CONNECT_TRANSPORT_FAILED [0x0002000D]"}));
}

TEST(QvtcctlClientLog, TheSameErrorAfterAHangUpMeansAnotherThing) {
    const Explanation told =
        explain(rdp, 33,
                "BIO_read returned a system error 0: Success\n"
                "transport_read_layer ERRCONNECT_CONNECT_TRANSPORT_FAILED [0x0002000D]\n",
                "");
    EXPECT_EQ(told.means, "The server hung up during the logon. Probably the user name or the "
                          "password is wrong.");
    EXPECT_EQ(told.advice, "Check both: \"qvtcctl connection set 33 username=NAME --password\".");
}

TEST(QvtcctlClientLog, TheClientsNameForItIsTheWholeWord) {
    EXPECT_EQ(explain(rdp, 33, "x ERRINFO_LICENSE_NO_LICENSE_SERVER (0x1)", "").words,
              "ERRINFO_LICENSE_NO_LICENSE_SERVER");
    EXPECT_EQ(explain(rdp, 33, "STATUS_ACCOUNT_LOCKED_OUT", "").words, "STATUS_ACCOUNT_LOCKED_OUT");
    EXPECT_EQ(explain(rdp, 33, "Failed at index 1 [/t:my]: Invalid sigil", "").words,
              "Invalid sigil");
    EXPECT_EQ(explain(*find_type("vnc"), 224, "Authentication failure: no", "").words,
              "Authentication failure");
}

TEST(QvtcctlClientLog, TheLibrarysReasonHelpsWhenTheLogDoesNot) {
    const Explanation told = explain(rdp, 33, "[1]start to connect...\n", "parameter error!");
    EXPECT_TRUE(told.known);
    EXPECT_EQ(told.means, "The connection has no usable serverAddress.");
    EXPECT_EQ(told.words, "");
    EXPECT_EQ(told.lines, Lines{});
}

TEST(QvtcctlClientLog, WhatIsUnknownIsShownFromItsEnd) {
    const Explanation told = explain(rdp, 33,
                                     "[1]start to connect...\none\ntwo\n\x1b[2Jthree\ntwo\nfour\n"
                                     "[09:00:01:100] [11:12] [ERROR][com.freerdp.utils] - Caught "
                                     "signal 'Terminated' [15]\n",
                                     "unkown error!");
    EXPECT_FALSE(told.known);
    EXPECT_EQ(told.means, "The client's log names no reason that is known here.");
    EXPECT_EQ(told.advice, "The last lines of the log may tell more.");
    EXPECT_EQ(told.words, "");
    EXPECT_EQ(told.log, "/home/root/freerdp.log");
    EXPECT_EQ(told.lines, (Lines{"two", "\\x1b[2Jthree", "four"}));
}

TEST(QvtcctlClientLog, SilenceIsSaidToBeSilence) {
    EXPECT_EQ(explain(rdp, 33, "[1]start to connect...\n", "").means,
              "The client wrote nothing that would name a reason.");
    EXPECT_EQ(explain(*find_type("horizon"), 160, "", "").means,
              "The Horizon client writes no log that would name a reason.");
}

TEST(QvtcctlClientLog, ThePasswordInAPagesAddressIsNotShown) {
    const Explanation told =
        explain(*find_type("web"), 288,
                "OnLocationChange({URI:http://anna:secret@h/}, LOCATION_CHANGE_ERROR_PAGE)\n", "");
    EXPECT_EQ(told.lines,
              std::vector<std::string>{
                  "OnLocationChange({URI:http://anna:***@h/}, LOCATION_CHANGE_ERROR_PAGE)"});
}

// A server that has none of the client's encryption ends it with the words of a logoff.
TEST(QvtcctlClientLog, ASessionThatHasNotBegunWasNotLoggedOff) {
    const Explanation told = explain(rdp, 33, "ERRINFO_LOGOFF_BY_USER (0x0000000C)\n", "");
    EXPECT_EQ(told.means, "The user logged off.");
    EXPECT_EQ(never_began(told).means, "The server ended the session before it began.");
    EXPECT_EQ(never_began(told).lines, told.lines);
    const Explanation other = explain(rdp, 33, "ERRINFO_OUT_OF_MEMORY\n", "");
    EXPECT_EQ(never_began(other).means, other.means);
}

TEST(QvtcctlClientLog, AClientThatEndsTellsWhetherItHadASession) {
    const std::string ended =
        "[ERROR][com.freerdp.core] - rdp_set_error_info:freerdp_set_last_error_ex "
        "ERRINFO_LOGOFF_BY_USER [0x0001000C]\n";
    const std::string told = "[INFO][com.freerdp.core] - ERRINFO_LOGOFF_BY_USER (0x0000000C)\n";
    const std::string picture =
        "[INFO][com.freerdp.gdi] - Local framebuffer format  PIXEL_FORMAT_BGRX32\n";
    EXPECT_EQ(had_session(ended + picture + told), true);
    EXPECT_EQ(had_session(ended + told), false);
    EXPECT_EQ(had_session(ended), std::nullopt);
}

TEST(QvtcctlClientLog, OnlyItsOwnClientsWordsNameAFailure) {
    struct Case {
        std::string_view type, log;
        bool names_one;
    };
    const Case cases[] = {
        {"vnc", "CConn: unable to connect to socket: Connection refused (111)", true},
        {"vnc", "CConn: Authentication failure: password check failed!", true},
        {"vnc", "Authentication failure\nConnected\nUsing pixel format depth 24", false},
        {"vnc", "Using pixel format depth 24\nunable to connect to socket", true},
        {"vnc", "", false},
        {"spice", "main channel: failed to connect Could not connect", true},
        {"spice", "main channel: auth failure (wrong username/password?)", true},
        {"spice", "main channel: auth failure\nmain channel: opened\n", false},
        // Of its desktop's bus, not of the connection.
        {"spice", "dconf-WARNING: Could not connect: Connection refused", false},
        {"web", "Failed to connect to the bus: Connection refused", false},
        {"horizon", "", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(names_failure(*find_type(c.type), c.log), c.names_one) << c.log;
    }
}

} // namespace
} // namespace qvtc::qvtcctl
