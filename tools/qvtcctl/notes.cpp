#include "qvtcctl/notes.hpp"

namespace qvtc::qvtcctl {

void add_notes(Answer& answer, std::vector<std::string> notes) {
    Json list = json_list();
    for (const std::string& note : notes) append(list, json_text(note));
    add(answer.json, "notes", std::move(list));
    answer.notes = std::move(notes);
}

} // namespace qvtc::qvtcctl
