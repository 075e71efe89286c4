#include "clients/horizon.hpp"
#include "clients/rdp.hpp"
#include "clients/spice.hpp"
#include "clients/vnc.hpp"
#include "clients/web.hpp"
#include "connections/fields.hpp"
#include "qvtcctl/base/hexadecimal.hpp"
#include "qvtcctl/connections/fields.hpp"

#include <functional>
#include <map>
#include <set>

#include <gtest/gtest.h>

namespace qvtc {
namespace {

using connections::Field;
using connections::field_names;
using connections::Record;

/// The command line that each type's client is started with.
const std::map<unsigned, std::function<std::string(const Record&)>> command_lines{
    {QVTC_TYPE_RDP,
     [](const Record& record) {
         clients::RdpFacts facts;
         facts.record = record;
         facts.password = record[Field::password];
         facts.gateway_password = record[Field::rdGatewayPassword];
         facts.audio_available = true;
         return clients::rdp_command_line(facts);
     }},
    {QVTC_TYPE_SPICE,
     [](const Record& record) { return clients::spice_command_line({.record = record}); }},
    {QVTC_TYPE_HORIZON,
     [](const Record& record) {
         clients::HorizonFacts facts;
         facts.record = record;
         facts.password = record[Field::password];
         return clients::horizon_command_line(facts);
     }},
    {QVTC_TYPE_VNC, clients::vnc_command_line},
    {QVTC_TYPE_WEB, clients::web_command_line},
};

/// Records on which a change of one field may show: with all switches off, and with all on.
std::vector<Record> bases() {
    Record off;
    off[Field::serverAddress] = "10.0.0.5";
    off[Field::username] = "u";
    off[Field::password] = "p";
    Record on = off;
    for (std::size_t i = 0; i < connections::field_count; ++i) {
        if (on.values[i].empty()) on.values[i] = "on";
    }
    return {off, on};
}

/// What a field can hold: the values that some switch or choice looks for, and one of its own.
constexpr const char* tried[] = {"",    "on",   "off",    "7",     "16",
                                 "vga", "hdmi", "extend", "BLAST", "RDP"};

bool is_used(const std::function<std::string(const Record&)>& command_line, std::size_t field) {
    for (Record record : bases()) {
        std::set<std::string> lines;
        for (const char* const value : tried) {
            record.values[field] = value;
            lines.insert(command_line(record));
        }
        if (lines.size() > 1) return true;
    }
    return false;
}

/// Whether a shell would split the words of this text where it stands in a command line.
bool is_split(const std::string& line, const std::string& text) {
    const std::size_t start = line.find(text);
    char quote = 0;
    for (std::size_t i = 0; i < start; ++i) {
        if (quote != '\'' && line[i] == '\\')
            ++i;
        else if (quote == 0 && (line[i] == '\'' || line[i] == '"'))
            quote = line[i];
        else if (quote == line[i])
            quote = 0;
    }
    return quote == 0;
}

bool is_bare(const std::function<std::string(const Record&)>& command_line, std::size_t field) {
    const std::string two_words = "one two";
    const bool is_hex = qvtcctl::fields[field].kind == qvtcctl::Kind::hex;
    for (Record record : bases()) {
        record.values[field] = is_hex ? qvtcctl::hexadecimal_of(two_words) : two_words;
        const std::string line = command_line(record);
        if (line.find(two_words) != std::string::npos) return is_split(line, two_words);
    }
    return false;
}

TEST(FieldsOfBoth, HaveTheSameNamesInTheSameOrder) {
    std::vector<std::string_view> of_tool;
    for (const qvtcctl::Field& field : qvtcctl::fields) of_tool.push_back(field.name);
    EXPECT_EQ(of_tool, std::vector<std::string_view>(field_names.begin(), field_names.end()));
    EXPECT_EQ(qvtcctl::longest_value, connections::field_limit);
}

TEST(FieldsOfBoth, ReachTheClientsThatTheToolNames) {
    // These are shown or looked up for every type, whatever the client is told.
    const std::set<std::string_view> for_all{"id", "type", "name", "serverAddress"};
    for (std::size_t i = 0; i < qvtcctl::fields.size(); ++i) {
        const qvtcctl::Field& field = qvtcctl::fields[i];
        if (for_all.contains(field.name)) continue;
        for (const auto& [number, command_line] : command_lines) {
            const bool named = (field.used_by & qvtcctl::set_of(number)) != 0;
            EXPECT_EQ(named, is_used(command_line, i)) << field.name << " of type " << number;
        }
    }
}

TEST(FieldsOfBoth, AreCutAtABlankWhereTheToolSaysSo) {
    for (std::size_t i = 0; i < qvtcctl::fields.size(); ++i) {
        const qvtcctl::Field& field = qvtcctl::fields[i];
        for (const auto& [number, command_line] : command_lines) {
            const bool named = (field.bare_in & qvtcctl::set_of(number)) != 0;
            EXPECT_EQ(named, is_bare(command_line, i)) << field.name << " of type " << number;
        }
    }
}

} // namespace
} // namespace qvtc
