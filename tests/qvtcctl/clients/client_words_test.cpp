#include "qvtcctl/clients/client_words.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

const ConnectionType& spice = *find_type("spice");
const ConnectionType& vnc = *find_type("vnc");
const ConnectionType& web = *find_type("web");

Record with_address(const std::string& address) {
    Record record;
    record[field_index("serverAddress")] = address;
    return record;
}

constexpr const char* banner = "\nTigerVNC Viewer 64-bit v1.12.0\n";

TEST(QvtcctlClientWords, AVncViewerTellsHowItsConnectionStands) {
    struct Case {
        std::string words;
        Said said;
    };
    const Case cases[] = {
        {"", Said::nothing},
        {"words of another viewer\n", Said::nothing},
        {"", Said::connecting},
        {" CConn:       Connected to host 127.0.0.1 port 5917\n", Said::connecting},
        {" CConnection: Choosing security type None(1)\n", Said::connecting},
        {" CConnection: Choosing security type VncAuth(2)\n", Said::asking},
        {" CConnection: Choosing security type VeNCrypt(19)\n", Said::connecting},
        {" CVeNCrypt:   Choosing security type TLSNone (257)\n", Said::connecting},
        {" CVeNCrypt:   Choosing security type TLSVnc (258)\n", Said::asking},
        {" CVeNCrypt:   Choosing security type TLSPlain (259)\n", Said::asking},
        {" CVeNCrypt:   Choosing security type X509Vnc (261)\n", Said::asking},
        {" CVeNCrypt:   Choosing security type X509Plain (262)\n", Said::asking},
        {" CVeNCrypt:   Choosing security type Plain (256)\n", Said::asking},
        {" Choosing security type TLSVnc (258)\n Using pixel format depth 24\n", Said::connected},
        {" CConn:       unable to connect to socket: Connection refused (111)\n", Said::failed},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const std::string words = i < 2 ? cases[i].words : banner + cases[i].words;
        EXPECT_EQ(said_in(vnc, words, false), cases[i].said) << words;
    }
}

TEST(QvtcctlClientWords, ASpiceViewerTalksWhenItHeedsTheRequest) {
    EXPECT_EQ(said_in(spice, "anything\n", true), Said::nothing);
    EXPECT_EQ(said_in(spice, "virt-viewer-DEBUG: Opening display\n", true), Said::connecting);
    EXPECT_EQ(said_in(spice, "virt-viewer-DEBUG: main channel: opened\n", true), Said::connected);
}

TEST(QvtcctlClientWords, AClientsEnvironmentShowsWhetherItWasAskedToTalk) {
    const Process asked{1, {}, {"A=1", "MOZ_LOG=BCWebProgress:3"}};
    const Process also_asked{1, {}, {"MOZ_LOG=timestamp,BCWebProgress:3"}};
    const Process not_asked{1, {}, {"XMOZ_LOG=BCWebProgress:3", "MOZ_LOG=nsHttp:5"}};
    EXPECT_TRUE(asked_to_talk(web, {not_asked, asked}));
    EXPECT_TRUE(asked_to_talk(web, {also_asked}));
    EXPECT_FALSE(asked_to_talk(web, {not_asked}));
    EXPECT_FALSE(asked_to_talk(web, {}));
    EXPECT_FALSE(asked_to_talk(vnc, {asked}));
}

TEST(QvtcctlClientWords, WordsOfAnotherClientDoNotCount) {
    EXPECT_EQ(
        without_words_of({{12, {}, {}}}, "(remote-viewer:12): a\n(remote-viewer:112): b\nc\n"),
        "(remote-viewer:112): b\nc\n");
}

// ------------------------------------------------------------------ the browser

/// A line of the browser's report: what happened in a tab, and to which address.
std::string event(const std::string& tab, const std::string& what, const std::string& address,
                  const std::string& result) {
    return "[Parent 23: Main Thread]: I/BCWebProgress " + what +
           "({isTopLevel:1, isLoadingDocument:1}, {URI:" + address + ", originalURI:" + address +
           "}, " + result + ") on {top:1, id:" + tab + ", url:about:blank}\n";
}
std::string opens(const std::string& tab, const std::string& address) {
    return event(tab, "OnStateChange", address,
                 "STATE_START|STATE_IS_REQUEST|STATE_IS_DOCUMENT|STATE_IS_NETWORK|STATE_IS_WINDOW, "
                 "NS_OK");
}
std::string stops(const std::string& tab, const std::string& address, const std::string& result) {
    return event(tab, "OnStateChange", address,
                 "STATE_STOP|STATE_IS_NETWORK|STATE_IS_WINDOW, " + result);
}
std::string shows(const std::string& tab, const std::string& address, const std::string& flags) {
    return event(tab, "OnLocationChange", address, address + ", " + flags);
}
std::string blank(const std::string& tab) {
    return "[Parent 23: Main Thread]: I/BCWebProgress OnLocationChange({isTopLevel:1, "
           "isLoadingDocument:0}, <null>, about:blank, 0) on {top:1, id:" +
           tab + ", url:about:blank}\n";
}

constexpr const char* page = "http://10.0.0.9:8080/index.html";

Said said_of_page(const std::string& address, const std::string& log) {
    return said_in(web, words_about(web, with_address(address), log), true);
}

TEST(QvtcctlClientWords, ABrowserTellsWhatBecameOfThePageAndNotOfOthers) {
    const std::string foreign = "https://www.mozilla.org/privacy/";
    const std::string start = blank("3") + blank("a") + opens("a", page) + opens("b", foreign);
    EXPECT_EQ(said_of_page(page, ""), Said::connecting);
    EXPECT_EQ(said_of_page(page, start), Said::connecting);
    EXPECT_EQ(said_of_page(page, start + stops("b", foreign, "NS_ERROR_UNKNOWN_HOST") +
                                     shows("b", foreign, "LOCATION_CHANGE_ERROR_PAGE")),
              Said::connecting);
    EXPECT_EQ(said_of_page(page, start + shows("a", page, "0")), Said::connected);
    EXPECT_EQ(said_of_page(page, start + stops("a", page, "NS_ERROR_CONNECTION_REFUSED")),
              Said::connecting);
    const std::string failed = start + stops("a", page, "NS_ERROR_CONNECTION_REFUSED") +
                               shows("a", page, "LOCATION_CHANGE_ERROR_PAGE");
    EXPECT_EQ(said_of_page(page, failed), Said::failed);
    EXPECT_EQ(said_of_page(page, failed + shows("a", page, "0")), Said::connected);
    EXPECT_EQ(said_of_page(page, failed + opens("c", page)), Said::connecting);
}

TEST(QvtcctlClientWords, ABrowsersPageIsFoundByItsHost) {
    const auto is_found = [](const std::string& address, const std::string& opened) {
        return said_of_page(address, opens("1", opened) + shows("1", opened, "0")) ==
               Said::connected;
    };
    EXPECT_TRUE(is_found("intranet", "http://intranet/"));
    EXPECT_TRUE(is_found("http://Intranet/x", "https://intranet/x"));
    EXPECT_TRUE(is_found("http://[::1]:80/", "http://[::1]/"));
    EXPECT_TRUE(is_found("http://a@intranet/", "http://a@intranet/"));
    EXPECT_TRUE(is_found("http://b\xc3\xbcro/", "http://xn--bro-hoa/"));
    EXPECT_FALSE(is_found("http://intranet/", "http://intranet2/"));
    EXPECT_FALSE(is_found("http://intranet/", "http://other/intranet/"));
}

TEST(QvtcctlClientWords, ABrowsersReportIsToldFromOthers) {
    const std::string mine = opens("1", page);
    const std::string others = "[Parent 123: Main Thread]: I/BCWebProgress x\nno report\n";
    EXPECT_EQ(report_of({{5, {}, {}}, {23, {}, {}}}, others + mine + others), mine);
    EXPECT_EQ(report_of({}, mine), "");
}

TEST(QvtcctlClientWords, APageThatNoServerHasIsJudgedByItsWindow) {
    const std::string log = opens("1", "http://other/");
    EXPECT_EQ(words_about(web, with_address("file:///srv/start.html"), log), log);
    EXPECT_EQ(said_in(web, log, false), Said::nothing);
}

} // namespace
} // namespace qvtc::qvtcctl
