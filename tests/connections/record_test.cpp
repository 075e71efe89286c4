#include "connections/record.hpp"

#include "connections/documents.hpp"
#include "support/support.hpp"

#include <gtest/gtest.h>
#include <map>
#include <sstream>

namespace qvtc::connections {

namespace {

class RecordTables : public test::FreshTerminal {};
class RecordFromJson : public test::FreshTerminal {};
class RecordInDocument : public test::FreshTerminal {};
class FreeId : public test::FreshTerminal {};

using test::Items;
using test::record_item;
using test::stored_document;
using test::Values;

using Texts = std::vector<std::string>;

/// The fields of a record that hold something.
std::map<std::string, std::string> filled(const Record& record) {
    std::map<std::string, std::string> values;
    for (std::size_t i = 0; i < field_count; ++i) {
        if (!record.values[i].empty()) values[field_names[i]] = record.values[i];
    }
    return values;
}
using Filled = std::map<std::string, std::string>;

Values numbered_values(const std::string& id) {
    Values values{{"id", id}};
    for (std::size_t i = 1; i < field_count; ++i) {
        values.emplace_back(field_names[i], "value " + std::to_string(i));
    }
    return values;
}

Items records_with_ids(const std::string& prefix, ConnectionId first, ConnectionId last) {
    Items items;
    for (ConnectionId id = first; id <= last; ++id) {
        items.push_back({prefix + "_id_" + std::to_string(id), {{"id", std::to_string(id)}}});
    }
    return items;
}

std::optional<ConnectionId> free_id_of(std::uint32_t type) {
    return find_free_id(store::Document::load(), {type, prefix_of(type)}).free;
}

} // namespace

// --- The tables ------------------------------------------------------------------------------

TEST_F(RecordTables, FieldsAreTheFiftyOneOfTheContractInTheirOrder) {
    std::string names;
    for (const char* const name : field_names) names += std::string(name) + "\n";
    test::expect_golden("connections/field_names.txt", names);
}

TEST_F(RecordTables, EveryFieldNumberStandsForTheNameThatItIsWrittenAs) {
    // The enumerators that others rely on; each is its place in the list above.
    const std::pair<Field, const char*> fields[] = {
        {Field::id, "id"},
        {Field::name, "name"},
        {Field::serverAddress, "serverAddress"},
        {Field::port, "port"},
        {Field::password, "password"},
        {Field::username, "username"},
        {Field::redirectAudio, "redirectAudio"},
        {Field::useCompress, "useCompress"},
        {Field::domain, "domain"},
        {Field::isConnectStart, "isConnectStart"},
        {Field::appFullpath, "appFullpath"},
        {Field::workDir, "workDir"},
        {Field::colorDepth, "colorDepth"},
        {Field::desktopBackground, "desktopBackground"},
        {Field::fontSmooth, "fontSmooth"},
        {Field::visualStyle, "visualStyle"},
        {Field::persistBitmap, "persistBitmap"},
        {Field::rdpPort, "rdpPort"},
        {Field::dragShowContent, "dragShowContent"},
        {Field::widgetAnimate, "widgetAnimate"},
        {Field::useRemoteFX, "useRemoteFX"},
        {Field::localStorage, "localStorage"},
        {Field::useCustomRDPPort, "useCustomRDPPort"},
        {Field::useRedirect, "useRedirect"},
        {Field::desktop, "desktop"},
        {Field::audioPlayOnServer, "audioPlayOnServer"},
        {Field::useRdGateway, "useRdGateway"},
        {Field::rdGatewayAddress, "rdGatewayAddress"},
        {Field::rdGatewayUsername, "rdGatewayUsername"},
        {Field::rdGatewayPassword, "rdGatewayPassword"},
        {Field::rdGatewayDomain, "rdGatewayDomain"},
        {Field::monitorSelect, "monitorSelect"},
        {Field::multimedia, "multimedia"},
        {Field::vmwareProtocol, "vmwareProtocol"},
        {Field::usbRedirection, "usbRedirection"},
        {Field::multiTouch, "multiTouch"},
        {Field::useGFX, "useGFX"},
    };
    for (const auto& [field, name] : fields) EXPECT_STREQ(name_of(field), name);
}

TEST_F(RecordTables, EachTypeHasItsPrefixAndItsBlockOfThirtyTwoIds) {
    struct Row {
        std::uint32_t type;
        const char* first_item;
        const char* last_item;
    };
    const Row rows[] = {
        {0, "velopaneItem_id_0", "velopaneItem_id_31"},
        {1, "rdpItem_id_32", "rdpItem_id_63"},
        {2, "spiceItem_id_64", "spiceItem_id_95"},
        {3, "ovirtItem_id_96", "ovirtItem_id_127"},
        {4, "citrixItem_id_128", "citrixItem_id_159"},
        {5, "vmwareItem_id_160", "vmwareItem_id_191"},
        {7, "vncItem_id_224", "vncItem_id_255"},
        {8, "hdpItem_id_256", "hdpItem_id_287"},
        {9, "firefox_id_288", "firefox_id_319"},
    };
    ASSERT_EQ(std::size(types), std::size(rows));
    for (const Row& row : rows) {
        const char* const prefix = prefix_of(row.type);
        ASSERT_NE(prefix, nullptr) << row.type;
        EXPECT_EQ(item_name(prefix, row.type * ids_per_type), row.first_item);
        EXPECT_EQ(item_name(prefix, row.type * ids_per_type + 31), row.last_item);
    }
}

TEST_F(RecordTables, SixAndEverythingAboveNineIsNoType) {
    for (const std::uint32_t type : {6U, 10U, 11U, 255U, 4294967295U}) {
        EXPECT_EQ(prefix_of(type), nullptr) << type;
    }
}

// --- From JSON -------------------------------------------------------------------------------

TEST_F(RecordFromJson, TakesEveryFieldButTheId) {
    std::ostringstream text;
    text << "{\"id\":\"35\"";
    Filled expected;
    for (std::size_t i = 1; i < field_count; ++i) {
        text << ",\"" << field_names[i] << "\":\"value " << i << "\"";
        expected[field_names[i]] = "value " + std::to_string(i);
    }
    text << "}";
    EXPECT_EQ(filled(record_from_json(parse_json(text.str()).get())), expected);
}

TEST_F(RecordFromJson, GivesPlainTextOfWhateverAMemberIs) {
    const std::pair<const char*, const char*> cases[] = {
        {R"("Office")", "Office"},
        {R"("a/b")", "a/b"},
        {R"("a\\b")", "ab"},
        {R"("say \"hi\"")", "say hi"},
        {R"("")", ""},
        {"7", "7"},
        {"true", "true"},
        {R"({"x":"y"})", "{ x: y }"},
        {R"("B\u00fcro")", "Büro"},
        {R"("two\nlines")", "twonlines"},
    };
    for (const auto& [member, value] : cases) {
        const Json json = parse_json(std::string("{\"name\":") + member + "}");
        EXPECT_EQ(record_from_json(json.get())[Field::name], value) << member;
    }
}

TEST_F(RecordFromJson, CutsAValueAtSixtyThreeBytesBetweenCharacters) {
    const std::string x62(62, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {std::string(62, 'a'), std::string(62, 'a')},
        {std::string(63, 'a'), std::string(63, 'a')},
        {std::string(64, 'a'), std::string(63, 'a')},
        {std::string(1000, 'a'), std::string(63, 'a')},
        {x62 + "ü", x62},
        {std::string(61, 'x') + "ü", std::string(61, 'x') + "ü"},
        {std::string(61, 'x') + "€", std::string(61, 'x')},
        {std::string(60, 'x') + "€", std::string(60, 'x') + "€"},
        {std::string(60, 'x') + "😀", std::string(60, 'x')},
        {std::string(59, 'x') + "😀", std::string(59, 'x') + "😀"},
    };
    for (const auto& [given, kept] : cases) {
        const Json json = parse_json("{\"name\":\"" + given + "\"}");
        EXPECT_EQ(record_from_json(json.get())[Field::name], kept) << given.size();
    }
}

TEST_F(RecordFromJson, ReportsEachMissingField) {
    const Record record = record_from_json(parse_json(R"({"name":"Office"})").get());
    EXPECT_EQ(filled(record), (Filled{{"name", "Office"}}));
    Texts expected;
    for (std::size_t i = 1; i < field_count; ++i) {
        if (field_names[i] == std::string("name")) continue;
        expected.push_back(std::string("[ERROR] getJsonValue error! key = ") + field_names[i]);
        expected.push_back(""); // the message itself ends in a newline
    }
    EXPECT_EQ(test::log_lines(), expected);
}

TEST_F(RecordFromJson, GivesAnEmptyRecordForNoObject) {
    EXPECT_EQ(filled(record_from_json(nullptr)), Filled{});
    EXPECT_EQ(filled(record_from_json(parse_json("{}").get())), Filled{});
}

// --- In the document -------------------------------------------------------------------------

TEST_F(RecordInDocument, AllFieldsAreWrittenInOrderEmptyOnesToo) {
    Record record;
    const Values values = numbered_values("35");
    for (std::size_t i = 0; i < field_count; ++i) record.values[i] = values[i].second;
    record[Field::domain] = "";
    record[Field::useGFX] = "";
    Values expected = values;
    expected[15].second = expected[50].second = "";

    EXPECT_TRUE(store::change_document([&](store::Document& document) {
        return write_record(document, "rdpItem_id_35", record);
    }));
    EXPECT_EQ(stored_document(), test::document_text({record_item("rdpItem_id_35", expected)}));
}

TEST_F(RecordInDocument, AnItemNameThatXmlRefusesIsNotWritten) {
    EXPECT_TRUE(store::change_document([&](store::Document& document) {
        return write_record(document, "rdpItem_id_3 5", Record());
    }));
    EXPECT_FALSE(test::file_exists(test::document_path));
}

TEST_F(RecordInDocument, IsReadBackAsItWasStored) {
    test::store_items({record_item("rdpItem_id_35", numbered_values("35"))});
    const Record record = stored_record(1, 35);
    Filled expected;
    for (const auto& [name, value] : numbered_values("35")) expected[name] = value;
    EXPECT_EQ(filled(record), expected);
}

TEST_F(RecordInDocument, AmpersandAndBackslashComeBackFromTheirStoredForm) {
    test::store_items({record_item("firefox_id_290", {{"serverAddress", "http://x/?a=1%b=|2"}})});
    EXPECT_EQ(stored_record(9, 290)[Field::serverAddress], "http://x/?a=1&b=\\2");
}

TEST_F(RecordInDocument, AnAbsentRecordReadsAsEmptyFields) {
    EXPECT_EQ(filled(stored_record(1, 35)), Filled{}); // no document at all
    test::store_items({record_item("rdpItem_id_36", numbered_values("36"))});
    EXPECT_EQ(filled(stored_record(1, 35)), Filled{});
    EXPECT_EQ(filled(stored_record(2, 36)), Filled{});
}

TEST_F(RecordInDocument, ALaunchedRecordIsCutToTheSizeOfAField) {
    test::store_items({record_item("rdpItem_id_35", {{"name", std::string(62, 'x') + "ü"}})});
    EXPECT_EQ(stored_record(1, 35)[Field::name], std::string(62, 'x'));
    EXPECT_EQ(read_record(store::Document::load(), "rdpItem_id_35", 127)[Field::name],
              std::string(62, 'x') + "ü");
}

// --- A free id -------------------------------------------------------------------------------

TEST_F(FreeId, IsTheLowestOfTheBlockThatNoRecordHas) {
    EXPECT_EQ(free_id_of(5), 160U);
    test::store_items({{"vmwareItem_id_160", {{"id", "160"}}},
                       {"vmwareItem_id_161", {{"id", "161"}}},
                       {"vmwareItem_id_163", {{"id", "163"}}}});
    EXPECT_EQ(free_id_of(5), 162U);
    EXPECT_EQ(free_id_of(1), 32U);
}

TEST_F(FreeId, IsTheFirstOfEachEmptyBlockAndTheLastOfANearlyFullOne) {
    for (const Type& type : types) {
        const ConnectionId base = type.number * 32;
        EXPECT_EQ(free_id_of(type.number), base);
        test::store_items(records_with_ids(type.prefix, base, base + 30));
        EXPECT_EQ(free_id_of(type.number), base + 31);
        test::store_items(records_with_ids(type.prefix, base, base + 31));
        EXPECT_EQ(free_id_of(type.number), std::nullopt);
        test::store_items(records_with_ids(type.prefix, base + 1, base + 31));
        EXPECT_EQ(free_id_of(type.number), base);
        test::store_items({});
    }
}

TEST_F(FreeId, ARecordWithAnEmptyIdCountsAsAbsent) {
    test::store_items({{"rdpItem_id_32", {{"id", ""}, {"name", "Office"}}},
                       {"rdpItem_id_33", {{"name", "Office"}}}});
    const FreeIdSearch search = find_free_id(store::Document::load(), {1, "rdpItem"});
    EXPECT_EQ(search.numbers(), std::vector<int>{});
    EXPECT_EQ(search.free, 32U);
}

TEST_F(FreeId, ARecordBlocksTheNumberInItsIdNotTheOneInItsName) {
    test::store_items({{"rdpItem_id_32", {{"id", "33"}}}, {"rdpItem_id_40", {{"id", "32x"}}}});
    const FreeIdSearch search = find_free_id(store::Document::load(), {1, "rdpItem"});
    ASSERT_EQ(search.taken.size(), 2U);
    EXPECT_EQ(search.taken[0].text, "33");
    EXPECT_EQ(search.taken[0].in, 32U);
    EXPECT_EQ(search.taken[1].text, "32x");
    EXPECT_EQ(search.taken[1].in, 40U);
    EXPECT_EQ(search.numbers(), (std::vector<int>{33, 32}));
    EXPECT_EQ(search.free, 34U);
}

TEST_F(FreeId, RecordsOutOfTheBlockAreNotLookedAt) {
    test::store_items({{"rdpItem_id_31", {{"id", "32"}}}, {"rdpItem_id_64", {{"id", "33"}}}});
    const FreeIdSearch search = find_free_id(store::Document::load(), {1, "rdpItem"});
    EXPECT_EQ(search.numbers(), std::vector<int>{});
    EXPECT_EQ(search.free, 32U);
}

TEST_F(FreeId, AnIdIsLookedAtAsFarAsAFieldHolds) {
    test::store_items({{"rdpItem_id_32", {{"id", std::string(62, '0') + "329"}}}});
    const FreeIdSearch search = find_free_id(store::Document::load(), {1, "rdpItem"});
    ASSERT_EQ(search.taken.size(), 1U);
    EXPECT_EQ(search.taken[0].text, std::string(62, '0') + "3");
}

} // namespace qvtc::connections
