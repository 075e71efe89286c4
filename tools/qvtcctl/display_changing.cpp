#include "qvtcctl/confirmation.hpp"
#include "qvtcctl/display_verbs.hpp"
#include "qvtcctl/notes.hpp"
#include "qvtcctl/outputs.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/resolutions.hpp"
#include "qvtcctl/screens.hpp"
#include "qvtcctl/text.hpp"
#include "qvtcctl/types.hpp"

#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace qvtc::qvtcctl {
namespace {

constexpr unsigned darkest = 20;
constexpr unsigned brightest = 100;
constexpr std::size_t longest_refresh = 10239;

std::shared_ptr<std::string> one_word(CLI::App& app, const char* name, const char* meaning) {
    auto word = std::make_shared<std::string>();
    app.add_option(name, *word, meaning);
    return word;
}

Answer answer_of(std::string text, const char* key, std::string_view value) {
    Answer answer;
    answer.text = std::move(text);
    answer.json = json_map();
    add(answer.json, key, value);
    return answer;
}

unsigned require_brightness(const std::string& text) {
    const std::optional<unsigned> percent = parse_number(text);
    if (percent && *percent >= darkest && *percent <= brightest) return *percent;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("brightness \"{}\" must be a whole number from {} to {}, without a "
                              "percent sign.",
                              printable(text), darkest, brightest));
}

bool require_order(const std::string& text) {
    if (text == "usual" || text == "reverse") return text == "reverse";
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("unknown order \"{}\": give usual or reverse.", printable(text)));
}

void require_refresh(const std::string& text) {
    if (text.size() > longest_refresh) {
        throw Refusal(ExitCode::bad_usage,
                      fmt::format("the refresh setting has {} bytes; at most {} are allowed.",
                                  text.size(), longest_refresh));
    }
    const Json parsed(json_tokener_parse(text.c_str()));
    if (is_utf8(text) && parsed && json_object_is_type(parsed.get(), json_type_object) != 0) return;
    throw Refusal(ExitCode::bad_usage,
                  fmt::format("refresh setting \"{}\" is not a JSON object. Write one as "
                              "'{{\"rate\": 60}}', in single quotes for the shell.",
                              printable(text.substr(0, 60))));
}

/// What to know of a mode that was set, with these screens connected.
std::string note_on(const ScreenMode& mode, const Outputs& outputs) {
    if (!outputs) return "display :0.0 did not respond, so what the screens show is not known.";
    if (outputs->size() < 2) {
        return "fewer than two screens are connected, so the mode has no effect until another one "
               "is.";
    }
    const std::vector<std::string> others = outside(mode.arrangement, *outputs);
    if (others.empty()) return "";
    return fmt::format("left as before: {}. The terminal arranges two screens that are switched "
                       "on.",
                       fmt::join(others, ", "));
}

Answer changed_resolution(const Resolution& resolution, bool keep, bool waits) {
    Answer answer = answer_of(
        fmt::format("The resolution is now {}, and the terminal restarts.{}\n", resolution.name,
                    waits ? " The change is pending: \"qvtcctl display keep\" keeps it, "
                            "\"qvtcctl display revert\" goes back."
                          : ""),
        "resolution", resolution.name);
    add_flag(answer.json, "changeWaits", waits);
    std::vector<std::string> notes;
    if (!waits && !keep) {
        notes.emplace_back("no change is pending: this resolution was kept before.");
    }
    if (resolution.index == "0") {
        notes.emplace_back("the terminal's display script treats 800x600 as auto.");
    }
    add_notes(answer, std::move(notes));
    return answer;
}

} // namespace

Run define_display_set(CLI::App& app) {
    struct Options {
        std::string name;
        bool keep = false;
        bool yes = false;
    };
    auto options = std::make_shared<Options>();
    app.add_option("RESOLUTION", options->name, "auto, or WIDTHxHEIGHT")->required();
    app.add_flag("--keep", options->keep, "keep it at once, with no change pending");
    app.add_flag("--yes", options->yes, "do not ask before the restart");
    return [options](const Context& context) {
        const Resolution& resolution = require_resolution(options->name);
        const Screens screens(context.chatter());
        require_consent(options->yes,
                        fmt::format("This sets the resolution to {} and restarts the terminal at "
                                    "once.",
                                    resolution.name));
        screens.request(resolution.index, options->keep);
        return changed_resolution(resolution, options->keep, screens.change_waits());
    };
}

Run define_display_keep(CLI::App&) {
    return [](const Context& context) {
        const Screens screens(context.chatter());
        const bool waited = screens.change_waits();
        if (waited) screens.keep();
        const std::string name = resolution_name(screens.requested_index());
        return answer_of(waited
                             ? fmt::format("The resolution {} is kept.\n", name)
                             : fmt::format("No change is pending: the resolution is {}.\n", name),
                         "resolution", name);
    };
}

Run define_display_revert(CLI::App&) {
    return [](const Context& context) {
        const Screens screens(context.chatter());
        const bool waited = screens.change_waits();
        if (waited) screens.revert();
        const std::string name = resolution_name(screens.requested_index());
        return answer_of(waited
                             ? fmt::format("Back to the resolution {}.\n", name)
                             : fmt::format("No change is pending: the resolution is {}.\n", name),
                         "resolution", name);
    };
}

Run define_display_mode(CLI::App& app) {
    const auto name = one_word(app, "MODE", "clone, extend or vertical");
    return [name](const Context& context) {
        const ScreenMode* const wanted = name->empty() ? nullptr : &require_mode(*name);
        const Screens screens(context.chatter());
        if (wanted != nullptr) screens.set_mode(*wanted);
        const ScreenMode& mode = screens.mode();
        const Outputs outputs = connected_outputs();
        Answer answer = answer_of(fmt::format("{}{}: {}.\n", wanted ? "The mode is now " : "",
                                              mode.name, meaning_here(mode, outputs)),
                                  "mode", mode.name);
        if (const std::string note = note_on(mode, outputs); wanted != nullptr && !note.empty())
            add_notes(answer, {note});
        return answer;
    };
}

Run define_display_order(CLI::App& app) {
    const auto name = one_word(app, "ORDER", "usual or reverse");
    return [name](const Context& context) {
        const bool reverse = !name->empty() && require_order(*name);
        const Screens screens(context.chatter());
        if (!name->empty()) screens.set_reversed(reverse);
        const std::string order = screens.reversed() ? "reverse" : "usual";
        const std::string words = name->empty() ? "" : "The order of the screens is now ";
        return answer_of(fmt::format("{}{}{}\n", words, order, words.empty() ? "" : "."), "order",
                         order);
    };
}

Run define_display_brightness(CLI::App& app) {
    const auto text = one_word(app, "PERCENT", "20 to 100");
    return [text](const Context& context) {
        const unsigned wanted = text->empty() ? 0 : require_brightness(*text);
        const Screens screens(context.chatter());
        if (wanted != 0) screens.set_brightness(wanted);
        const std::string shown = wanted != 0 ? std::to_string(wanted) : screens.brightness();
        Answer answer;
        answer.text = wanted != 0     ? fmt::format("The brightness is now {} %.\n", shown)
                      : shown.empty() ? "Display :0.0 does not report its brightness.\n"
                                      : fmt::format("{} %\n", printable(shown));
        answer.json = json_map();
        const std::optional<unsigned> percent = parse_number(shown);
        if (percent) {
            add_number(answer.json, "brightness", *percent);
        } else {
            add(answer.json, "brightness", Json());
        }
        return answer;
    };
}

Run define_display_refresh(CLI::App& app) {
    const auto text = one_word(app, "JSON", "the setting, a JSON object");
    return [text](const Context& context) {
        if (!text->empty()) require_refresh(*text);
        const Screens screens(context.chatter());
        if (!text->empty()) screens.set_refresh(*text);
        Json stored = screens.refresh();
        Answer answer;
        answer.text = stored
                          ? (text->empty() ? "" : "The refresh setting is now ") + to_line(stored)
                          : "No refresh setting is stored.\n";
        answer.json = json_map();
        add(answer.json, "refresh", std::move(stored));
        return answer;
    };
}

} // namespace qvtc::qvtcctl
