#include "system/date_time.hpp"

#include "core/log.hpp"
#include "core/text.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::system {

namespace {

using Texts = std::vector<std::string>;

std::string shown() {
    return json_object_to_json_string_ext(date_time().get(), JSON_C_TO_STRING_PLAIN);
}

void store(const std::string& params) { store::store_setting(store::keys::date_and_time, params); }

std::string stored() { return store::setting(store::keys::date_and_time); }

std::string configuration_for(const std::string& host) {
    return "# Configuration script used by ntpdate-sync script\n"
           "\n"
           "NTPSERVERS=\"" +
           host +
           "\"\n"
           "\n"
           "# Set to \"yes\" to write time to hardware clock on success\n"
           "UPDATE_HWCLOCK=\"no\"\n"
           "\n";
}

std::string configuration() { return test::read_file("/etc/default/ntpdate"); }

const Texts zone_of_tokyo = {"rm -rf /etc/localtime",
                             "ln -s /usr/share/zoneinfo/posix/Asia/Tokyo /etc/localtime",
                             "echo 'Asia/Tokyo'>/etc/timezone"};
const Texts zone_utc = {"rm -rf /etc/localtime",
                        "ln -s /usr/share/zoneinfo/posix/Etc/UTC /etc/localtime",
                        "echo 'Etc/UTC'>/etc/timezone"};
const Texts clocks = {"hwclock --systohc", "clock -w"};

Texts operator+(Texts texts, const Texts& more) {
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

/// With programs that would touch clocks.
class DateTime : public testing::Test {
  protected:
    test::StandIn date_{"date"};
    test::StandIn hwclock_{"hwclock"};
    test::StandIn clock_{"clock"};
    test::StandIn synchronise_{"ntpdate-sync"};
};

} // namespace

TEST_F(DateTime, FollowsAServer) {
    set_date_time("useNTP=on&ntpHost=pool.example&region=Asia&city=Tokyo&systemTime=12:00");
    EXPECT_EQ(test::recorded_commands(), zone_of_tokyo + Texts{"ntpdate-sync>/dev/null &"});
    EXPECT_EQ(configuration(), configuration_for("pool.example"));
    EXPECT_EQ(test::read_file("/etc/timezone"), "Asia/Tokyo\n");
    EXPECT_EQ(std::filesystem::read_symlink("/etc/localtime"),
              "/usr/share/zoneinfo/posix/Asia/Tokyo");
    EXPECT_EQ(stored(), "useNTP=on&ntpHost=pool.example&region=Asia&city=Tokyo&systemTime=12:00");
    EXPECT_EQ(test::log_lines(),
              Texts{"[INFO] time:useNTP=on&ntpHost=pool.example&region=Asia&city=Tokyo&"
                    "systemTime=12:00"});
}

TEST_F(DateTime, SetsATimeByHandBeforeAndAfterTheZone) {
    set_date_time("useNTP=off&systemTime=2026-11-21 12:00:00&region=Asia&city=Tokyo");
    const Texts set = {"date -s \"2026-11-21 12:00:00\""};
    EXPECT_EQ(test::recorded_commands(), set + zone_of_tokyo + set + clocks);
    EXPECT_EQ(date_.calls(),
              (test::StandIn::Calls{{"-s", "2026-11-21 12:00:00"}, {"-s", "2026-11-21 12:00:00"}}));
    EXPECT_EQ(configuration(), configuration_for(""));
}

TEST_F(DateTime, AServerWithoutANameIsATimeByHandWithoutATime) {
    set_date_time("useNTP=on&ntpHost=&systemTime=12:00&region=Asia&city=Tokyo");
    EXPECT_EQ(test::recorded_commands(), zone_of_tokyo + clocks);
    EXPECT_EQ(configuration(), configuration_for(""));
}

TEST_F(DateTime, OnlyExactlyOnFollowsAServer) {
    set_date_time("useNTP=On&ntpHost=pool.example");
    EXPECT_EQ(test::recorded_commands(), zone_utc + clocks);
    EXPECT_EQ(configuration(), configuration_for(""));
}

TEST_F(DateTime, AZoneIsWholeOrUtc) {
    for (const char* const params :
         {"region=Asia", "city=Tokyo", "region=&city=Tokyo", "x=1", ""}) {
        test::forget_commands();
        set_date_time(params);
        EXPECT_EQ(test::recorded_commands(), zone_utc + clocks) << params;
        EXPECT_EQ(stored(), params);
    }
}

TEST_F(DateTime, TheLogIsInTheNewZoneFromThenOn) {
    unsetenv("TZ");
    for (const auto& [zone, hours] : {std::pair{"region=Asia&city=Tokyo", 9}, {"x=1", 0}}) {
        set_date_time(zone);
        log(Level::info, "afterwards");
        const std::string line = test::lines_of(test::read_file("/home/root/system.log")).back();
        std::tm stamp{};
        ASSERT_NE(strptime(line.c_str(), "%Y-%m-%d %H:%M:%S", &stamp), nullptr);
        constexpr int a_minute = 60;
        EXPECT_NEAR(std::difftime(timegm(&stamp), std::time(nullptr)), hours * 3600, a_minute)
            << line;
    }
}

TEST_F(DateTime, TheServerIsWrittenAsOneLine) {
    for (const char* const host : {"pool.example\n", "pool.example ", "pool.example\r\n"}) {
        set_date_time(std::string("useNTP=on&ntpHost=") + host);
        EXPECT_EQ(configuration(), configuration_for("pool.example"));
    }
    set_date_time("useNTP=on&ntpHost=one\ntwo\n");
    EXPECT_EQ(configuration(), configuration_for("one two"));
}

TEST_F(DateTime, NoValueIsACommand) {
    for (const std::string value :
         {"$(touch /tmp/owned)", "`touch /tmp/owned`", "';touch /tmp/owned;'",
          "\";touch /tmp/owned;\"", "a b;touch /tmp/owned", "a>/tmp/owned", "a\\",
          "a\ntouch /tmp/owned\n"}) {
        date_.forget_calls();
        set_date_time("systemTime=" + value + "&region=" + value + "&city=" + value);
        EXPECT_EQ(date_.calls(), (test::StandIn::Calls{{"-s", value}, {"-s", value}}));
        EXPECT_EQ(test::read_file("/etc/timezone"), value + "/" + value + "\n");
        EXPECT_EQ(std::filesystem::read_symlink("/etc/localtime"),
                  "/usr/share/zoneinfo/posix/" + value + "/" + value);

        set_date_time("useNTP=on&ntpHost=" + value);
        EXPECT_EQ(test::capture_stdout([] {
                      EXPECT_EQ(
                          std::system("sh -c '. /etc/default/ntpdate; printf %s \"$NTPSERVERS\"'"),
                          0);
                  }),
                  one_line(value));
        EXPECT_FALSE(test::file_exists("/tmp/owned")) << value;
    }
}

TEST_F(DateTime, TakesParametersOfAnyLength) {
    for (const std::size_t length : {10239U, 10240U, 100000U}) {
        const std::string params = "region=Asia&city=Tokyo&x=" + std::string(length - 25, 'x');
        ASSERT_EQ(params.size(), length);
        test::forget_commands();
        set_date_time(params);
        EXPECT_EQ(test::recorded_commands(), zone_of_tokyo + clocks);
        EXPECT_EQ(stored(), params);
        EXPECT_NE(date_time(), nullptr);
    }
}

TEST(DateTimeReading, HasDefaultsWhenNothingWasEverSet) {
    test::ScriptedOs os;
    os.outputs = {"1700000000\n"};
    EXPECT_EQ(shown(), R"({"systemTime":"1700000000000","useNTP":"","ntpHost":"",)"
                       R"("region":"Etc","city":"UTC"})");
    EXPECT_EQ(os.record, Texts{"capture 256 date +%s"});
    EXPECT_EQ(test::log_lines(),
              Texts{R"([INFO] systemtime:{ "systemTime": "1700000000000", "useNTP": "", )"
                    R"("ntpHost": "", "region": "Etc", "city": "UTC" })"});
}

TEST(DateTimeReading, BringsTheClockUpToDateWheneverASwitchIsStored) {
    for (const char* const value : {"on", "off", "12"}) {
        store(std::string("useNTP=") + value + "&ntpHost=h&region=Asia&city=Tokyo");
        test::ScriptedOs os;
        os.outputs = {"1700000000\n"};
        EXPECT_EQ(shown(), std::string(R"({"systemTime":"1700000000000","useNTP":")") + value +
                               R"(","ntpHost":"h","region":"Asia","city":"Tokyo"})");
        EXPECT_EQ(os.record, (Texts{"capture 256 date +%s", "run ntpdate-sync>/dev/null &"}));
    }
}

TEST(DateTimeReading, ReportsOffWithoutASwitch) {
    for (const char* const params : {"ntpHost=h", "useNTP=&ntpHost=h", "useNTP=1&ntpHost=h"}) {
        store(params);
        test::ScriptedOs os;
        os.outputs = {"1\n"};
        EXPECT_EQ(shown(), R"({"systemTime":"1000","useNTP":"off","ntpHost":"h",)"
                           R"("region":"Etc","city":"UTC"})");
        EXPECT_EQ(os.record, Texts{"capture 256 date +%s"});
    }
}

TEST(DateTimeReading, AQuoteDoesNotHideTheResult) {
    store("ntpHost=a'b\"c");
    test::ScriptedOs os;
    os.outputs = {"1\n"};
    EXPECT_STREQ(json_object_get_string(json_object_object_get(date_time().get(), "ntpHost")),
                 "a'b\"c");
}

TEST(DateTimeReading, SurvivesAClockThatSaysNothing) {
    test::ScriptedOs os;
    EXPECT_STREQ(json_object_get_string(json_object_object_get(date_time().get(), "systemTime")),
                 "000");
}

} // namespace qvtc::system
