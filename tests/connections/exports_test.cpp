#include "connections/exports.hpp"

#include "connections/documents.hpp"
#include "support/support.hpp"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <json-c/json.h>

extern "C" {
extern std::array<const char*, 51> conn_info_param;
}

namespace qvtc::test {

namespace {

class ConnectionExports : public FreshTerminal {};

using Texts = std::vector<std::string>;

/// The text of an object that a getter handed over.
std::string released(json_object* object) {
    if (object == nullptr) return "null";
    std::string text = json_object_to_json_string_ext(object, JSON_C_TO_STRING_PLAIN);
    json_object_put(object);
    return text;
}

int store(int (*setter)(std::uint32_t, char*), std::uint32_t type, const std::string& params) {
    std::string text = params;
    return setter(type, text.data());
}

} // namespace

TEST_F(ConnectionExports, PrefixesAreCopiedIntoTheBuffer) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0, "velopaneItem"}, {1, "rdpItem"}, {2, "spiceItem"}, {3, "ovirtItem"}, {4, "citrixItem"},
        {5, "vmwareItem"},   {7, "vncItem"}, {8, "hdpItem"},   {9, "firefox"},
    };
    for (const auto& [type, prefix] : cases) {
        char buffer[13];
        std::memset(buffer, '#', sizeof buffer);
        EXPECT_EQ(
            capture_stdout([&, asked = type] { EXPECT_EQ(getConnectItemName(asked, buffer), 0); }),
            "");
        EXPECT_STREQ(buffer, prefix);
    }
}

TEST_F(ConnectionExports, NoPrefixIsPrintedAndLeavesTheBuffer) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {6, "@getConnectItemName:: not such connection type : 6\n"},
        {10, "@getConnectItemName:: not such connection type : 10\n"},
        {4294967295U, "@getConnectItemName:: not such connection type : -1\n"},
    };
    for (const auto& [type, line] : cases) {
        char buffer[13] = "untouched";
        EXPECT_EQ(
            capture_stdout([&, asked = type] { EXPECT_EQ(getConnectItemName(asked, buffer), -1); }),
            line);
        EXPECT_STREQ(buffer, "untouched");
    }
}

TEST_F(ConnectionExports, AFreeIdIsANumberAndNoneIsMinusOne) {
    EXPECT_EQ(getfreeid(5), 160);
    store_items({{"vmwareItem_id_160", {{"id", "160"}}},
                 {"vmwareItem_id_161", {{"id", "161"}}},
                 {"vmwareItem_id_163", {{"id", "163"}}}});
    EXPECT_EQ(capture_stdout([] { EXPECT_EQ(getfreeid(5), 162); }),
              "id_list[0]=160, k=160\nid_list[1]=161, k=161\nid_list[2]=163, k=163\n"
              "ids[0]=160\nids[1]=161\nids[2]=163\n");
    store_items(full_block(5, "vmwareItem"));
    EXPECT_EQ(getfreeid(5), -1);
    EXPECT_EQ(log_lines(), Texts{"[INFO] @getfreeid not found free id"});
    EXPECT_EQ(getfreeid(6), -1);
}

TEST_F(ConnectionExports, SortingIsAscendingAndInPlace) {
    struct Case {
        std::vector<int> given;
        int count;
        std::vector<int> sorted;
    };
    const Case cases[] = {
        {{3, 1, 2}, 3, {1, 2, 3}},
        {{5}, 1, {5}},
        {{2, 2, 1, 2}, 4, {1, 2, 2, 2}},
        {{0, -1, 2147483647, -2147483647 - 1}, 4, {-2147483647 - 1, -1, 0, 2147483647}},
        {{3, 2, 1}, 2, {2, 3, 1}},
        {{3, 2, 1}, 0, {3, 2, 1}},
        {{3, 2, 1}, -1, {3, 2, 1}},
    };
    for (const Case& each : cases) {
        std::vector<int> values = each.given;
        EXPECT_EQ(qvsort(values.data(), each.count), 0);
        EXPECT_EQ(values, each.sorted);
    }
    EXPECT_EQ(qvsort(nullptr, 0), 0);
    EXPECT_EQ(qvsort(nullptr, 3), 0);
}

TEST_F(ConnectionExports, ARecordIsFiftyOneTextsOf64Bytes) {
    EXPECT_EQ(sizeof(conn_info), 51U * 64U);
}

TEST_F(ConnectionExports, FieldNamesAreExportedInTheirOrder) {
    std::string names;
    for (const char* const name : conn_info_param) names += std::string(name) + "\n";
    expect_golden("connections/field_names.txt", names);
}

TEST_F(ConnectionExports, ARecordIsFilledFromJsonButForItsId) {
    conn_info record;
    std::memset(&record, '#', sizeof record);
    json_object* const json = json_tokener_parse(
        R"({"id":"35","type":"1","name":"a/b","serverAddress":")" // a value that is cut
        R"(xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxü!","port":7})");
    ASSERT_NE(json, nullptr);
    EXPECT_EQ(getconnparams(&record, json), 0);
    json_object_put(json);
    EXPECT_EQ(std::string(record.fields[0], 64), std::string(64, '#'));
    Texts values;
    for (int i = 1; i < 51; ++i) values.emplace_back(record.fields[i]);
    Texts expected{"1", "a/b", std::string(62, 'x'), "7"};
    expected.resize(50);
    EXPECT_EQ(values, expected);
    EXPECT_EQ(log_lines().size(), 2U * 46U); // one for each field that is missing
    EXPECT_EQ(log_lines().front(), "[ERROR] getJsonValue error! key = sport");
    EXPECT_EQ(log_lines()[90], "[ERROR] getJsonValue error! key = useGFX");
}

TEST_F(ConnectionExports, NoJsonLeavesARecordAsItIs) {
    conn_info record;
    std::memset(&record, '#', sizeof record);
    const conn_info before = record;
    EXPECT_EQ(getconnparams(&record, nullptr), 0);
    EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0);
}

TEST_F(ConnectionExports, TheWorkerTellsWhatTheEntryPointDrops) {
    EXPECT_EQ(store(setconnections, 1, "name=a"), 0);
    EXPECT_EQ(store(qvsetconnections, 1, "name=b"), 0);
    EXPECT_EQ(stored_document(),
              document_text({record_item("rdpItem_id_32", {{"id", "32"}, {"name", "a"}}),
                             record_item("rdpItem_id_33", {{"id", "33"}, {"name", "b"}})}));
    for (const auto& [type, params] : {std::pair{6U, "name=c"}, {1U, "no pair"}, {1U, "id=3 5"}}) {
        EXPECT_EQ(store(setconnections, type, params), -1) << params;
        EXPECT_EQ(store(qvsetconnections, type, params), 0) << params;
    }
    store_items(full_block(1, "rdpItem"));
    EXPECT_EQ(store(setconnections, 1, "name=c"), -1);
    EXPECT_EQ(store(qvsetconnections, 1, "name=c"), 0);
    EXPECT_EQ(stored_document(), document_text(full_block(1, "rdpItem")));
}

TEST_F(ConnectionExports, NullParametersStoreNothing) {
    EXPECT_EQ(setconnections(1, nullptr), -1);
    EXPECT_EQ(qvsetconnections(1, nullptr), 0);
    EXPECT_EQ(setconnectdelay(nullptr), 1);
    EXPECT_EQ(qvsetconnectdelay(nullptr), 1);
    EXPECT_FALSE(file_exists(document_path));
}

TEST_F(ConnectionExports, TheCallersTextKeepsItsSize) {
    // Every backslash grows to four on the way: not in the caller's buffer.
    char params[] = R"(name=\\\\\\\\&port=1)";
    const std::string behind = "behind";
    EXPECT_EQ(setconnections(1, params), 0);
    EXPECT_LE(std::strlen(params), sizeof params - 1);
    EXPECT_EQ(stored_value("rdpItem_id_32", "port"), "1");
}

TEST_F(ConnectionExports, RecordsAreHandedOver) {
    store_items({record_item("rdpItem_id_35", {{"id", "35"}, {"name", "Office"}})});
    const std::string record = listed_record({{"id", "35"}, {"name", "Office"}});
    EXPECT_EQ(released(getconnection(1, 35)), record);
    EXPECT_EQ(released(getconnection(1, 3)), "{}");
    EXPECT_EQ(released(getconnection(6, 35)), "{}");
    EXPECT_EQ(released(getconnections(1)), "{\"list\":[" + record + "]}");
    EXPECT_EQ(released(qvgetconnections(1)), "{\"list\":[" + record + "]}");
    EXPECT_EQ(released(getconnections(6)), R"({"list":[]})");
    EXPECT_EQ(released(qvgetconnections(4294967295U)), R"({"list":[]})");
}

TEST_F(ConnectionExports, ARecordWithAQuoteIsNull) {
    store_items({record_item("rdpItem_id_35", {{"id", "35"}, {"name", "\""}})});
    EXPECT_EQ(getconnection(1, 35), nullptr);
}

TEST_F(ConnectionExports, DeletionGivesZero) {
    for (int (*const deletion)(std::uint32_t, std::uint32_t) : {delconnection, qvdelconnection}) {
        store_items({record_item("rdpItem_id_32", {{"id", "32"}}),
                     record_item("rdpItem_id_35", {{"id", "35"}})});
        EXPECT_EQ(deletion(1, 3), 0);
        EXPECT_EQ(stored_document(), document_text({record_item("rdpItem_id_32", {{"id", "32"}})}));
        EXPECT_EQ(deletion(1, 3), 0);
    }
    EXPECT_EQ(delconnection(6, 0), -1);
    EXPECT_EQ(qvdelconnection(6, 0), 0);
}

TEST_F(ConnectionExports, TheDelayIsAnObjectOrNull) {
    EXPECT_EQ(released(connectdelay()), "null");
    EXPECT_EQ(released(qvconnectdelay()), "null");
    EXPECT_EQ(setconnectdelay("delay=7"), 1);
    EXPECT_EQ(released(connectdelay()), R"({"delay":"7"})");
    EXPECT_EQ(qvsetconnectdelay("delay=5=6"), 1);
    EXPECT_EQ(released(qvconnectdelay()), R"({"delay":"5"})");
    EXPECT_EQ(setconnectdelay("x"), 1);
    EXPECT_EQ(qvsetconnectdelay("=5"), 1);
    EXPECT_EQ(released(connectdelay()), R"({"delay":"5"})");
}

} // namespace qvtc::test
