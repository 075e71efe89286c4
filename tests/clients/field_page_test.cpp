#include "clients/horizon.hpp"
#include "clients/password.hpp"
#include "clients/rdp.hpp"
#include "clients/spice.hpp"
#include "clients/vnc.hpp"
#include "clients/web.hpp"
#include "support/support.hpp"

#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <regex>

/// The reference page says which clients are given which field. Here each field is
/// changed in turn, and the command lines are looked at.
namespace qvtc::clients {

namespace {

using connections::Field;
using connections::Record;

struct Client {
    const char* name; ///< as the page has it
    std::function<std::string(const Record&)> command_line;
};

const Client clients_in_order[] = {
    {"RDP",
     [](const Record& record) {
         RdpFacts facts;
         facts.record = record;
         facts.password = decode_password(record[Field::password]).text;
         facts.gateway_password = decode_password(record[Field::rdGatewayPassword]).text;
         facts.audio_available = true;
         return rdp_command_line(facts);
     }},
    {"SPICE", [](const Record& record) { return spice_command_line({record}); }},
    {"Horizon",
     [](const Record& record) {
         HorizonFacts facts;
         facts.record = record;
         facts.password = decode_password(record[Field::password]).text;
         return horizon_command_line(facts);
     }},
    {"VNC", [](const Record& record) { return vnc_command_line(record); }},
    {"web", [](const Record& record) { return web_command_line(record); }},
};

Record all_on_but(std::initializer_list<Field> off) {
    Record record;
    for (std::string& value : record.values) value = "on";
    for (const Field field : off) record[field] = "";
    return record;
}

/// Records in which one field or another comes into play.
const std::vector<Record>& situations() {
    static const std::vector<Record> records = {Record{}, all_on_but({}),
                                                all_on_but({Field::useGFX}),
                                                all_on_but({Field::useGFX, Field::useRemoteFX})};
    return records;
}

bool is_used(const Client& client, std::size_t field) {
    for (Record record : situations()) {
        const std::string before = client.command_line(record);
        for (const char* const value : {"", "on", "off", "YWI+", "extend", "vga", "RDP", "BLAST"}) {
            record.values[field] = value;
            if (client.command_line(record) != before) return true;
        }
    }
    return false;
}

std::string users_of(std::size_t field) {
    std::string names;
    for (const Client& client : clients_in_order) {
        if (is_used(client, field)) names += (names.empty() ? "" : ", ") + std::string(client.name);
    }
    return names;
}

/// The page's second column, without what is no client.
std::map<std::string, std::string> users_on_page() {
    const std::regex row(R"(^\| `(\w+)` \| ([^|]*) \|[^|]*\|[^|]*\|[^|]*\|$)");
    std::map<std::string, std::string> users;
    std::ifstream page(QVTC_DOCUMENTS "/settings.md");
    std::smatch found;
    for (std::string line; std::getline(page, line);) {
        if (!std::regex_match(line, found, row)) continue;
        const std::string named = found[2];
        users[found[1]] = named == "front-end" || named == "all" ? "" : named;
    }
    return users;
}

} // namespace

TEST(FieldPage, NamesTheClientsThatAreGivenEachField) {
    std::map<std::string, std::string> users;
    for (std::size_t i = 0; i < connections::field_count; ++i)
        users[connections::field_names[i]] = users_of(i);
    EXPECT_EQ(users_on_page(), users);
}

} // namespace qvtc::clients
