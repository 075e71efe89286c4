#include "display/resolution_protocol.hpp"

#include <array>

#include "core/log.hpp"
#include "display/configuration_writer.hpp"
#include "display/pairs.hpp"
#include "display/resolutions.hpp"
#include "store/document.hpp"
#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::display {

namespace {

namespace keys = store::keys;

std::string stored(const store::Document& document, const char* key) {
    return document.get(keys::device_item, key).value_or("");
}

bool store_request(store::Document& document, const std::string& index, bool waits) {
    constexpr std::array names = {keys::requested_resolution, keys::resolution_change_waits};
    const std::array<std::string, 2> values = {index, waits ? "1" : "0"};
    return document.set_all(keys::device_item, names, values);
}

bool store_kept_request(store::Document& document, const std::string& index) {
    constexpr std::array names = {keys::applied_resolution, keys::requested_resolution,
                                  keys::resolution_change_waits};
    const std::array<std::string, 3> values = {index, index, "0"};
    return document.set_all(keys::device_item, names, values);
}

} // namespace

int set_resolution(const std::string& request) {
    log(Level::debug, "@%s disp=%s", "setdispconf", request.c_str());
    if (request.empty()) return -1;
    const std::string index = requested_index(request);
    const bool forced = has_pair(request, "force");
    store::change_document([&](store::Document& document) {
        if (forced) return store_kept_request(document, index);
        const std::string applied = stored(document, keys::applied_resolution);
        return store_request(document, index, !applied.empty() && applied != index);
    });
    write_configuration(index);
    return 0;
}

Json requested_resolution() {
    const std::string index = store::setting(keys::requested_resolution);
    Json object = json_map();
    add_member(object, "res",
               index.empty() ? json_string(std::to_string(resolution_number::automatic))
                             : json_string(index));
    return object;
}

bool resolution_waits() {
    const std::string waits = store::setting(keys::resolution_change_waits);
    return !waits.empty() && waits != "0";
}

void keep_resolution() {
    store::change_document([](store::Document& document) {
        constexpr std::array names = {keys::applied_resolution, keys::resolution_change_waits};
        const std::array<std::string, 2> values = {stored(document, keys::requested_resolution),
                                                   "0"};
        return document.set_all(keys::device_item, names, values);
    });
}

void revert_resolution() {
    std::string applied;
    const bool locked = store::change_document([&](store::Document& document) {
        applied = stored(document, keys::applied_resolution);
        return store_request(document, applied, false);
    });
    if (!locked) applied = store::setting(keys::applied_resolution);
    write_configuration(applied);
}

} // namespace qvtc::display
