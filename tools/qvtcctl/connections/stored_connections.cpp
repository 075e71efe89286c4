#include "qvtcctl/connections/stored_connections.hpp"

#include "qvtcctl/base/json.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/verb/settings_document.hpp"
#include "qvtcctl/verb/system_log.hpp"
#include "qvtcctl/verb/terminal.hpp"

#include <algorithm>

#include <fmt/format.h>
#include <qvtcapi/qvtcapi.h>

namespace qvtc::qvtcctl {
namespace {

Record record_from(json_object* object) {
    Record record;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        record[i] = text_member(object, std::string(fields[i].name).c_str());
    }
    return record;
}

const Record* find_record(const std::vector<Record>& records, unsigned id) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [id](const Record& record) { return record.id() == id; });
    return found == records.end() ? nullptr : &*found;
}

/// A connection that is not there may be one that cannot be read.
void require_whole_settings(unsigned id) {
    const std::optional<DocumentFault> fault = fault_in_settings_document();
    if (!fault) return;
    if (!fault->partly) throw Refusal(ExitCode::not_done, fault->message());
    throw Refusal(ExitCode::not_found,
                  fmt::format("connection {} is not in what can be read of the settings.", id));
}

} // namespace

StoredConnections::StoredConnections(Chatter chatter) : chatter_(chatter) { require_terminal(); }

std::vector<Record> StoredConnections::records(const ConnectionType& type) const {
    Json answer;
    {
        const Quiet quiet(chatter_);
        answer.reset(qvgetconnections(type.number));
    }
    json_object* list = nullptr;
    if (!answer || json_object_object_get_ex(answer.get(), "list", &list) == 0) {
        throw Refusal(ExitCode::not_done,
                      fmt::format("the {} connections could not be read. {} says why.", type.title,
                                  system_log));
    }
    std::vector<Record> records;
    for (std::size_t i = 0; i < json_object_array_length(list); ++i) {
        records.push_back(record_from(json_object_array_get_idx(list, i)));
    }
    return records;
}

std::vector<Record> StoredConnections::records() const {
    std::vector<Record> all;
    for (const ConnectionType& type : connection_types) {
        for (Record& record : records(type)) all.push_back(std::move(record));
    }
    return all;
}

Record StoredConnections::record(unsigned id) const {
    const ConnectionType& type = require_type_of_id(id);
    const std::vector<Record> stored = records(type);
    if (const Record* found = find_record(stored, id)) return *found;
    require_whole_settings(id);
    throw Refusal(ExitCode::not_found,
                  fmt::format("there is no connection {}. \"qvtcctl connection list\" shows those "
                              "that there are.",
                              id));
}

void StoredConnections::store(const ConnectionType& type, const Record& record) const {
    const LogMark log{std::string(system_log)};
    std::string parameters = to_parameters(record);
    {
        const Quiet quiet(chatter_);
        qvsetconnections(type.number, parameters.data());
    }
    const unsigned id = record.id().value_or(0);
    const std::vector<Record> stored = records(type);
    const Record* found = find_record(stored, id);
    if (found == nullptr || *found != record) {
        throw not_taken(fmt::format("connection {} was not stored", id), log);
    }
}

unsigned StoredConnections::add(const ConnectionType& type, Record record) const {
    const LogMark log{std::string(system_log)};
    record.set_identity(std::nullopt, type);
    const std::vector<Record> before = records(type);
    if (before.size() >= QVTC_IDS_PER_TYPE) {
        throw Refusal(ExitCode::not_done,
                      fmt::format("there is no room: {} {} connections are stored, and a terminal "
                                  "keeps {}. Remove one first.",
                                  before.size(), type.title, QVTC_IDS_PER_TYPE));
    }
    std::string parameters = to_parameters(record);
    {
        const Quiet quiet(chatter_);
        qvsetconnections(type.number, parameters.data());
    }
    for (const Record& stored : records(type)) {
        const std::optional<unsigned> id = stored.id();
        if (!id || find_record(before, *id) != nullptr) continue;
        record.set_identity(id, type);
        if (stored == record) return *id;
    }
    throw not_taken("the connection was not added", log);
}

void StoredConnections::remove(unsigned id) const {
    const LogMark log{std::string(system_log)};
    const ConnectionType& type = require_type_of_id(id);
    {
        const Quiet quiet(chatter_);
        qvdelconnection(type.number, id - first_id(type));
    }
    const std::vector<Record> stored = records(type);
    if (find_record(stored, id) != nullptr) {
        throw not_taken(fmt::format("connection {} was not removed", id), log);
    }
}

std::optional<std::string> StoredConnections::connect_delay() const {
    Json answer;
    {
        const Quiet quiet(chatter_);
        answer.reset(qvconnectdelay());
    }
    if (!answer) return std::nullopt;
    return text_member(answer.get(), "delay");
}

void StoredConnections::set_connect_delay(unsigned seconds) const {
    const LogMark log{std::string(system_log)};
    {
        const Quiet quiet(chatter_);
        qvsetconnectdelay(fmt::format("delay={}", seconds).c_str());
    }
    if (connect_delay() != std::to_string(seconds)) {
        throw not_taken("the delay was not stored", log);
    }
}

} // namespace qvtc::qvtcctl
