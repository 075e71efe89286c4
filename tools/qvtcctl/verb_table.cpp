#include "qvtcctl/verb.hpp"

#include <array>

namespace qvtc::qvtcctl {

void Answer::add_note(const std::string& note) {
    notes.push_back(note);
    if (!json || json_object_is_type(json.get(), json_type_object) == 0) return;
    json_object* list = nullptr;
    if (json_object_object_get_ex(json.get(), "notes", &list) == 0) {
        list = json_object_new_array();
        json_object_object_add(json.get(), "notes", list);
    }
    json_object_array_add(list, json_text(note).release());
}

std::span<const Group> groups() {
    static const auto table = std::to_array<Group>({
        {"connection", "The stored connections", connection_verbs()},
        {"", "", client_verbs()},
        {"display", "The screens", display_verbs()},
        {"network", "The wired and wireless network", network_verbs()},
        {"", "", volume_verbs()},
        {"sound", "The sound cards", sound_verbs()},
        {"power", "Power saving, restarting, switching off, repair", power_verbs()},
        {"", "", terminal_verbs()},
        {"", "", device_verbs()},
        {"", "", start_verbs()},
        {"update", "The software update", update_verbs()},
    });
    return table;
}

} // namespace qvtc::qvtcctl
