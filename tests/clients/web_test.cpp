#include "clients/web.hpp"

#include "clients/records.hpp"
#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::clients {

namespace {

class WebLaunch : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

} // namespace

TEST(WebCommandLine, IsTheBrowserAndTheAddress) {
    EXPECT_EQ(web_command_line({}), "firefox ");
    connections::Record record;
    for (std::string& value : record.values) value = "on";
    record[Field::serverAddress] = "http://10.0.0.9:8080/x";
    EXPECT_EQ(web_command_line(record), "firefox http://10.0.0.9:8080/x");
    EXPECT_EQ(web_command_line(record_of({{Field::serverAddress, "http://h/?a=1&b=2"}})),
              "firefox http://h/\\?a=1\\&b=2");
}

TEST_F(WebLaunch, RunsItsCommandsInOrder) {
    test::store_items({test::record_item("firefox_id_290",
                                         {{"id", "290"}, {"serverAddress", "http://10.0.0.9/"}})});
    test::ScriptedOs system;
    system.time = 1000;
    system.clock_step = 1;
    EXPECT_TRUE(launch_web(290));
    const std::string command = "firefox http://10.0.0.9/ >>/home/root/firefox.log 2>&1 &";
    EXPECT_EQ(system.record, (Texts{"run echo '[1000]start to connect...'>>/home/root/firefox.log",
                                    "run killall firefox", "run " + command, "thread"}));
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] firefox connection params:" + command});
    EXPECT_EQ(test::stored_setting("com.valmora.thinclient.para_10_0"),
              "[1001]start to connect...");

    system.record.clear();
    system.outputs = {"a window\n"};
    system.threads.at(0)();
    EXPECT_EQ(system.record.at(1), "capture 10240 DISPLAY=:0.0 xwininfo -root -tree |grep firefox");
    EXPECT_EQ(system.record.at(2), "run echo \"0x00000000 connect success\" > "
                                   "/usr/local/vpclient/config/clientstatus");
}

TEST_F(WebLaunch, OfAnAbsentRecordStartsTheClientAllTheSame) {
    test::ScriptedOs system;
    EXPECT_TRUE(launch_web(288));
    EXPECT_EQ(system.record.at(2), "run firefox  >>/home/root/firefox.log 2>&1 &");
}

TEST_F(WebLaunch, WithoutAThreadFailsWhenTheClientRuns) {
    test::ScriptedOs system;
    system.has_threads = false;
    EXPECT_FALSE(launch_web(288));
    EXPECT_EQ(system.record.size(), 4U);
    EXPECT_EQ(test::log_lines().back(), "[ERROR] @launchclient thread create fail");
}

} // namespace qvtc::clients
