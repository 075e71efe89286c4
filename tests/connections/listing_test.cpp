// What reading and deleting give; adding and modifying are in list_test.cpp.

#include "connections/list.hpp"

#include "connections/documents.hpp"
#include "connections/fields.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::connections {

namespace {

class OneConnection : public test::FreshTerminal {};
class Connections : public test::FreshTerminal {};
class Deletion : public test::FreshTerminal {};

using test::document_text;
using test::full_block;
using test::Item;
using test::listed_record;
using test::log_lines;
using test::record_item;
using test::store_items;
using test::stored_document;
using test::Values;

using Texts = std::vector<std::string>;

std::string text_of(const Json& json) {
    return json_object_to_json_string_ext(json.get(),
                                          JSON_C_TO_STRING_PLAIN | JSON_C_TO_STRING_NOSLASHESCAPE);
}

} // namespace

// --- One record ------------------------------------------------------------------------------

TEST_F(OneConnection, HasAllItsFieldsInOrder) {
    Values values{{"id", "35"}};
    for (std::size_t i = 1; i < field_count; ++i) {
        values.emplace_back(field_names[i], "value " + std::to_string(i));
    }
    store_items({record_item("rdpItem_id_35", values)});
    EXPECT_EQ(text_of(connection(1, 35)), listed_record(values));
}

TEST_F(OneConnection, IsAskedForByItsAbsoluteId) {
    store_items({record_item("rdpItem_id_35", {{"id", "35"}, {"name", "by id"}}),
                 record_item("rdpItem_id_3", {{"id", "3"}, {"name", "by slot"}})});
    EXPECT_EQ(text_of(connection(1, 35)), listed_record({{"id", "35"}, {"name", "by id"}}));
    EXPECT_EQ(text_of(connection(1, 3)), listed_record({{"id", "3"}, {"name", "by slot"}}));
}

TEST_F(OneConnection, ThatIsMissingIsAnEmptyObject) {
    EXPECT_EQ(text_of(connection(1, 35)), "{}");
    store_items({record_item("rdpItem_id_36", {{"id", "36"}}),
                 record_item("rdpItem_id_35", {{"id", "36"}}), // disagrees with its name
                 record_item("spiceItem_id_35", {{"id", "35"}})});
    EXPECT_EQ(text_of(connection(1, 35)), "{}");
    EXPECT_EQ(log_lines(), Texts{});
}

TEST_F(OneConnection, DeliberatelyIsLookedForUnderGrowingNames) {
    std::string name = "rdpItem";
    for (int attempt = 1; attempt <= 20; ++attempt) { // 13 bytes and 19 times 6: 127
        name += "_id_35";
        ASSERT_LE(name.size(), 127U);
        store_items(
            {record_item(name, {{"id", "35"}, {"name", "attempt " + std::to_string(attempt)}})});
        EXPECT_EQ(text_of(connection(1, 35)),
                  listed_record({{"id", "35"}, {"name", "attempt " + std::to_string(attempt)}}));
    }
}

TEST_F(OneConnection, IsNotLookedForUnderANameOf128Bytes) {
    std::string name = "spiceItem";
    for (int part = 0; part < 17; ++part) name += "_id_100";
    ASSERT_EQ(name.size(), 128U);
    store_items({record_item(name, {{"id", "100"}})});
    EXPECT_EQ(text_of(connection(2, 100)), "{}");
    name.resize(121);
    store_items({record_item(name, {{"id", "100"}})});
    EXPECT_EQ(text_of(connection(2, 100)), listed_record({{"id", "100"}}));
}

TEST_F(OneConnection, OfTheShortestNamesIsLookedForUntilTheyHave127Bytes) {
    // Even these reach the limit of bytes before that of attempts.
    std::string name = "firefox";
    for (int part = 0; part < 24; ++part) name += "_id_3";
    ASSERT_EQ(name.size(), 127U);
    store_items({record_item(name, {{"id", "3"}})});
    EXPECT_EQ(text_of(connection(9, 3)), listed_record({{"id", "3"}}));
    store_items({record_item(name + "_id_3", {{"id", "3"}})});
    EXPECT_EQ(text_of(connection(9, 3)), "{}");
}

TEST_F(OneConnection, ItsFirstNameThatFitsCounts) {
    store_items({record_item("rdpItem_id_35_id_35", {{"id", "35"}, {"name", "second"}}),
                 record_item("rdpItem_id_35", {{"id", "35"}, {"name", "first"}})});
    EXPECT_EQ(text_of(connection(1, 35)), listed_record({{"id", "35"}, {"name", "first"}}));
}

TEST_F(OneConnection, AValueIsCutAt127Bytes) {
    store_items({record_item("rdpItem_id_35", {{"id", "35"}, {"name", std::string(128, 'x')}})});
    EXPECT_EQ(text_of(connection(1, 35)),
              listed_record({{"id", "35"}, {"name", std::string(127, 'x')}}));
}

TEST_F(OneConnection, WithAQuoteInAValueIsNullAndLogged) {
    store_items({record_item("rdpItem_id_35", {{"id", "35"}, {"name", "a\"b"}})});
    EXPECT_EQ(connection(1, 35), nullptr);
    std::string text = "{ ";
    for (const auto& [name, value] : test::record_values({{"id", "35"}, {"name", "a\"b"}})) {
        if (text.size() > 2) text += ", ";
        text += "\"" + name + "\" : \"" + value + "\"";
    }
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] connects param:", " " + text + "}", "",
                                  "[ERROR] @getconnections jobj_list error", ""}));
}

// --- All records of a type -------------------------------------------------------------------

TEST_F(Connections, AreListedInAscendingOrderOfTheirIdsWithAllTheirFields) {
    store_items({record_item("rdpItem_id_63", {{"id", "63"}, {"useGFX", "on"}}),
                 record_item("rdpItem_id_35", {{"id", "35"}, {"type", "1"}, {"name", "Office"}}),
                 record_item("rdpItem_id_32", {{"id", "32"}}),
                 record_item("rdpItem_id_31", {{"id", "31"}}),
                 record_item("rdpItem_id_64", {{"id", "64"}}),
                 record_item("spiceItem_id_64", {{"id", "64"}})});
    EXPECT_EQ(text_of(connections_of(1)),
              "{\"list\":[" + listed_record({{"id", "32"}}) + "," +
                  listed_record({{"id", "35"}, {"type", "1"}, {"name", "Office"}}) + "," +
                  listed_record({{"id", "63"}, {"useGFX", "on"}}) + "]}");
    EXPECT_EQ(text_of(connections_of(2)), "{\"list\":[" + listed_record({{"id", "64"}}) + "]}");
    EXPECT_EQ(log_lines(), Texts{});
}

TEST_F(Connections, AreAnEmptyListWithoutRecords) {
    EXPECT_EQ(text_of(connections_of(1)), R"({"list":[]})");
    store_items({{"rdpItem_id_32", {{"id", ""}, {"name", "no id"}}},
                 {"rdpItem_id_33", {{"name", "none at all"}}}});
    EXPECT_EQ(text_of(connections_of(1)), R"({"list":[]})");
}

TEST_F(Connections, AFullBlockIsListedWhole) {
    store_items(full_block(1, "rdpItem"));
    std::string expected = "{\"list\":[";
    for (int id = 32; id <= 63; ++id) {
        expected += (id > 32 ? "," : "") + listed_record({{"id", std::to_string(id)}});
    }
    EXPECT_EQ(text_of(connections_of(1)), expected + "]}");
}

TEST_F(Connections, WithQuotesInTheirValuesAreListedAllTheSame) {
    store_items({record_item("rdpItem_id_32", {{"id", "32"}, {"name", "a\"b"}, {"domain", "|"}})});
    EXPECT_EQ(text_of(connections_of(1)),
              "{\"list\":[" +
                  listed_record({{"id", "32"}, {"name", "a\\\"b"}, {"domain", "\\\\"}}) + "]}");
}

TEST_F(Connections, KeepTheIdThatDisagreesWithTheirName) {
    store_items({{"rdpItem_id_32", {{"id", "40"}}}});
    EXPECT_EQ(text_of(connections_of(1)), "{\"list\":[" + listed_record({{"id", "40"}}) + "]}");
}

TEST_F(Connections, ValuesAreCutAt127Bytes) {
    store_items(
        {record_item("rdpItem_id_32", {{"id", "32"}, {"name", std::string(126, 'x') + "ü"}})});
    EXPECT_EQ(text_of(connections_of(1)),
              "{\"list\":[" + listed_record({{"id", "32"}, {"name", std::string(126, 'x')}}) +
                  "]}");
}

// --- Deleting --------------------------------------------------------------------------------

TEST_F(Deletion, TakesTheSlotNotTheId) {
    const Item first = record_item("rdpItem_id_32", {{"id", "32"}});
    const Item fourth = record_item("rdpItem_id_35", {{"id", "35"}});
    const Item last = record_item("rdpItem_id_63", {{"id", "63"}});
    const Item next_block = record_item("rdpItem_id_67", {{"id", "67"}});
    store_items({first, fourth, last, next_block});
    EXPECT_TRUE(delete_connection(1, 3));
    EXPECT_EQ(stored_document(), document_text({first, last, next_block}));
    EXPECT_TRUE(delete_connection(1, 31));
    EXPECT_EQ(stored_document(), document_text({first, next_block}));
    EXPECT_TRUE(delete_connection(1, 35)); // taken for a slot: id 67
    EXPECT_EQ(stored_document(), document_text({first}));
    EXPECT_EQ(log_lines(),
              (Texts{"[INFO] @delconnection type = 1, id = 3, item_name=rdpItem_id_35",
                     "[INFO] @delconnection type = 1, id = 31, item_name=rdpItem_id_63",
                     "[INFO] @delconnection type = 1, id = 35, item_name=rdpItem_id_67"}));
}

TEST_F(Deletion, OfAnAbsentRecordIsNoError) {
    EXPECT_TRUE(delete_connection(9, 2));
    EXPECT_FALSE(test::file_exists(test::document_path));
    store_items({record_item("firefox_id_288", {{"id", "288"}})});
    EXPECT_TRUE(delete_connection(9, 2));
    EXPECT_EQ(stored_document(), document_text({record_item("firefox_id_288", {{"id", "288"}})}));
    EXPECT_EQ(log_lines(),
              (Texts{"[INFO] @delconnection type = 9, id = 2, item_name=firefox_id_290",
                     "[INFO] @delconnection type = 9, id = 2, item_name=firefox_id_290"}));
}

TEST_F(Deletion, RemovesEveryItemOfTheName) {
    store_items({record_item("rdpItem_id_32", {{"id", "32"}}),
                 record_item("rdpItem_id_33", {{"id", "33"}}),
                 record_item("rdpItem_id_32", {{"id", "32"}})});
    EXPECT_TRUE(delete_connection(1, 0));
    EXPECT_EQ(stored_document(), document_text({record_item("rdpItem_id_33", {{"id", "33"}})}));
}

TEST_F(Deletion, LogsASlotAsASignedNumber) {
    delete_connection(1, 4294967295U);
    EXPECT_EQ(log_lines(),
              Texts{"[INFO] @delconnection type = 1, id = -1, item_name=rdpItem_id_31"});
}

} // namespace qvtc::connections
