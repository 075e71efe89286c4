// Launches of browsers as their user sees them, with stand-ins for the browsers.
#include "clients_on_screen.hpp"
#include "support/support.hpp"
#include "transcript.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

using test::Screen;
using test::StandIn;
using test::Transcript;
using test::write_file;

/// Lines of the browser's report on its page.
std::string page_event(const std::string& what) {
    return "echo '[Parent 1: Main Thread]: I/BCWebProgress " + what +
           " on {top:1, id:3, url:about:blank}'\n";
}
const std::string page_state =
    "OnStateChange({isTopLevel:1, isLoadingDocument:1}, {URI:http://10.0.0.9/, "
    "originalURI:http://10.0.0.9/}, ";
const std::string page_location =
    "OnLocationChange({isTopLevel:1, isLoadingDocument:1}, {URI:http://10.0.0.9/, "
    "originalURI:http://10.0.0.9/}, http://10.0.0.9/, ";

TEST(QvtcctlTranscript, ABrowser) {
    StandIn client("firefox");
    client.runs("echo 'Error: cannot open display: :0'; exit 1");
    Transcript transcript;
    transcript.run("qvtcctl connection add web name=page serverAddress=http://10.0.0.9/");
    {
        const Screen screen;
        transcript.run("qvtcctl launch 288 --wait >/dev/null");
    }
    const Screen screen("firefox-esr", 1);
    client.runs(page_event(page_state + "STATE_START, NS_OK)") +
                page_event(page_state + "STATE_STOP|STATE_IS_NETWORK, NS_ERROR_UNKNOWN_HOST)") +
                page_event(page_location + "LOCATION_CHANGE_ERROR_PAGE)") + "sleep 100");
    transcript.run("qvtcctl launch 288 --wait >/dev/null")
        .run("qvtcctl status 288")
        .run("killall firefox");
    client.runs(page_event(page_state + "STATE_START, NS_OK)") + page_event(page_location + "0)") +
                "sleep 100");
    transcript.run("qvtcctl launch 288 --wait --json").run("qvtcctl status 288");
    transcript.expect("browser");
}

/// A browser as it is: while one runs, a second one hands its page over and ends. The page of the
/// host "nowhere" cannot be found.
constexpr const char* browser_with_tabs = R"bash(
tell() { echo "[Parent $browser: Main Thread]: I/BCWebProgress $1 on {top:1, id:$$, url:x}"; }
page="{isTopLevel:1, isLoadingDocument:1}, {URI:$1, originalURI:$1}"
browser=$(cat /tmp/browser 2>/dev/null)
if [[ -z $browser || ! -d /proc/$browser ]]; then browser=$$; echo $$ >/tmp/browser; fi
tell "OnStateChange($page, STATE_START, NS_OK)"
if [[ $1 == *nowhere* ]]; then
    tell "OnStateChange($page, STATE_STOP, NS_ERROR_UNKNOWN_HOST)"
    tell "OnLocationChange($page, $1, LOCATION_CHANGE_ERROR_PAGE)"
else
    tell "OnLocationChange($page, $1, 0)"
fi
[[ $browser != $$ ]] || sleep 100
)bash";

constexpr const char* add_pages =
    "qvtcctl connection add web name=one serverAddress=http://10.0.0.9/ >/dev/null; "
    "qvtcctl connection add web name=two serverAddress=http://10.0.0.8/ >/dev/null; "
    "qvtcctl connection add web name=lost serverAddress=http://nowhere/ >/dev/null";

// Its process is called otherwise than its program, by which the launch would end it.
TEST(QvtcctlTranscript, ABrowserShowsThePagesOfSeveralConnections) {
    const Screen screen("firefox-esr", 0);
    write_file("/tmp/asked", "");
    StandIn program("firefox");
    program.runs("exec firefox-esr \"$@\"");
    StandIn client("firefox-esr");
    client.runs(browser_with_tabs);
    Transcript transcript;
    const auto launch = [&](const std::string& words) {
        transcript.run("qvtcctl launch --wait " + words +
                       " 2>&1 | grep -e '^Note' -e '\"state' "
                       "-e means -e '(process' | sed 's/process [0-9]*/process N/'");
    };
    const auto show_all = [&] {
        for (const char* const id : {"288", "289", "290"})
            transcript.run("qvtcctl status " + std::string(id) + " | grep -v BCWebProgress");
    };
    transcript.run(add_pages);
    launch("288 --json");
    launch("289 --json");
    show_all();
    launch("290 --json");
    show_all();
    launch("289 --end-others --json");
    show_all();
    launch("288 --json");
    transcript.run("qvtcctl cancel 289");
    show_all();
    transcript.expect("browser_tabs");
}

TEST(QvtcctlTranscript, ABrowserThatTheLaunchEndsShowsItsPagesNoMore) {
    const Screen screen("firefox", 0);
    write_file("/tmp/asked", "");
    StandIn client("firefox");
    client.runs(browser_with_tabs);
    Transcript()
        .run(add_pages)
        .run("qvtcctl launch --wait 288 --json | grep state")
        .run("qvtcctl launch --wait 289 --json | grep -e state -A 4")
        .run("qvtcctl status 288")
        .run("qvtcctl status 289")
        .expect("browser_ended");
}

} // namespace
} // namespace qvtc::qvtcctl
