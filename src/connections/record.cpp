#include "connections/record.hpp"

#include <algorithm>
#include <cstdlib>

#include "core/text.hpp"

namespace qvtc::connections {

Record record_from_json(json_object* json) {
    Record record;
    for (std::size_t i = 1; i < field_count; ++i) {
        record.values[i] = cut(json_plain_text(json, field_names[i]).value_or(""), field_limit);
    }
    return record;
}

Record read_record(const store::Document& document, const std::string& item, std::size_t limit) {
    Record record;
    std::vector<std::string> values = document.get_all(item, field_names);
    for (std::size_t i = 0; i < field_count; ++i)
        record.values[i] = cut(std::move(values[i]), limit);
    return record;
}

bool write_record(store::Document& document, const std::string& item, const Record& record) {
    return document.set_all(item, field_names, record.values);
}

Record stored_record(std::uint32_t type, ConnectionId id) {
    return read_record(store::Document::load(), item_name(prefix_of(type), id), field_limit);
}

std::vector<int> FreeIdSearch::numbers() const {
    std::vector<int> numbers;
    for (const Taken& record : taken) numbers.push_back(std::atoi(record.text.c_str()));
    return numbers;
}

FreeIdSearch find_free_id(const store::Document& document, const Type& type) {
    FreeIdSearch search;
    const ConnectionId base = type.number * ids_per_type;
    for (ConnectionId id = base; id < base + ids_per_type; ++id) {
        const auto text = document.get(item_name(type.prefix, id), name_of(Field::id));
        if (text) search.taken.push_back({cut(*text, field_limit), id});
    }
    const std::vector<int> used = search.numbers();
    for (ConnectionId id = base; id < base + ids_per_type && !search.free; ++id) {
        if (std::find(used.begin(), used.end(), static_cast<int>(id)) == used.end())
            search.free = id;
    }
    return search;
}

} // namespace qvtc::connections
