#include "system/system_information.hpp"

#include <string>

#include "core/os.hpp"
#include "core/text.hpp"
#include "network/wifi_hardware.hpp"
#include "system/host_name.hpp"
#include "system/machine.hpp"
#include "system/system_facts.hpp"

namespace qvtc::system {

namespace {

class Facts {
  public:
    Facts() {
        for (std::size_t i = 0; i < fact_table.size(); ++i) texts_[i] = fact_table[i].unless_known;
    }

    void set(Fact fact, std::string text) {
        texts_[static_cast<std::size_t>(fact)] = cut(std::move(text), fact_size - 1);
    }

    Json to_json() const {
        Json object = json_map();
        for (std::size_t i = 0; i < fact_table.size(); ++i) {
            add_member(object, fact_table[i].member, json_string(texts_[i]));
        }
        return object;
    }

  private:
    std::array<std::string, fact_table.size()> texts_;
};

void set_hardware_address(Facts& facts, Fact fact, const char* device) {
    if (const auto address = hardware_address(device)) facts.set(fact, *address);
}

/// The time stamp that a tool has left in a file.
void set_date(Facts& facts, Fact fact, const char* path) {
    if (!os().exists(path)) return;
    std::string stamp = os().capture(textf("cat %s |grep [0-9]", path), fact_size);
    if (!stamp.empty()) stamp.pop_back(); // the newline
    facts.set(fact, stamp);
}

} // namespace

Json system_information() {
    Facts facts;
    const std::string name = host_name();
    facts.set(Fact::product_name, name); // Deliberate: both carry the same text
    facts.set(Fact::host_name, name);
    facts.set(Fact::processor, processor_name());
    facts.set(Fact::memory, textf("%dGB", memory_capacity()));
    facts.set(Fact::storage, textf("%dGB", static_cast<int>(storage_capacity().value_or(8))));
    set_hardware_address(facts, Fact::wired_address, "eth0");
    if (network::wireless_present()) set_hardware_address(facts, Fact::wireless_address, "wlan0");
    facts.set(Fact::product_key, model_code());
    set_date(facts, Fact::update_date, "/home/root/lastupdate");
    set_date(facts, Fact::logo_date, "/home/root/logoupdate");
    if (contains(os().capture("uname -a", 128), "5.14.3")) facts.set(Fact::device_type, "x86RX16");
    return facts.to_json();
}

} // namespace qvtc::system
