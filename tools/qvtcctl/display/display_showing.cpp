#include "qvtcctl/base/table.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/display/outputs.hpp"
#include "qvtcctl/display/resolutions.hpp"
#include "qvtcctl/display/screens.hpp"
#include "qvtcctl/verb/verbs.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

std::string shown_place(const Output& output) {
    return output.place.empty() ? "switched off" : output.place;
}

std::string outputs_text(const std::optional<std::vector<Output>>& outputs) {
    if (!outputs) return "unknown: display :0.0 did not respond";
    std::string text;
    for (const Output& output : *outputs) {
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ", output.name, shown_place(output));
    }
    return text.empty() ? "none is connected" : text;
}

/// A list, or JSON's null when nothing is known.
Json outputs_json(const std::optional<std::vector<Output>>& outputs) {
    if (!outputs) return nullptr;
    Json list = json_list();
    for (const Output& output : *outputs) {
        Json map = json_map();
        add(map, "name", output.name);
        add(map, "shows", output.place.empty() ? Json() : json_text(output.place));
        append(list, std::move(map));
    }
    return list;
}

void add_brightness(const Json& map, const std::string& brightness) {
    const std::optional<unsigned> percent = parse_number(brightness);
    if (percent) {
        add_number(map, "brightness", *percent);
    } else {
        add(map, "brightness", Json());
    }
}

Answer run_display_show(const Request& request) {
    const Screens screens(request.chatter());
    const std::string index = screens.requested_index();
    const bool waits = screens.change_waits();
    const ScreenMode& mode = screens.mode();
    const std::string order = screens.reversed() ? "reverse" : "usual";
    const std::string brightness = screens.brightness();
    const auto outputs = connected_outputs();
    Answer answer;
    answer.text = layout({
        {"Resolution:", resolution_name(index)},
        {"Change:", waits ? "pending until \"qvtcctl display keep\" or \"qvtcctl display revert\""
                          : "none pending"},
        {"Mode:", fmt::format("{} ({})", mode.name, meaning_here(mode, outputs))},
        {"Order:", order},
        {"Brightness:", brightness.empty() ? "unknown" : brightness + " %"},
        {"Screens:", outputs_text(outputs)},
    });
    answer.json = json_map();
    add(answer.json, "resolution", resolution_name(index));
    add(answer.json, "index", index);
    add_flag(answer.json, "changeWaits", waits);
    add(answer.json, "mode", mode.name);
    add(answer.json, "order", order);
    add_brightness(answer.json, brightness);
    add(answer.json, "screens", outputs_json(outputs));
    return answer;
}

Answer run_display_list(const Request& request) {
    const Screens screens(request.chatter());
    const std::string set = resolution_name(screens.requested_index());
    Answer answer;
    Json list = json_list();
    for (const std::string& name : screens.offered_resolutions()) {
        answer.text += fmt::format("{} {}\n", name == set ? "*" : " ", name);
        append(list, json_text(name));
    }
    answer.json = json_map();
    add(answer.json, "resolutions", std::move(list));
    add(answer.json, "set", set);
    return answer;
}

Answer run_display_screens(const Request& request) {
    const Screens screens(request.chatter());
    const auto outputs = connected_outputs();
    Answer answer;
    answer.json = json_map();
    if (!outputs) {
        // The library would count no screen, which is another thing than not knowing.
        answer.text = layout({{"Screens:", outputs_text(outputs)}});
        for (const char* const key : {"connected", "screens", "hasVgaAndHdmi"})
            add(answer.json, key, Json());
        return answer;
    }
    const bool extendable = screens.can_be_extended();
    answer.text = layout({
        {"Connected:", std::to_string(outputs->size())},
        {"Screens:", outputs_text(outputs)},
        {"Has VGA and HDMI:", extendable ? "yes" : "no"},
    });
    add_number(answer.json, "connected", static_cast<long>(outputs->size()));
    add(answer.json, "screens", outputs_json(outputs));
    add_flag(answer.json, "hasVgaAndHdmi", extendable);
    return answer;
}

} // namespace

const Verb verbs::display_show{
    .name = "show",
    .summary = "Show the settings of the screens and what they show",
    .description = "Shows the resolution, mode, order and brightness that are set, and what "
                   "each connected screen shows.",
    .examples = {"qvtcctl display show", "qvtcctl display show --json"},
    .run = run_display_show,
};

const Verb verbs::display_list{
    .name = "list",
    .summary = "List the resolutions",
    .description = "Lists the resolutions that a user is offered, and marks the one that is set.",
    .examples = {"qvtcctl display list"},
    .run = run_display_list,
};

const Verb verbs::display_screens{
    .name = "screens",
    .summary = "Show how many screens are connected",
    .description = "Shows how many screens are connected, which ones, and whether the "
                   "terminal has the two outputs, VGA and HDMI, that an extended desktop "
                   "needs.",
    .examples = {"qvtcctl display screens"},
    .run = run_display_screens,
};

} // namespace qvtc::qvtcctl
