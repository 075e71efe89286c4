#include "clients/hostile_values.hpp"

#include "connections/fields.hpp"
#include "core/os.hpp"
#include "core/text.hpp"

#include <set>
#include <utility>

namespace qvtc::clients {

namespace fs = std::filesystem;
using test::StandIn;

std::vector<std::string> hostile_values() {
    std::vector<std::string> values = {
        "'; touch /tmp/owned; '",
        "\"; touch /tmp/owned; \"",
        "$(touch /tmp/owned)",
        "'$(touch /tmp/owned)'",
        "\"$(touch /tmp/owned)\"",
        "`touch /tmp/owned`",
        "x; touch /tmp/owned",
        "x | touch /tmp/owned",
        "x & touch /tmp/owned",
        "x && touch /tmp/owned",
        "x || touch /tmp/owned",
        "> /tmp/owned",
        ">/tmp/owned",
        ">>/tmp/owned",
        "2>/tmp/owned",
        "&>/tmp/owned",
        "<a",
        "<<a",
        "x\ntouch /tmp/owned\n",
        "\ntouch /tmp/owned",
        "x\\\ntouch /tmp/owned",
        "*",
        "?",
        "[a-z]",
        "/tmp/*",
        "{a,b}",
        "{1..9}",
        "~",
        "~root",
        "a ~",
        "#comment",
        "a #b",
        "a#b",
        "!",
        "!!",
        "$HOME",
        "${HOME}",
        "$IFS$9",
        "$((1+1))",
        "a\\",
        "\\'",
        "\\\\",
        "-f",
        "--help",
        "-",
        " leading",
        "trailing ",
        "a  b",
        "a\tb",
        "$'\\n'",
        "%s%n%d",
        "(x)",
        "x=y",
        "a=~",
        "^",
        "if then fi",
        "it's \"both\"",
        "Zoë €5 😀",
        "\xff\xfe",
        "a\xc3",
        "\x01\x02\x1b[31mred",
        "\r\nx",
        "\x7f",
    };
    for (const char c : std::string("'\"$`;|&<>*?[]{}()~#!\\%=^- \t\n\r\x01\xff")) {
        values.emplace_back(connections::field_limit, c);
    }
    return values;
}

StandIn::Arguments words(const std::string& text) {
    StandIn::Arguments words;
    std::string word;
    for (const char c : text + " ") {
        if (c != ' ' && c != '\t') {
            word += c;
        } else if (!word.empty()) {
            words.push_back(std::exchange(word, {}));
        }
    }
    return words;
}

void append(StandIn::Arguments& arguments, const StandIn::Arguments& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
}

std::string hex_of(const std::string& value) {
    std::string hex;
    for (const char c : value) hex += textf("%02x", static_cast<unsigned>(c) & 255U);
    return hex;
}

HostileTerminal::HostileTerminal() {
    fs::create_directories(directory);
    for (const char* const name : {"a", "b", "xyz"}) test::write_file(directory / name, "");
    fs::current_path(directory);
}
HostileTerminal::~HostileTerminal() {
    EXPECT_FALSE(test::file_exists("/tmp/owned"));
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(directory)) {
        names.insert(entry.path().filename());
    }
    EXPECT_EQ(names, (std::set<std::string>{"a", "b", "xyz"}));
    fs::current_path("/");
    fs::remove_all(directory);
}

StandIn::Calls HostileTerminal::calls_of(const std::string& name, const std::string& line) {
    StandIn* client = &firefox;
    for (StandIn* const each : {&xfreerdp, &remote_viewer, &vmware_view, &vncviewer}) {
        if (each->path().filename() == name) client = each;
    }
    client->forget_calls();
    EXPECT_EQ(os().run(line), 0) << line;
    return client->calls();
}

} // namespace qvtc::clients
