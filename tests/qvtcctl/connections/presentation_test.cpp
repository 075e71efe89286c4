#include "qvtcctl/connections/presentation.hpp"

#include "qvtcctl/connections/password.hpp"

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

Record example() {
    const ConnectionType& type = *find_type("horizon");
    Record record;
    record.set_identity(160, type);
    record[field_index("name")] = "\xE4\xB8\xAD";
    record[field_index("serverAddress")] = "10.0.0.5";
    record[field_index("desktop")] = "57696e3130";
    record[field_index("password")] = stored_password(type, "secret");
    return record;
}

TEST(QvtcctlPresentation, ListHidesPasswords) {
    EXPECT_EQ(list_text({example()}, Passwords::hidden),
              "ID   TYPE     NAME  ADDRESS   USER  PASSWORD\n"
              "160  horizon  \xE4\xB8\xAD    10.0.0.5  -     (set)\n");
    EXPECT_EQ(list_text({example()}, Passwords::readable),
              "ID   TYPE     NAME  ADDRESS   USER  PASSWORD\n"
              "160  horizon  \xE4\xB8\xAD    10.0.0.5  -     secret\n");
}

TEST(QvtcctlPresentation, APasswordThatNobodyCanReadIsSaidToBeSet) {
    Record record = example();
    record[field_index("password")] = "%%%";
    EXPECT_EQ(shown_value(record, field_index("password"), Passwords::readable),
              "(set, but not readable)");
}

TEST(QvtcctlPresentation, RecordShowsFieldsWithTheirMeaning) {
    EXPECT_EQ(record_text(example(), Passwords::hidden, false),
              "FIELD          VALUE                 MEANING\n"
              "id             160                   number of the connection\n"
              "type           horizon               number of its type\n"
              "name           \xE4\xB8\xAD                    name shown in lists; title of an RDP "
              "window\n"
              "serverAddress  10.0.0.5              server name or address; web: the page\n"
              "password       (set)                 password of the user\n"
              "desktop        57696e3130 (\"Win10\")  desktop name, as hexadecimal text\n");
}

TEST(QvtcctlPresentation, JsonHasTheIdAsNumberAndTheTypeAsName) {
    EXPECT_EQ(to_line(record_json(example(), Passwords::stored, false)),
              "{ \"id\": 160, \"type\": \"horizon\", \"name\": \"\xE4\xB8\xAD\", "
              "\"serverAddress\": \"10.0.0.5\", \"password\": \"c2VjcmV0\", \"desktop\": "
              "\"57696e3130\" }\n");
    EXPECT_EQ(json_object_object_length(record_json(Record(), Passwords::hidden, true).get()), 51);
}

} // namespace
} // namespace qvtc::qvtcctl
