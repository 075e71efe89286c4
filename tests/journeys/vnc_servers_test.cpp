// The real VNC viewer before servers of other makers, which are X servers too.
#include "desktop.hpp"
#include "faulty_server.hpp"
#include "records.hpp"
#include "servers.hpp"
#include "support/support.hpp"

#include <cstdlib>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::test {
namespace {

constexpr const char* password_file = "/tmp/password";

/// What "launch --wait" and then "status" say.
struct Told {
    Output launch;
    Output status;
};

class VncServer : public Journey {
  protected:
    explicit VncServer(std::string program) : program_(std::move(program)) {}

    void SetUp() override {
        QVTC_NEED_PROGRAM("vncviewer");
        QVTC_NEED_PROGRAM("vncpasswd");
        QVTC_NEED_PROGRAM(program_);
        Journey::SetUp();
        ASSERT_EQ(output_of(std::string("echo secret1 | vncpasswd -f >") + password_file).status,
                  0);
        store_record(QVTC_TYPE_VNC, {{"name", "lab"}, {"serverAddress", "127.0.0.1::5917"}});
    }

    /// Serves a screen at port 5917; options are shell text.
    void serve(const std::string& options) const {
        output_of("setsid " + program_ + " :17 -rfbport 5917 -localhost -desktop work " + options +
                  " >/tmp/vnc-server.log 2>&1 </dev/null &");
        const auto is_up = [] { return output_of("DISPLAY=:17 xset q 2>&1").status == 0; };
        ASSERT_TRUE(wait_until(is_up, patience)) << read_file("/tmp/vnc-server.log");
    }

    static Told launch(const std::string& options = "") {
        Told told;
        told.launch = output_of(QVTC_CONTROL " launch --wait 224 " + options + " 2>&1");
        told.status = output_of(QVTC_CONTROL " status 224");
        output_of(QVTC_CONTROL " cancel");
        return told;
    }

    static void expect_connected() {
        const Told told = launch();
        EXPECT_EQ(told.launch.status, 0) << told.launch.text;
        EXPECT_EQ(told.status.text, "Connection 224 (lab): connected\n");
    }

    static void expect_question() {
        const std::string asks = "the client asks for the password on the terminal's screen";
        const Told told = launch("--timeout 4");
        EXPECT_EQ(told.launch.status, 5);
        EXPECT_NE(told.launch.text.find("has no outcome after 4 s: " + asks + ".\n"),
                  std::string::npos)
            << told.launch.text;
        EXPECT_EQ(told.status.text, "Connection 224 (lab): " + asks + "\n");
    }

    static void expect_failure(const std::string& meaning) {
        const std::string line = "  What it means:   " + meaning + "\n";
        const Told told = launch();
        EXPECT_EQ(told.launch.status, 4);
        EXPECT_NE(told.launch.text.find("connection 224 (lab) failed.\n" + line), std::string::npos)
            << told.launch.text;
        EXPECT_TRUE(told.status.text.starts_with("Connection 224 (lab): failed\n" + line))
            << told.status.text;
    }

    /// The password that the viewer gives instead of asking for it.
    static void answer_with(const char* password) { setenv("VNC_PASSWORD", password, 1); }

  private:
    std::string program_;
};

class TigerVncServer : public VncServer {
  protected:
    TigerVncServer() : VncServer("Xtigervnc") {}
};

class TightVncServer : public VncServer {
  protected:
    TightVncServer() : VncServer("Xtightvnc") {}
};

TEST_F(TigerVncServer, WithItsUsualSecurityAsksForAPassword) {
    serve(std::string("-rfbauth ") + password_file);
    expect_question();
    EXPECT_NE(read_file("/home/root/vnc.log").find("Choosing security type TLSVnc"),
              std::string::npos);
}

// Longer than the library's watcher waits.
TEST_F(TigerVncServer, ThatIsSlowIsWaitedFor) {
    serve("-SecurityTypes None");
    const FaultyServer slow(relay_late("5917", std::chrono::seconds(11)));
    store_record(QVTC_TYPE_VNC, {{"name", "slow"}, {"serverAddress", "127.0.0.1::" + slow.port()}});
    const Output output = output_of(QVTC_CONTROL " launch --wait 225 2>&1");
    EXPECT_EQ(output.status, 0) << output.text;
    EXPECT_EQ(wait_for_verdict(), verdict_failed);
    output_of(QVTC_CONTROL " cancel");
}

TEST_F(TightVncServer, WithoutAPasswordIsConnectedAtOnce) {
    serve("");
    expect_connected();
}

TEST_F(TightVncServer, WithAPasswordAsksForItAndTellsOfAWrongOne) {
    serve(std::string("-rfbauth ") + password_file);
    expect_question();
    answer_with("secret1");
    expect_connected();
    answer_with("wrong");
    expect_failure("The server refused the password.");
}

// The viewer asks all the same, and no answer is right.
TEST_F(TightVncServer, WhosePasswordsFileIsMissingIsNotToldAsAWrongPassword) {
    serve("-rfbauth /tmp/missing");
    answer_with("secret1");
    expect_failure("The server cannot check passwords, because it has none of its own.");
}

TEST_F(TightVncServer, ThatHasHadEnoughOfWrongPasswordsIsNotToldAsOneMore) {
    serve(std::string("-rfbauth ") + password_file);
    answer_with("wrong");
    for (int attempts = 0; attempts < 5; ++attempts) launch();
    answer_with("secret1");
    expect_failure(
        "The server lets nobody in for a while, because there were too many wrong passwords.");
}

} // namespace
} // namespace qvtc::test
