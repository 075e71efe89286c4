#include "api/vendor_data.hpp"

#include "core/base64.hpp"
#include "support/scripted_os.hpp"
#include "support/support.hpp"

#include <cstring>
#include <gtest/gtest.h>
#include <set>
#include <thread>

extern "C" {
extern char buffer[204800];
extern char goemdata[102400];
extern char gfeature[102400];
}

namespace qvtc::api {

namespace {

using Texts = std::vector<std::string>;

/// A store that holds what a test puts there, and empty caches.
class VendorData : public testing::Test {
  protected:
    VendorData() {
        std::memset(goemdata, 0, sizeof goemdata);
        std::memset(gfeature, 0, sizeof gfeature);
        std::strcpy(buffer, "before");
    }

    void store(unsigned key, const std::string& value) { print(key, base64::encode(value)); }
    /// What the program prints, which need not be base64.
    void print(unsigned key, const std::string& output) {
        system.replies["qvplugin 0 " + std::to_string(key)] = output;
    }

    test::ScriptedOs system;
};

std::string text_of(const Json& object) {
    if (!object) return "null";
    return json_object_to_json_string_ext(object.get(), JSON_C_TO_STRING_PLAIN);
}

/// A JSON object in single quotes whose text has that length.
std::string object_of(std::size_t length, char quote = '\'') {
    const std::string q(1, quote);
    return "{" + q + "a" + q + ":" + q + std::string(length - 8, 'x') + q + "}";
}

std::string in_double_quotes(std::string text) {
    for (char& c : text) c = c == '\'' ? '"' : c;
    return text;
}

/// With every byte escaped.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        char pair[4];
        std::snprintf(pair, sizeof pair, "%%%02x", static_cast<unsigned>(c) & 255U);
        result += pair;
    }
    return result;
}

constexpr unsigned marker = 23;
constexpr unsigned features = 42;
constexpr unsigned info = 50;
constexpr unsigned data = 56;

} // namespace

// --- Marker and information ------------------------------------------------------------------

TEST_F(VendorData, MarkerIsParsedFromSingleQuotes) {
    store(marker, "{'value':'1','name':'x y'}");
    EXPECT_EQ(text_of(vendor_marker()), R"({"value":"1","name":"x y"})");
    EXPECT_STREQ(buffer, R"({"value":"1","name":"x y"})");
    EXPECT_EQ(system.record, Texts{"capture 102400 qvplugin 0 23"});
}

TEST_F(VendorData, InfoIsParsedAsItIs) {
    store(info, R"({"a":"it's"})");
    EXPECT_EQ(text_of(vendor_info()), R"({"a":"it's"})");
    EXPECT_STREQ(buffer, R"({"a":"it's"})");
    EXPECT_EQ(system.record, Texts{"capture 102400 qvplugin 0 50"});
}

TEST_F(VendorData, NothingStoredIsNullAndClearsTheScratchArea) {
    EXPECT_EQ(text_of(vendor_marker()), "null");
    EXPECT_STREQ(buffer, "");
    std::strcpy(buffer, "{}");
    EXPECT_EQ(text_of(vendor_info()), "null");
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(text_of(vendor_data()), "null");
    EXPECT_EQ(text_of(vendor_features()), "null");
}

TEST_F(VendorData, MarkerAndInfoMustFitTheirBuffers) {
    store(marker, object_of(1023));
    EXPECT_EQ(text_of(vendor_marker()), object_of(1023, '"'));
    store(marker, object_of(1024));
    EXPECT_EQ(text_of(vendor_marker()), "null");
    store(info, object_of(10'239, '"'));
    EXPECT_EQ(text_of(vendor_info()), object_of(10'239, '"'));
    store(info, object_of(10'240, '"'));
    EXPECT_EQ(text_of(vendor_info()), "null");
}

TEST_F(VendorData, MarkerAndInfoAreReadAnewEachTime) {
    store(marker, "{}");
    EXPECT_EQ(text_of(vendor_marker()), "{}");
    store(marker, "[1]");
    const Json first = vendor_marker();
    EXPECT_EQ(text_of(first), "[1]");
    EXPECT_NE(first.get(), vendor_marker().get());
}

// --- Data ------------------------------------------------------------------------------------

TEST_F(VendorData, DataIsUnescapedAndItsQuotesTurned) {
    store(data, base64::encode("{'a':'%41%7a','b':'50%','c':'%zz'}"));
    EXPECT_EQ(text_of(vendor_data()), R"({"a":"Az","b":"50%","c":"%zz"})");
    EXPECT_STREQ(goemdata, R"({"a":"Az","b":"50%","c":"%zz"})");
    store(data, base64::encode(escaped("{'a':'b'}")));
    EXPECT_EQ(text_of(vendor_data()), R"({"a":"b"})");
    EXPECT_STREQ(buffer, "before"); // it has a place of its own
    EXPECT_EQ(system.record, Texts(2, "capture 102400 qvplugin 0 56"));
}

TEST_F(VendorData, DataOfMoreThan500CharactersIsKept) {
    store(data, base64::encode(object_of(500)));
    EXPECT_EQ(text_of(vendor_data()), object_of(500, '"'));
    store(data, base64::encode(object_of(501)));
    EXPECT_EQ(text_of(vendor_data()), object_of(501, '"')); // the former was short enough
    store(data, base64::encode("{}"));
    system.record.clear();
    EXPECT_EQ(text_of(vendor_data()), object_of(501, '"'));
    EXPECT_EQ(system.record, Texts{});
    EXPECT_EQ(std::string(goemdata), object_of(501, '"'));
}

TEST_F(VendorData, ShortDataIsForgottenWhenTheStoreLosesIt) {
    store(data, base64::encode("{}"));
    EXPECT_EQ(text_of(vendor_data()), "{}");
    print(data, "");
    EXPECT_EQ(text_of(vendor_data()), "null");
    EXPECT_STREQ(goemdata, "");
}

TEST_F(VendorData, DataThatIsNoBase64StaysAsItIs) {
    store(data, "{'a':1}"); // seven characters
    EXPECT_EQ(text_of(vendor_data()), R"({"a":1})");
    EXPECT_STREQ(goemdata, R"({"a":1})");
    store(data, "12345");
    EXPECT_EQ(text_of(vendor_data()), "12345");
    store(data, "????"); // decodes to NULs, that is to nothing
    EXPECT_EQ(text_of(vendor_data()), "null");
    EXPECT_STREQ(goemdata, "????");
    store(data, base64::encode("%00{}"));
    EXPECT_EQ(text_of(vendor_data()), "null");
    EXPECT_STREQ(goemdata, "");
}

TEST_F(VendorData, LargeDataIsWhole) {
    // As large as what the program prints can be: base64 of base64.
    const std::string text = object_of(57'000);
    store(data, base64::encode(text));
    EXPECT_TRUE(text_of(vendor_data()) == in_double_quotes(text));
}

TEST_F(VendorData, CacheThatAFrontEndHasFilledIsReadWithinItsBounds) {
    std::memset(goemdata, 'x', sizeof goemdata);
    std::memset(gfeature, '7', sizeof gfeature);
    EXPECT_EQ(text_of(vendor_data()), "null");
    EXPECT_NE(text_of(vendor_features()), "");
    EXPECT_EQ(system.record, Texts{});
}

// --- Features --------------------------------------------------------------------------------

TEST_F(VendorData, FeaturesOf100CharactersOrFewerAreNull) {
    store(features, object_of(100, '"'));
    EXPECT_EQ(text_of(vendor_features()), "null");
    EXPECT_EQ(std::string(gfeature), object_of(100, '"'));
    store(features, object_of(101, '"'));
    EXPECT_EQ(text_of(vendor_features()), object_of(101, '"'));
    EXPECT_EQ(system.record, Texts(2, "capture 102400 qvplugin 0 42"));
}

TEST_F(VendorData, FeaturesOfMoreThan100CharactersAreKept) {
    store(features, object_of(101, '"'));
    EXPECT_EQ(text_of(vendor_features()), object_of(101, '"'));
    print(features, "");
    EXPECT_EQ(text_of(vendor_features()), object_of(101, '"'));
    EXPECT_EQ(system.record.size(), 1U);
}

TEST_F(VendorData, FeaturesAreNotConverted) {
    const std::string text = R"({"a":"it's","b":")" + std::string(100, '%') + "\"}";
    store(features, text);
    EXPECT_EQ(text_of(vendor_features()), text);
    EXPECT_EQ(std::string(gfeature), text);
}

// --- Hostile values --------------------------------------------------------------------------

TEST_F(VendorData, NothingStoredCrashesAGetter) {
    const std::string values[] = {"",
                                  "a",
                                  "{",
                                  "}",
                                  "'",
                                  "{'a':",
                                  "null",
                                  "{'a':'\xff\xfe'}",
                                  "\xff\xfe\xfd\xfc",
                                  std::string("{'a':'\0'}", 9),
                                  "%",
                                  "%4",
                                  "%%%s%n",
                                  "{'a':'\\u0000'}",
                                  "1e999999",
                                  "-",
                                  std::string(501, '\''),
                                  std::string(10'239, '\''),
                                  std::string(10'240, '{'),
                                  std::string(76'800, '%'),
                                  std::string(100'000, '['),
                                  std::string(100'000, 'A'),
                                  std::string(102'399, '='),
                                  object_of(76'000)};
    for (const std::string& value : values) {
        for (const std::string& output :
             {value, base64::encode(value), base64::encode(base64::encode(value))}) {
            std::memset(goemdata, 0, sizeof goemdata);
            std::memset(gfeature, 0, sizeof gfeature);
            for (const unsigned key : {marker, features, info, data}) print(key, output);
            for (Json (*const getter)() :
                 {vendor_marker, vendor_info, vendor_data, vendor_features}) {
                EXPECT_NE(text_of(getter()), "");
            }
        }
    }
}

// With a program, as the scripted system is for one thread.
TEST(VendorDataThreads, EveryCallGivesAWholeObject) {
    std::memset(goemdata, 0, sizeof goemdata);
    std::memset(gfeature, 0, sizeof gfeature);
    // Short enough to be read anew each time, once this and once that.
    const std::string texts[] = {object_of(60), object_of(450)};
    const std::set<std::string> whole = {in_double_quotes(texts[0]), in_double_quotes(texts[1])};
    test::StandIn program("qvplugin");
    program.runs("texts=(" + base64::encode(texts[0]) + " " + base64::encode(texts[1]) +
                 ")\n"
                 "text=${texts[RANDOM % 2]}\n"
                 "[ $2 != 56 ] || text=$(printf %s \"$text\" | base64 -w 0)\n"
                 "printf %s \"$text\"");
    const auto ask = [&] {
        for (int i = 0; i < 30; ++i) {
            EXPECT_TRUE(whole.contains(text_of(vendor_data())));
            EXPECT_TRUE(whole.contains(text_of(vendor_marker())));
            EXPECT_TRUE(whole.contains(text_of(vendor_info())));
            const std::string told = text_of(vendor_features());
            EXPECT_TRUE(told == "null" || told == in_double_quotes(texts[1]));
        }
    };
    std::thread other(ask);
    ask();
    other.join();
}

} // namespace qvtc::api
