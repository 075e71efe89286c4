#include "clients/launch.hpp"

#include "connections/documents.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace qvtc::clients {

namespace {

class Launch : public test::FreshTerminal {};
class RdpClientRun : public test::FreshTerminal {};
class Cancel : public test::FreshTerminal {};
class CommandRunner : public test::FreshTerminal {};

using Texts = std::vector<std::string>;

constexpr const char* process_query =
    "lines ps -au |grep '[^--color=auto]xfreerdp' |awk '{print$2}'";
constexpr const char* status_file = "/usr/local/vpclient/config/clientstatus";

/// The first word of the client that was started, behind the environment it is given.
std::string started_client(const test::ScriptedOs& system) {
    if (system.record.size() < 2 || system.record.back() != "thread") return "";
    std::string command = system.record[system.record.size() - 2].substr(4);
    if (const auto view = command.find("vmware-view"); view != std::string::npos)
        command.erase(0, view);
    return command.substr(0, command.find(' '));
}

/// Leaves this process so many descriptors to open, as long as it lives.
class FewDescriptors {
  public:
    explicit FewDescriptors(int left) {
        getrlimit(RLIMIT_NOFILE, &former_);
        rlimit limit = former_;
        limit.rlim_cur = static_cast<rlim_t>(first_free() + left);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &former_); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

  private:
    static int first_free() {
        const int descriptor = dup(0);
        close(descriptor);
        return descriptor;
    }
    rlimit former_{};
};

} // namespace

// --- Dispatch --------------------------------------------------------------------------------

TEST_F(Launch, EveryBlockOfIdsHasItsClientFromItsFirstToItsLast) {
    struct Case {
        connections::ConnectionId id;
        const char* client; ///< empty: none
    };
    const Case cases[] = {
        {0, ""},
        {31, ""},
        {32, "xfreerdp"},
        {63, "xfreerdp"},
        {64, "remote-viewer"},
        {95, "remote-viewer"},
        {96, ""},
        {100, ""},
        {127, ""},
        {128, ""},
        {159, ""},
        {160, "vmware-view"},
        {191, "vmware-view"},
        {192, ""},
        {223, ""},
        {224, "vncviewer"},
        {255, "vncviewer"},
        {256, ""},
        {287, ""},
        {288, "firefox"},
        {319, "firefox"},
        {320, ""},
        {383, ""},
        {384, ""},
        {2147483648U, ""},
        {4294967295U, ""},
    };
    for (const Case& each : cases) {
        test::write_file("/home/root/system.log", "");
        const bool has_client = *each.client != '\0';
        test::ScriptedOs system;
        EXPECT_EQ(launch(each.id), has_client) << each.id;
        EXPECT_EQ(started_client(system), each.client) << each.id;
        const Texts lines = test::log_lines();
        ASSERT_FALSE(lines.empty());
        EXPECT_EQ(lines[0],
                  "[INFO] @launchclient id = " + std::to_string(static_cast<int>(each.id)));
        if (has_client) continue;
        EXPECT_EQ(system.record, Texts{}) << each.id;
        EXPECT_EQ(lines, (Texts{lines[0], "[ERROR] without the id, id error"}));
    }
}

TEST_F(Launch, ReadsTheRecordOfTheId) {
    test::store_items({test::record_item("firefox_id_319", {{"serverAddress", "http://last/"}})});
    test::ScriptedOs system;
    EXPECT_TRUE(launch(319));
    EXPECT_EQ(system.record.at(2), "run firefox http://last/ >>/home/root/firefox.log 2>&1 &");
}

TEST_F(Launch, SucceedsWhateverTheLauncherSays) {
    test::store_items({test::record_item("rdpItem_id_32", {{"password", "abc"}}),
                       test::record_item("vmwareItem_id_160", {{"password", "abc"}})});
    test::ScriptedOs system;
    system.has_threads = false;
    for (const connections::ConnectionId id : {32U, 33U, 64U, 160U, 161U, 224U, 288U}) {
        EXPECT_TRUE(launch(id)) << id;
    }
}

// --- Running an RDP client and waiting for it ------------------------------------------------

TEST_F(RdpClientRun, GivesTheArgumentsAsShellTextAndTheStatusBack) {
    test::ScriptedOs system;
    system.status = 0x8300;
    const std::string long_argument = "/v:" + std::string(1000, 'x');
    EXPECT_EQ(run_rdp_client("/v:'a b' /u:$USER ;true"), 0x8300);
    EXPECT_EQ(run_rdp_client(""), 0x8300);
    EXPECT_EQ(run_rdp_client(long_argument.c_str()), 0x8300);
    EXPECT_EQ(system.record, (Texts{"run xfreerdp /v:'a b' /u:$USER ;true", "run xfreerdp ",
                                    "run xfreerdp " + long_argument}));
    EXPECT_EQ(test::log_lines(), Texts{});
}

// --- Cancelling ------------------------------------------------------------------------------

TEST_F(Cancel, EndsEveryListedClient) {
    test::ScriptedOs system;
    system.printed_lines = {"123", "4567"};
    EXPECT_TRUE(cancel_rdp_clients());
    EXPECT_EQ(system.record, (Texts{process_query, "run kill 123", "run kill 4567"}));
    EXPECT_EQ(test::log_lines(),
              (Texts{"[INFO] pid:123", "[INFO] pid:4567", "[INFO] end cancelconnect"}));
}

TEST_F(Cancel, WithoutAClientOnlySaysThatItHasEnded) {
    test::ScriptedOs system;
    system.printed_lines = Texts{};
    EXPECT_TRUE(cancel_rdp_clients());
    EXPECT_EQ(system.record, Texts{process_query});
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] end cancelconnect"});
}

TEST_F(Cancel, WithoutAListOfProcessesFailsWithTheReason) {
    test::ScriptedOs system;
    system.lines_error = EMFILE;
    EXPECT_FALSE(cancel_rdp_clients());
    EXPECT_EQ(system.record, Texts{process_query});
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @cancelconnect popen error:Too many open files"});
}

// --- Running a command with the status file open ---------------------------------------------

TEST_F(CommandRunner, EmptiesTheStatusFileAndWaitsForTheCommand) {
    test::write_file(status_file, "0x00000000 connect success\n");
    EXPECT_EQ(run_with_status_file("cp /usr/local/vpclient/config/clientstatus /tmp/meanwhile; "
                                   "sleep 0.05; echo done >/tmp/done"),
              CommandRun::ended);
    EXPECT_EQ(test::read_file("/tmp/meanwhile"), "");
    EXPECT_EQ(test::read_file("/tmp/done"), "done\n");
    EXPECT_EQ(test::read_file(status_file), "");
    EXPECT_EQ(test::log_lines(), Texts{"[INFO] @launchclient_thread freerdp exit..."});
}

TEST_F(CommandRunner, GivesTheCommandATextAsItIs) {
    EXPECT_EQ(run_with_status_file("true '%s' \"$(true)\""), CommandRun::ended);
    EXPECT_EQ(test::recorded_command_details(),
              (std::vector<test::RecordedCommand>{{"true '%s' \"$(true)\"", true}}));
}

TEST_F(CommandRunner, RunsNothingWithoutAStatusFile) {
    std::filesystem::remove_all("/usr/local/vpclient/config");
    EXPECT_EQ(run_with_status_file("true"), CommandRun::no_status_file);
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] @launchclient fopen error"});
    std::filesystem::create_directories("/usr/local/vpclient/config");
}

TEST_F(CommandRunner, SaysThatTheCommandCouldNotBeStarted) {
    test::write_file(status_file, "before");
    {
        const FewDescriptors limit(2); // the file and the log, but no pipe
        EXPECT_EQ(run_with_status_file("true"), CommandRun::not_started);
    }
    EXPECT_EQ(test::recorded_commands(), Texts{});
    EXPECT_EQ(test::read_file(status_file), "");
    EXPECT_EQ(test::log_lines(), Texts{"[ERROR] xfreerdp popen error:"});
}

} // namespace qvtc::clients
