// Values that would like to be more than values. Whatever stands in whichever field, a client
// gets it as it is, and the shell runs nothing but the client.

#include "clients/horizon.hpp"
#include "clients/hostile_values.hpp"
#include "clients/rdp.hpp"
#include "clients/records.hpp"
#include "clients/spice.hpp"
#include "clients/vnc.hpp"
#include "clients/web.hpp"

#include "core/text.hpp"

#include <cctype>
#include <functional>
#include <gtest/gtest.h>
#include <set>

namespace qvtc::clients {

namespace {

using connections::Record;
using test::StandIn;

enum class Place { bare, quoted };

/// A place of a value in a client's command line.
struct Position {
    const char* name;
    const char* client;
    Place place;
    std::function<std::string(const std::string& value)> line;
};

RdpFacts rdp_facts() {
    RdpFacts facts;
    facts.record = record_of({{Field::name, "Office"},
                              {Field::serverAddress, "10.0.0.5"},
                              {Field::domain, "D"},
                              {Field::colorDepth, "32"},
                              {Field::useRdGateway, "on"},
                              {Field::rdGatewayDomain, "GD"},
                              {Field::useCustomRDPPort, "on"},
                              {Field::isConnectStart, "on"}});
    return facts;
}

Position rdp(const char* name, Field field, Place place) {
    return {name, "xfreerdp", place, [field](const std::string& value) {
                RdpFacts facts = rdp_facts();
                facts.record[field] = value;
                return rdp_command_line(facts);
            }};
}

std::string horizon_line(const FieldValues& values, const std::string& password) {
    HorizonFacts facts;
    facts.record = record_of(values);
    facts.password = password;
    const std::string line = horizon_command_line(facts);
    return line.substr(0, line.size() - 2); // without " &": these tests wait for it
}

Position horizon(const char* name, Field field) {
    return {name, "vmware-view", Place::bare, [field](const std::string& value) {
                return horizon_line({{Field::serverAddress, "h"}, {field, value}}, "p");
            }};
}

std::vector<Position> positions() {
    return {
        rdp("RDP name", Field::name, Place::bare),
        rdp("RDP address", Field::serverAddress, Place::quoted),
        rdp("RDP user", Field::username, Place::quoted),
        rdp("RDP gateway user", Field::rdGatewayUsername, Place::quoted),
        rdp("RDP domain", Field::domain, Place::quoted),
        rdp("RDP gateway", Field::rdGatewayAddress, Place::quoted),
        rdp("RDP gateway domain", Field::rdGatewayDomain, Place::quoted),
        rdp("RDP colour depth", Field::colorDepth, Place::bare),
        rdp("RDP port", Field::rdpPort, Place::bare),
        rdp("RDP program", Field::appFullpath, Place::quoted),
        rdp("RDP directory", Field::workDir, Place::quoted),
        {"RDP password", "xfreerdp", Place::quoted,
         [](const std::string& value) {
             RdpFacts facts = rdp_facts();
             facts.password = value;
             return rdp_command_line(facts);
         }},
        {"RDP gateway password", "xfreerdp", Place::quoted,
         [](const std::string& value) {
             RdpFacts facts = rdp_facts();
             facts.gateway_password = value;
             return rdp_command_line(facts);
         }},
        {"RDP size", "xfreerdp", Place::bare,
         [](const std::string& value) {
             RdpFacts facts = rdp_facts();
             facts.screen_size = value;
             return rdp_command_line(facts);
         }},
        {"SPICE address", "remote-viewer", Place::bare,
         [](const std::string& value) {
             return spice_command_line({record_of({{Field::serverAddress, value}})});
         }},
        {"SPICE port", "remote-viewer", Place::bare,
         [](const std::string& value) {
             return spice_command_line(
                 {record_of({{Field::serverAddress, "h"}, {Field::port, value}})});
         }},
        horizon("Horizon address", Field::serverAddress),
        horizon("Horizon user", Field::username),
        horizon("Horizon domain", Field::domain),
        {"Horizon password", "vmware-view", Place::bare,
         [](const std::string& value) {
             return horizon_line({{Field::username, "u"}}, value);
         }},
        {"Horizon desktop", "vmware-view", Place::bare,
         [](const std::string& value) {
             return horizon_line({{Field::desktop, hex_of(value)}}, "p");
         }},
        {"VNC address", "vncviewer", Place::bare,
         [](const std::string& value) {
             return vnc_command_line(record_of({{Field::serverAddress, value}}));
         }},
        {"VNC password", "vncviewer", Place::bare,
         [](const std::string& value) {
             return vnc_command_line(
                 record_of({{Field::password, value}, {Field::serverAddress, "h"}}));
         }},
        {"web address", "firefox", Place::bare,
         [](const std::string& value) {
             return web_command_line(record_of({{Field::serverAddress, value}}));
         }},
    };
}

/// The arguments with the placeholder, with a value in its place.
StandIn::Arguments with_value(const StandIn::Arguments& pattern, const std::string& value,
                              Place place) {
    const std::string placeholder = "PLACEHOLDER";
    StandIn::Arguments arguments;
    for (const std::string& argument : pattern) {
        if (argument.find(placeholder) == std::string::npos) {
            arguments.push_back(argument);
            continue;
        }
        const std::string text = replace_all(std::string_view(argument), placeholder, value);
        append(arguments, place == Place::bare ? words(text) : StandIn::Arguments{text});
    }
    return arguments;
}

class HostileValues : public HostileTerminal {
  protected:
    /// Launches a client with every value in that place. One shell reads all the lines, which
    /// `command` turns into the text it is given: a quote or a document that one of them left
    /// open would swallow the next.
    void expect_values(const Position& position,
                       const std::function<std::string(const std::string& lines)>& command) {
        const StandIn::Calls pattern = calls_of(position.client, position.line("PLACEHOLDER"));
        ASSERT_EQ(pattern.size(), 1U) << position.name;
        const std::vector<std::string> values = hostile_values();
        std::string lines;
        for (const std::string& value : values) lines += position.line(value) + "\n";
        const StandIn::Calls calls = calls_of(position.client, command(lines));
        ASSERT_EQ(calls.size(), values.size()) << position.name;
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_EQ(calls[i], with_value(pattern[0], values[i], position.place))
                << position.name << " = " << testing::PrintToString(values[i]);
        }
        ASSERT_FALSE(test::file_exists("/tmp/owned")) << position.name;
    }
};

} // namespace

TEST_F(HostileValues, ReachTheirClientsFromEveryPlaceOfACommandLine) {
    for (const Position& position : positions()) {
        expect_values(position, [](const std::string& lines) { return lines; });
    }
}

TEST_F(HostileValues, ReachThemUnderAPlainShellToo) {
    QVTC_NEED_PROGRAM("dash");
    for (const Position& position : positions()) {
        expect_values(position, [](const std::string& lines) {
            test::write_file("/tmp/lines", lines);
            return std::string("dash /tmp/lines");
        });
    }
}

TEST_F(HostileValues, InAnyOtherFieldChangeNothing) {
    using Line = std::function<std::string(const Record&)>;
    struct Client {
        Line line;
        std::set<Field> used; ///< covered by the positions above
        Record record;
    };
    const auto rdp_line = [](const Record& record) {
        RdpFacts facts;
        facts.record = record;
        facts.audio_available = true;
        return rdp_command_line(facts);
    };
    const auto view_line = [](const Record& record) {
        HorizonFacts facts;
        facts.record = record;
        return horizon_command_line(facts);
    };
    const Client clients[] = {
        {rdp_line,
         {Field::name, Field::serverAddress, Field::username, Field::rdGatewayUsername,
          Field::domain, Field::rdGatewayAddress, Field::rdGatewayDomain, Field::colorDepth,
          Field::rdpPort, Field::appFullpath, Field::workDir},
         rdp_facts().record},
        {[](const Record& record) { return spice_command_line({record}); },
         {Field::serverAddress, Field::port},
         record_of({{Field::serverAddress, "h"}})},
        {view_line,
         {Field::serverAddress, Field::username, Field::domain, Field::desktop},
         record_of({{Field::serverAddress, "h"}, {Field::username, "u"}})},
        {vnc_command_line, {Field::serverAddress, Field::password}, {}},
        {web_command_line, {Field::serverAddress}, {}},
    };
    for (const Client& client : clients) {
        for (std::size_t i = 0; i < connections::field_count; ++i) {
            const Field field{i};
            if (client.used.contains(field)) continue;
            Record record = client.record;
            record[field] = "neither";
            const std::string expected = client.line(record);
            for (const std::string& value : hostile_values()) {
                record[field] = value;
                EXPECT_EQ(client.line(record), expected) << connections::name_of(field);
            }
        }
    }
}

TEST_F(HostileValues, InsteadOfHexadecimalTextNameNoDesktop) {
    for (const std::string& value : hostile_values()) {
        // Every letter is a digit here, and two of them a byte: "if" is a slash.
        if (value.size() > 1 && std::isalnum(value[0]) != 0 && std::isalnum(value[1]) != 0)
            continue;
        const StandIn::Calls calls =
            calls_of("vmware-view", horizon_line({{Field::desktop, value}}, ""));
        ASSERT_EQ(calls.size(), 1U);
        EXPECT_EQ(calls[0], (StandIn::Arguments{"-q", "--once", "--enableMMR", "--monitors=2", "-s",
                                                "-n", "--nomenubar", "--protocol=PCOIP"}))
            << testing::PrintToString(value);
    }
}

TEST_F(HostileValues, InTheSettingsOfAHorizonClientChangeNothing) {
    HorizonFacts facts;
    const std::string expected = horizon_command_line(facts);
    for (const std::string& value : hostile_values()) {
        facts.language = value;
        facts.menu_bar = value.find("on") == std::string::npos ? value : "";
        EXPECT_EQ(horizon_command_line(facts), expected) << testing::PrintToString(value);
    }
}

} // namespace qvtc::clients
