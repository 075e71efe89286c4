#include "qvtcctl/connections/transfer.hpp"

#include "refusals.hpp"

namespace qvtc::qvtcctl {
namespace {

using test::refusal_of;

Record rdp(std::optional<unsigned> id, const std::string& name) {
    Record record;
    record.set_identity(id, *find_type("rdp"));
    record[field_index("name")] = name;
    record[field_index("serverAddress")] = "10.0.0.5";
    record[field_index("colorDepth")] = "32";
    return record;
}

std::string file_with(const std::string& connections) {
    return R"({"format": "qvtcctl-connections", "version": 1, "connections": [)" + connections +
           "]}";
}

std::vector<Record> records_of(const std::vector<Incoming>& incoming) {
    std::vector<Record> records;
    for (const Incoming& connection : incoming) records.push_back(connection.record);
    return records;
}

std::string many(const std::string& element, std::size_t times) {
    std::string list = element;
    for (std::size_t i = 1; i < times; ++i) list += "," + element;
    return list;
}

std::string import_refusal(const std::string& text) {
    return refusal_of([&] { parse_import(text, Strictness::whole); });
}

TEST(QvtcctlTransfer, WhatIsExportedIsImported) {
    std::vector<Record> records{rdp(32, "a&b"), rdp(63, "M\xC3\xA4rz/x")};
    records[1][field_index("password")] = "c2VjcmV0";
    EXPECT_EQ(records_of(parse_import(exported_text(records, true), Strictness::whole)), records);
    records[1][field_index("password")] = "";
    std::vector<Record> with_password = records;
    with_password[1][field_index("password")] = "c2VjcmV0";
    EXPECT_EQ(records_of(parse_import(exported_text(with_password, false), Strictness::whole)),
              records);
}

TEST(QvtcctlTransfer, AFileWithoutPasswordsTakesNoneAway) {
    std::vector<Record> stored{rdp(32, "a"), rdp(33, "b")};
    stored[0][field_index("password")] = "c2VjcmV0";
    std::vector<Record> changed = stored;
    changed[0][field_index("serverAddress")] = "10.0.0.6";
    for (const bool with_passwords : {false, true}) {
        std::vector<Record> exported = changed;
        if (with_passwords) exported[0][field_index("password")] = "";
        const auto steps = plan_import(
            stored, parse_import(exported_text(exported, with_passwords), Strictness::whole), true);
        ASSERT_EQ(steps.size(), 2U);
        EXPECT_EQ(steps[0].action, Action::replace);
        EXPECT_EQ(steps[0].record[field_index("serverAddress")], "10.0.0.6");
        EXPECT_EQ(steps[0].record[field_index("password")], with_passwords ? "" : "c2VjcmV0");
        EXPECT_EQ(steps[1].action, Action::keep);
    }
}

TEST(QvtcctlTransfer, BracesInAValueAreNoObjects) {
    const Record record = rdp(32, std::string(60, '{') + "'[");
    const std::vector<Record> records(5, record);
    EXPECT_EQ(import_refusal(exported_text(records, true)), "id 32 is given twice.");
}

TEST(QvtcctlTransfer, NumbersMayBeWrittenAsNumbers) {
    const std::vector<Incoming> incoming =
        parse_import(file_with(R"({"type": 1, "serverAddress": "10.0.0.5", "colorDepth": 24})"),
                     Strictness::whole);
    Record expected = rdp(std::nullopt, "");
    expected[field_index("colorDepth")] = "24";
    EXPECT_EQ(records_of(incoming), std::vector<Record>{expected});
}

TEST(QvtcctlTransfer, WrongTextsAreRefused) {
    struct Case {
        std::string text;
        std::string_view message;
    };
    const std::string good =
        R"({"id": 32, "type": "rdp", "serverAddress": "10.0.0.5", "useGFX": "on"})";
    const Case cases[] = {
        {"", "the input is empty."},
        {file_with("{"), "not valid JSON: quoted object property name expected in line 1."},
        {"{\"format\": ", "not valid JSON: it ends too early."},
        {"{\n\"format\": \n!", "not valid JSON: unexpected character in line 3."},
        {"[]", "this was not written by \"qvtcctl connection export\"."},
        {R"({"connections": []})", "this was not written by \"qvtcctl connection export\"."},
        {R"({"format": "qvtcctl-connections", "version": 2, "connections": []})",
         "the text has version 2, and this program reads version 1."},
        {file_with("") + "{}", "not valid JSON: there is more text after its end."},
        {file_with(many("{}", 288)), "connection 1 of the file: it has no type."},
        {file_with(many("{}", 289)), "too many objects: a terminal keeps at most 288 connections."},
        {"/* ' */ " + file_with(many("{}", 289)),
         "too many objects: a terminal keeps at most 288 connections."},
        {"// \"\n" + file_with(many("{}", 289)),
         "too many objects: a terminal keeps at most 288 connections."},
        {"/* [[ " + many("{}", 289) + " */" + file_with("{}"),
         "connection 1 of the file: it has no type."},
        {file_with("{}") + "/*", "not valid JSON: it ends too early."},
        {file_with("7"), "connection 1 of the file: it is not a JSON object."},
        {file_with("{}"), "connection 1 of the file: it has no type."},
        {file_with(good + R"(, {"type": "rpd", "name": "x"})"),
         "connection 2 (x) of the file: \"rpd\" is not a connection type (did you mean \"rdp\"?): "
         "give one of broker, rdp, spice, ovirt, citrix, horizon, vnc, hdp, web."},
        {file_with(R"({"type": "rdp", "nam": "x"})"),
         "connection 1 of the file: \"nam\" is not a field (did you mean \"name\"?): \"qvtcctl "
         "connection fields\" lists them."},
        {file_with(R"({"type": "rdp", "name": null})"),
         "connection 1 of the file: name must be a text or a whole number."},
        {file_with(R"({"type": "rdp", "useGFX": true})"),
         "connection 1 of the file: useGFX must be a text or a whole number."},
        {file_with(R"({"type": "rdp", "id": 64})"),
         "connection 1 of the file: id \"64\" does not belong to the type rdp, whose ids are 32 to "
         "63."},
        {file_with(R"({"type": "rdp", "rdpPort": 70000})"),
         "connection 1 of the file: rdpPort \"70000\" is not a valid port. Give a number from 1 to "
         "65535."},
        {file_with(R"({"type": "rdp", "domain": "a\u0000b"})"),
         "connection 1 of the file: domain \"a\\x00b\" contains a control character. Leave it "
         "out."},
        {file_with(R"({"type": "rdp"})"),
         "connection 1 of the file: serverAddress is missing: give it as serverAddress=ADDRESS."},
        {file_with(good + "," + good), "id 32 is given twice."},
    };
    for (const Case& c : cases) EXPECT_EQ(import_refusal(c.text), c.message) << c.text;
    EXPECT_EQ(import_refusal(file_with(good)), "");
}

/// "add 32", or "add 33 (wished 32)"
std::vector<std::string> words_of(const std::vector<ImportStep>& steps) {
    std::vector<std::string> words;
    for (const ImportStep& step : steps) {
        const char* action = step.action == Action::add       ? "add "
                             : step.action == Action::replace ? "replace "
                                                              : "keep ";
        EXPECT_EQ(step.record.id(), step.id);
        EXPECT_EQ(step.previous.has_value(), step.action != Action::add);
        words.push_back(action + std::to_string(step.id));
        if (step.wished_id) words.back() += " (wished " + std::to_string(*step.wished_id) + ")";
    }
    return words;
}

std::vector<std::string> plan(const std::vector<Record>& stored, const std::vector<Record>& file,
                              bool replace) {
    std::vector<Incoming> incoming;
    for (const Record& record : file) incoming.push_back({find_type("rdp"), record});
    return words_of(plan_import(stored, incoming, replace));
}

TEST(QvtcctlTransfer, FreeIdsAreKept) {
    EXPECT_EQ(plan({}, {rdp(40, "a"), rdp(32, "b")}, false),
              (std::vector<std::string>{"add 40", "add 32"}));
}

TEST(QvtcctlTransfer, ConnectionsWithoutIdGetTheLowestFreeOne) {
    EXPECT_EQ(plan({rdp(32, "a")}, {rdp(std::nullopt, "b"), rdp(33, "c")}, false),
              (std::vector<std::string>{"add 34", "add 33"}));
}

TEST(QvtcctlTransfer, ATakenIdGivesANewOneUnlessReplacing) {
    const std::vector<Record> stored{rdp(32, "a"), rdp(33, "b")};
    EXPECT_EQ(plan(stored, {rdp(32, "x")}, false), std::vector<std::string>{"add 34 (wished 32)"});
    EXPECT_EQ(plan(stored, {rdp(32, "x")}, true), std::vector<std::string>{"replace 32"});
}

TEST(QvtcctlTransfer, WhatIsStoredAlreadyIsLeftAlone) {
    for (const bool replace : {false, true}) {
        EXPECT_EQ(plan({rdp(32, "a")}, {rdp(32, "a")}, replace),
                  std::vector<std::string>{"keep 32"});
    }
}

TEST(QvtcctlTransfer, WithoutRoomNothingIsPlanned) {
    std::vector<Record> full;
    for (unsigned id = 32; id < 64; ++id) full.push_back(rdp(id, std::to_string(id)));
    EXPECT_EQ(refusal_of([&] { plan(full, {rdp(std::nullopt, "x")}, true); }, ExitCode::not_done),
              "there is no room for all RDP connections: a terminal keeps 32.");
    EXPECT_EQ(plan(full, {rdp(50, "x")}, true), std::vector<std::string>{"replace 50"});
}

} // namespace
} // namespace qvtc::qvtcctl
