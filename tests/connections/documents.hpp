#pragma once

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

/// Settings documents as they lie on a terminal, written and compared as text.
namespace qvtc::test {

/// A test that begins as if its terminal had just been switched on for the first time, also when
/// others have run in the same terminal: no document, no logs, no marker files, nothing recorded.
class FreshTerminal : public testing::Test {
  protected:
    FreshTerminal();
};

inline constexpr const char* document_path = "/home/root/vpclientData.xml";

using Values = std::vector<std::pair<std::string, std::string>>;

/// An element under the root, with its children in order.
struct Item {
    std::string name;
    Values values;
};
using Items = std::vector<Item>;

/// The document that holds just these items, to the byte as the library saves it. The values
/// are in their stored form ("%" for "&", "|" for a backslash).
std::string document_text(const Items& items);

/// Replaces the terminal's document by the one that holds just these items.
void store_items(const Items& items);

/// All fields of a record, in their order: the given values, the others empty.
Values record_values(const Values& given);

/// An item with all fields of a record.
Item record_item(const std::string& name, const Values& given);

/// A record with all its fields as the getters hand it over, in json-c's compact form.
std::string listed_record(const Values& given);

/// The records of a type's block, from its first id to its last, with nothing but their ids.
Items full_block(unsigned type, const std::string& prefix);

/// What the terminal's document holds now; empty without a document.
std::string stored_document();

/// The text of a key in the terminal's document; empty when it has none.
std::string stored_value(const std::string& item, const std::string& key);

/// The value of one of the settings under "configItem".
std::string stored_setting(const std::string& key);

} // namespace qvtc::test
