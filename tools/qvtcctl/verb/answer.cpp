#include "qvtcctl/verb/answer.hpp"

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

void add_notes(Answer& answer, std::vector<std::string> notes) {
    Json list = json_list();
    for (const std::string& note : notes) append(list, json_text(note));
    add(answer.json, "notes", std::move(list));
    answer.notes = std::move(notes);
}

} // namespace qvtc::qvtcctl
