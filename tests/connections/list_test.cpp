#include "connections/list.hpp"

#include "connections/documents.hpp"
#include "connections/fields.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>

namespace qvtc::connections {

namespace {

class ConnectionList : public test::FreshTerminal {};
class ConnectDelay : public test::FreshTerminal {};

using test::capture_stdout;
using test::document_text;
using test::full_block;
using test::Item;
using test::Items;
using test::log_lines;
using test::record_item;
using test::store_items;
using test::stored_document;
using test::stored_value;
using test::Values;

using Texts = std::vector<std::string>;

std::string text_of(const Json& json) {
    return json_object_to_json_string_ext(json.get(),
                                          JSON_C_TO_STRING_PLAIN | JSON_C_TO_STRING_NOSLASHESCAPE);
}

} // namespace

// --- A number that is no type ----------------------------------------------------------------

TEST_F(ConnectionList, ANumberThatIsNoTypeIsNamedOnStandardOutput) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {6, "@getConnectItemName:: not such connection type : 6\n"},
        {10, "@getConnectItemName:: not such connection type : 10\n"},
        {4294967295U, "@getConnectItemName:: not such connection type : -1\n"},
    };
    for (const auto& [number, line] : cases) {
        EXPECT_EQ(capture_stdout([asked = number] { EXPECT_FALSE(known_type(asked).has_value()); }),
                  line);
    }
    EXPECT_EQ(capture_stdout([] { EXPECT_STREQ(known_type(9)->prefix, "firefox"); }), "");
}

TEST_F(ConnectionList, EveryOperationRefusesANumberThatIsNoType) {
    store_items({record_item("rdpItem_id_32", {{"id", "32"}})});
    const std::string before = stored_document();
    for (const std::uint32_t type : {6U, 10U}) {
        EXPECT_EQ(free_id(type), std::nullopt);
        EXPECT_FALSE(store_connection(type, "name=Office"));
        EXPECT_EQ(text_of(connection(type, 32)), "{}");
        EXPECT_EQ(text_of(connections_of(type)), R"({"list":[]})");
        EXPECT_FALSE(delete_connection(type, 0));
    }
    EXPECT_EQ(stored_document(), before);
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] @setconnections not such connection type : 6",
                                  "[ERROR] @setconnections not such connection type : 10"}));
}

// --- A free id -------------------------------------------------------------------------------

TEST_F(ConnectionList, TheSearchForAFreeIdPrintsWhatItLooksAt) {
    EXPECT_EQ(capture_stdout([] { EXPECT_EQ(free_id(5), 160U); }), "");
    store_items({{"vmwareItem_id_163", {{"id", "163"}}},
                 {"vmwareItem_id_160", {{"id", "160"}}},
                 {"vmwareItem_id_161", {{"id", "161"}}}});
    EXPECT_EQ(capture_stdout([] { EXPECT_EQ(free_id(5), 162U); }), "id_list[0]=160, k=160\n"
                                                                   "id_list[1]=161, k=161\n"
                                                                   "id_list[2]=163, k=163\n"
                                                                   "ids[0]=160\n"
                                                                   "ids[1]=161\n"
                                                                   "ids[2]=163\n");
    store_items({{"rdpItem_id_33", {{"id", "40"}}}, {"rdpItem_id_32", {{"id", "x"}}}});
    EXPECT_EQ(capture_stdout([] { EXPECT_EQ(free_id(1), 32U); }), "id_list[0]=x, k=32\n"
                                                                  "id_list[1]=40, k=33\n"
                                                                  "ids[0]=0\n"
                                                                  "ids[1]=40\n");
    EXPECT_EQ(log_lines(), Texts{});
}

TEST_F(ConnectionList, AFullBlockHasNoFreeId) {
    store_items(full_block(1, "rdpItem"));
    EXPECT_EQ(free_id(1), std::nullopt);
    EXPECT_EQ(log_lines(), Texts{"[INFO] @getfreeid not found free id"});
}

// --- Adding and modifying --------------------------------------------------------------------

TEST_F(ConnectionList, RecordsAreAddedUnderTheLowestFreeId) {
    EXPECT_EQ(capture_stdout([] { EXPECT_TRUE(store_connection(1, "name=first&type=1")); }), "");
    EXPECT_EQ(capture_stdout([] { EXPECT_TRUE(store_connection(1, "name=second&type=1")); }),
              "id_list[0]=32, k=32\nids[0]=32\n");
    const Item first =
        record_item("rdpItem_id_32", {{"id", "32"}, {"type", "1"}, {"name", "first"}});
    const Item second =
        record_item("rdpItem_id_33", {{"id", "33"}, {"type", "1"}, {"name", "second"}});
    EXPECT_EQ(stored_document(), document_text({first, second}));

    EXPECT_TRUE(delete_connection(1, 0));
    EXPECT_EQ(stored_document(), document_text({second}));

    EXPECT_TRUE(store_connection(1, "name=third&type=1"));
    EXPECT_EQ(
        stored_document(),
        document_text({second, record_item("rdpItem_id_32",
                                           {{"id", "32"}, {"type", "1"}, {"name", "third"}})}));
}

TEST_F(ConnectionList, EveryFieldOfTheParametersIsStored) {
    std::string params;
    Values expected{{"id", "288"}};
    for (std::size_t i = 1; i < field_count; ++i) {
        params += (i > 1 ? "&" : "") + std::string(field_names[i]) + "=value " + std::to_string(i);
        expected.emplace_back(field_names[i], "value " + std::to_string(i));
    }
    EXPECT_TRUE(store_connection(9, params));
    EXPECT_EQ(stored_document(), document_text({record_item("firefox_id_288", expected)}));
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] getJsonValue error! key = id", ""}));
}

TEST_F(ConnectionList, EveryTypeStoresUnderItsOwnPrefix) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0, "velopaneItem_id_0"}, {1, "rdpItem_id_32"},     {2, "spiceItem_id_64"},
        {3, "ovirtItem_id_96"},   {4, "citrixItem_id_128"}, {5, "vmwareItem_id_160"},
        {7, "vncItem_id_224"},    {8, "hdpItem_id_256"},    {9, "firefox_id_288"},
    };
    Items expected;
    for (const auto& [type, item] : cases) {
        EXPECT_TRUE(store_connection(type, "name=" + std::to_string(type)));
        expected.push_back(
            record_item(item, {{"id", std::to_string(type * 32)}, {"name", std::to_string(type)}}));
    }
    EXPECT_EQ(stored_document(), document_text(expected));
}

TEST_F(ConnectionList, AnEmptyIdMeansANewRecord) {
    EXPECT_TRUE(store_connection(1, "id=&name=Office"));
    EXPECT_EQ(stored_document(),
              document_text({record_item("rdpItem_id_32", {{"id", "32"}, {"name", "Office"}})}));
}

TEST_F(ConnectionList, ModifyingReplacesTheWholeRecordInItsPlace) {
    store_items({record_item("rdpItem_id_32", {{"id", "32"}}),
                 record_item("rdpItem_id_35", {{"id", "35"}, {"name", "old"}, {"domain", "D"}}),
                 record_item("rdpItem_id_36", {{"id", "36"}})});
    EXPECT_EQ(capture_stdout([] { EXPECT_TRUE(store_connection(1, "id=35&name=new&port=1")); }),
              "");
    EXPECT_EQ(
        stored_document(),
        document_text({record_item("rdpItem_id_32", {{"id", "32"}}),
                       record_item("rdpItem_id_35", {{"id", "35"}, {"name", "new"}, {"port", "1"}}),
                       record_item("rdpItem_id_36", {{"id", "36"}})}));
}

TEST_F(ConnectionList, AnIdOutOfTheBlockIsStoredAndNeverListed) {
    EXPECT_TRUE(store_connection(1, "id=160&name=stray"));
    EXPECT_EQ(stored_document(),
              document_text({record_item("rdpItem_id_160", {{"id", "160"}, {"name", "stray"}})}));
    EXPECT_EQ(text_of(connections_of(1)), R"({"list":[]})");
    EXPECT_EQ(text_of(connections_of(5)), R"({"list":[]})");
}

TEST_F(ConnectionList, AnIdIsUsedAsItIsWritten) {
    EXPECT_TRUE(store_connection(1, "id=035&name=odd"));
    EXPECT_TRUE(store_connection(1, "id=x-1&name=odder"));
    EXPECT_EQ(stored_document(),
              document_text({record_item("rdpItem_id_035", {{"id", "035"}, {"name", "odd"}}),
                             record_item("rdpItem_id_x-1", {{"id", "x-1"}, {"name", "odder"}})}));
}

TEST_F(ConnectionList, TheThirtyThirdRecordIsRefused) {
    store_items(full_block(1, "rdpItem"));
    const std::string before = stored_document();
    EXPECT_FALSE(store_connection(1, "name=one too many"));
    EXPECT_EQ(stored_document(), before);
    EXPECT_EQ(log_lines(), (Texts{"[ERROR] getJsonValue error! key = id", "",
                                  "[INFO] @getfreeid not found free id",
                                  "[ERROR] @setconnections not free id"}));
    // The other blocks are still open.
    EXPECT_TRUE(store_connection(2, "name=SPICE"));
}

TEST_F(ConnectionList, ABackslashIsNotStored) {
    EXPECT_TRUE(store_connection(1, R"(name=a\b\\c\&domain=\D\nx\u0041&workDir=C:\dir)"));
    EXPECT_EQ(stored_document(),
              document_text({record_item(
                  "rdpItem_id_32",
                  {{"id", "32"}, {"name", "abc"}, {"domain", "Dnxu0041"}, {"workDir", "C:dir"}})}));
}

TEST_F(ConnectionList, DeliberatelyAControlCharacterIsStoredAsTheLettersOfItsEscape) {
    EXPECT_TRUE(store_connection(1, "name=two\nlines&domain=a\tb\x01\x7f"));
    EXPECT_EQ(
        stored_document(),
        document_text({record_item(
            "rdpItem_id_32", {{"id", "32"}, {"name", "twonlines"}, {"domain", "atbu0001\x7f"}})}));
}

TEST_F(ConnectionList, ASlashIsStoredAsItIs) {
    EXPECT_TRUE(store_connection(9, "serverAddress=https://portal/x/"));
    EXPECT_EQ(stored_value("firefox_id_288", "serverAddress"), "https://portal/x/");
}

TEST_F(ConnectionList, AValueIsCutAtSixtyThreeBytesBetweenCharacters) {
    EXPECT_TRUE(store_connection(1, "name=" + std::string(62, 'x') +
                                        "ü&domain=" + std::string(64, 'd') +
                                        "&workDir=" + std::string(1023, 'w')));
    EXPECT_EQ(stored_document(),
              document_text({record_item("rdpItem_id_32", {{"id", "32"},
                                                           {"name", std::string(62, 'x')},
                                                           {"domain", std::string(63, 'd')},
                                                           {"workDir", std::string(63, 'w')}})}));
}

TEST_F(ConnectionList, AnAskedIdIsCutLikeEveryField) {
    EXPECT_TRUE(store_connection(1, "id=" + std::string(64, '1')));
    EXPECT_EQ(stored_value("rdpItem_id_" + std::string(63, '1'), "id"), std::string(63, '1'));
}

TEST_F(ConnectionList, PercentAndBarComeBackAsTheDocumentReadsThem) {
    EXPECT_TRUE(store_connection(1, "name=50%|"));
    EXPECT_EQ(stored_value("rdpItem_id_32", "name"), "50&\\");
}

TEST_F(ConnectionList, OfAFieldGivenTwiceTheLastCounts) {
    EXPECT_TRUE(store_connection(1, "name=a&name=b"));
    EXPECT_EQ(stored_value("rdpItem_id_32", "name"), "b");
}

TEST_F(ConnectionList, UnknownNamesAreLeftOut) {
    EXPECT_TRUE(store_connection(1, "name=a&colour=red"));
    EXPECT_EQ(stored_document(),
              document_text({record_item("rdpItem_id_32", {{"id", "32"}, {"name", "a"}})}));
}

TEST_F(ConnectionList, WhatIsNoParameterStringChangesNothing) {
    store_items({record_item("rdpItem_id_32", {{"id", "32"}})});
    const std::string before = stored_document();
    const std::string cases[] = {
        "name",    "name&port=1", "name=a=b",       "name=a\"b",
        "name=\"", "na\"me=x",    "\",\"id\":\"32", "name=x\",\"serverAddress\":\"evil",
    };
    Texts log;
    for (const std::string& params : cases) {
        EXPECT_FALSE(store_connection(1, params)) << params;
        log.push_back("[ERROR] @setconnections not a parameter string (" +
                      std::to_string(params.size()) + " bytes)");
    }
    EXPECT_EQ(stored_document(), before);
    EXPECT_EQ(log_lines(), log);
}

TEST_F(ConnectionList, APasswordDoesNotReachTheLog) {
    for (const char* const params :
         {"name=a&password=c2VjcmV0=", "password=c2VjcmV0&", "rdGatewayPassword=c2VjcmV0&name",
          "name=a&password=\"c2VjcmV0"}) {
        EXPECT_FALSE(store_connection(1, params)) << params;
    }
    EXPECT_EQ(log_lines().size(), 4U);
    EXPECT_EQ(test::read_file("/home/root/system.log").find("c2VjcmV0"), std::string::npos);
}

TEST_F(ConnectionList, AnIdThatIsNoElementNameChangesNothing) {
    store_items({record_item("rdpItem_id_32", {{"id", "32"}})});
    const std::string before = stored_document();
    for (const char* const id : {"3 5", "35;reboot", "<x>", "$(reboot)", "\xff"}) {
        EXPECT_FALSE(store_connection(1, std::string("name=a&id=") + id)) << id;
    }
    EXPECT_EQ(stored_document(), before);
}

TEST_F(ConnectionList, AForeignDocumentIsLeftAlone) {
    test::write_file(test::document_path, "<Other/>\n");
    EXPECT_FALSE(store_connection(1, "name=a"));
    EXPECT_TRUE(delete_connection(1, 0));
    EXPECT_EQ(stored_document(), "<Other/>\n");
}

// --- The delay -------------------------------------------------------------------------------

TEST_F(ConnectDelay, IsNullUntilItIsSet) {
    EXPECT_EQ(connect_delay(), nullptr);
    store_connect_delay("delay=7");
    EXPECT_EQ(text_of(connect_delay()), R"({"delay":"7"})");
    EXPECT_EQ(stored_document(), document_text({{"configItem", {{"tc_config_param_1", "7"}}}}));
}

TEST_F(ConnectDelay, IsTheValueOfTheFirstPairWhateverItsName) {
    const std::pair<const char*, const char*> cases[] = {
        {"delay=7", "7"}, {"delay=5=6", "5"},           {"x=10", "10"},
        {"a b=12", "12"}, {"delay= 8 ", " 8 "},         {"delay=5&next", "5&next"},
        {"delay=0", "0"}, {"delay=5&next=6", "5&next"},
    };
    for (const auto& [params, delay] : cases) {
        store_connect_delay(params);
        EXPECT_EQ(text_of(connect_delay()), "{\"delay\":\"" + std::string(delay) + "\"}") << params;
    }
}

TEST_F(ConnectDelay, WhatIsNoPairStoresNothing) {
    store_connect_delay("delay=7");
    const std::string before = stored_document();
    for (const char* const params : {"", "x", "=5", "delay=", "=", "==5", "delay==5"}) {
        store_connect_delay(params);
        EXPECT_EQ(stored_document(), before) << params;
    }
}

TEST_F(ConnectDelay, IsReadAsFarAs71Bytes) {
    store_items({{"configItem", {{"tc_config_param_1", std::string(70, '1') + "23"}}}});
    EXPECT_EQ(text_of(connect_delay()), "{\"delay\":\"" + std::string(70, '1') + "2\"}");
    store_items({{"configItem", {{"tc_config_param_1", ""}}}});
    EXPECT_EQ(connect_delay(), nullptr);
}

} // namespace qvtc::connections
