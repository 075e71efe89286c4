#include "system/update.hpp"

#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::system {

namespace {

using Texts = std::vector<std::string>;

constexpr const char* package = "/tmp/nfs/update.qvtc";
constexpr const char* count_of_scripts = "ps -ef|grep qvupdate.sh|grep -v grep |wc -l";

void put_script(const std::string& text) {
    test::write_file("/tmp/nfs/qvupdate.sh", "#!/bin/sh\n" + text);
    std::filesystem::permissions("/tmp/nfs/qvupdate.sh", std::filesystem::perms::owner_all);
}

} // namespace

TEST(UpdateDownload, TakesTheFormerPackageAwayAndFetchesTheNewOne) {
    test::write_file(package, "former");
    test::StandIn wget("wget");
    wget.runs("mkdir -p /tmp/nfs; echo new >/tmp/nfs/update.qvtc");
    EXPECT_TRUE(download_update("http://127.0.0.1/a/update.qvtc"));
    EXPECT_EQ(test::recorded_commands(),
              (Texts{"rm -rf /tmp/nfs/update.qvtc",
                     "wget -c http://127.0.0.1/a/update.qvtc -P /tmp/nfs/"}));
    EXPECT_EQ(wget.calls(),
              (test::StandIn::Calls{{"-c", "http://127.0.0.1/a/update.qvtc", "-P", "/tmp/nfs/"}}));
    EXPECT_EQ(test::read_file(package), "new\n");
    EXPECT_TRUE(test::log_lines().empty());
}

TEST(UpdateDownload, WithoutAUrlOnlyTakesTheFormerPackageAway) {
    test::write_file(package, "former");
    EXPECT_FALSE(download_update(""));
    EXPECT_EQ(test::recorded_commands(), Texts{"rm -rf /tmp/nfs/update.qvtc"});
    EXPECT_FALSE(test::file_exists(package));
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] url error!"});
}

TEST(UpdateDownload, AFileOfAnotherNameIsNoPackage) {
    test::StandIn wget("wget");
    wget.runs("mkdir -p /tmp/nfs; echo new >/tmp/nfs/other.qvtc");
    EXPECT_FALSE(download_update("http://127.0.0.1/other.qvtc"));
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] download update file failed."});
}

TEST(UpdateDownload, AUrlIsOneWordAndNoOption) {
    test::StandIn wget("wget");
    for (const std::string url :
         {"http://h/update.qvtc?a=1&b=2", "http://h/$(touch /tmp/owned)", "two words",
          "http://h/a;touch /tmp/owned", "http://h/'q'", "`touch /tmp/owned`", "a\nb"}) {
        wget.forget_calls();
        EXPECT_FALSE(download_update(url));
        EXPECT_EQ(wget.calls(), (test::StandIn::Calls{{"-c", url, "-P", "/tmp/nfs/"}}));
        EXPECT_FALSE(test::file_exists("/tmp/owned")) << url;
    }
    wget.forget_calls();
    EXPECT_FALSE(download_update("--post-file=/etc/passwd"));
    EXPECT_TRUE(wget.calls().empty());
}

TEST(UpdateScript, RunsInItsDirectory) {
    put_script("pwd >/tmp/ran\n");
    run_update_script();
    EXPECT_EQ(test::recorded_commands(), Texts{"cd /tmp/nfs/;./qvupdate.sh"});
    EXPECT_EQ(test::read_file("/tmp/ran"), "/tmp/nfs\n");
    EXPECT_EQ(test::read_file("/home/root/system.log").substr(20),
              "[INFO] doupdate update done\n\n");
}

TEST(UpdateScript, OneProcessDoesNotCountAsRunning) {
    const std::pair<const char*, bool> cases[] = {{"", false},    {"0\n", false}, {"1\n", false},
                                                  {"2\n", true},  {"12\n", true}, {"x\n", false},
                                                  {"-3\n", false}};
    for (const auto& [printed, running] : cases) {
        test::ScriptedOs os;
        os.outputs = {printed};
        EXPECT_EQ(update_is_running(), running) << printed;
        EXPECT_EQ(os.record, Texts{std::string("capture 1024 ") + count_of_scripts});
    }
}

TEST(UpdateScript, IsSeenWhileItRuns) {
    put_script("touch /tmp/running\nuntil [ -f /tmp/go ]; do sleep 0.05; done\n");
    ASSERT_FALSE(update_is_running());
    ASSERT_EQ(std::system("cd /tmp/nfs/;sh -c './qvupdate.sh; true' &"), 0);
    EXPECT_TRUE(test::wait_until([] { return test::file_exists("/tmp/running"); }));
    EXPECT_TRUE(update_is_running());
    test::write_file("/tmp/go", "");
    EXPECT_TRUE(test::wait_until([] { return !update_is_running(); }));
}

TEST(Update, WaitsForWhatTheScriptLeftRunning) {
    test::ScriptedOs os;
    os.outputs = {"3\n", "2\n", "1\n"};
    update();
    const std::string ask = std::string("capture 1024 ") + count_of_scripts;
    EXPECT_EQ(os.record,
              (Texts{"run cd /tmp/nfs/; ./qvupdate.sh", ask, "sleep 1", ask, "sleep 1", ask}));
}

} // namespace qvtc::system
