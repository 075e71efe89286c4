#include "desktop.hpp"
#include "records.hpp"
#include "support/support.hpp"

#include <cstdlib>
#include <fcntl.h>
#include <qvtcapi/qvtcapi.h>
#include <stdexcept>
#include <unistd.h>

namespace qvtc::test {
namespace {

class Cancel : public Journey {
  protected:
    /// Launches a session and waits for its window.
    unsigned connect() {
        start_remote_desktop();
        const unsigned id =
            store_record({{"name", "desk"}, {"serverAddress", "127.0.0.1"}, {"colorDepth", "32"}});
        EXPECT_EQ(qvlaunchclient(id), 0);
        EXPECT_TRUE(wait_for_colour(20, 20, remote_ground));
        return id;
    }
};

/// A controlling terminal for this process and what it starts. The other end stays open, as
/// closing it would hang up on all of them.
void get_controlling_terminal() {
    const int other_end = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (setsid() < 0 || other_end < 0 || grantpt(other_end) != 0 || unlockpt(other_end) != 0 ||
        open(ptsname(other_end), O_RDWR | O_CLOEXEC) < 0) { // the first one that a session opens
        throw std::runtime_error("no controlling terminal");
    }
}

TEST_F(Cancel, EndsTheClient) {
    get_controlling_terminal();
    const unsigned id = connect();

    EXPECT_EQ(qvcancelconnect(), 0);

    EXPECT_TRUE(wait_until([] { return !runs("xfreerdp"); }));
    EXPECT_EQ(client_windows(), std::vector<std::string>{});
    EXPECT_NE(client_words().find("Caught signal 'Terminated' [15]"), std::string::npos);
    EXPECT_EQ(status_of(id), status_unknown()) << client_words();
    EXPECT_EQ(log_lines().back(), "[INFO] end cancelconnect");
}

// Deliberate: the list of processes that is searched holds those with a terminal only.
TEST_F(Cancel, DeliberatelyMissesAClientWithoutATerminal) {
    if (setsid() < 0) throw std::runtime_error("still in the session of who runs the tests");
    const unsigned id = connect();

    EXPECT_EQ(qvcancelconnect(), 0);

    EXPECT_EQ(log_lines().back(), "[INFO] end cancelconnect");
    EXPECT_EQ(status_of(id), "0");
    EXPECT_TRUE(runs("xfreerdp"));
}

TEST_F(Cancel, WithoutAClientIsNoFailure) {
    EXPECT_EQ(qvcancelconnect(), 0);
    EXPECT_EQ(log_lines(), (std::vector<std::string>{"[INFO] end cancelconnect"}));
}

} // namespace
} // namespace qvtc::test
