#include "qvtcctl/change_lock.hpp"
#include "qvtcctl/connection_verbs.hpp"
#include "qvtcctl/device.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/text.hpp"
#include "qvtcctl/transfer.hpp"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <span>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr std::string_view standard_input = "-";

std::string read_import(const std::string& path) {
    if (path.empty() || path == standard_input) {
        return {std::istreambuf_iterator<char>(std::cin), {}};
    }
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        throw Refusal(ExitCode::bad_usage, fmt::format("\"{}\" cannot be read: {}.",
                                                       printable(path), std::strerror(errno)));
    }
    return text;
}

std::vector<ImportStep> plan(const Device& device, const std::string& file, bool unchecked,
                             bool replace) {
    try {
        const std::string text = read_import(file);
        const auto strictness = unchecked ? Strictness::carrying_only : Strictness::whole;
        return plan_import(device.records(), parse_import(text, strictness), replace);
    } catch (const Refusal& refusal) {
        throw Refusal(refusal.code(), fmt::format("{} Nothing was stored.", refusal.what()));
    }
}

void undo(const Device& device, const ImportStep& step) {
    if (step.previous) {
        device.store(*step.type, *step.previous);
    } else {
        device.remove(step.id);
    }
}

/// Undoes the steps, the last one first; false when one of them could not be undone.
bool undo_all(const Device& device, std::span<const ImportStep> steps) {
    try {
        for (std::size_t i = steps.size(); i-- > 0;) {
            if (steps[i].action != Action::keep) undo(device, steps[i]);
        }
        return true;
    } catch (const Refusal&) {
        return false;
    }
}

/// Stores them all, or none: when one is not taken, those before it are put back.
void carry_out(const Device& device, const std::vector<ImportStep>& steps) {
    std::size_t begun = 0;
    try {
        for (const ImportStep& step : steps) {
            ++begun;
            if (step.action != Action::keep) device.store(*step.type, step.record);
        }
    } catch (const Refusal& refusal) {
        // The one that failed may have been stored in part, so it is undone as well.
        const bool undone = undo_all(device, std::span(steps).first(begun));
        throw Refusal(refusal.code(),
                      fmt::format("{} {}", refusal.what(),
                                  undone ? "Nothing was stored."
                                         : "The connections before it could not all be put back: "
                                           "compare \"qvtcctl connection list\" with the file."));
    }
}

long count(const std::vector<ImportStep>& steps, Action action) {
    return std::count_if(steps.begin(), steps.end(),
                         [action](const ImportStep& step) { return step.action == action; });
}

std::string_view name_of(Action action) {
    switch (action) {
    case Action::add:
        return "added";
    case Action::replace:
        return "replaced";
    case Action::keep:
        return "unchanged";
    }
    return "";
}

std::string step_text(const ImportStep& step) {
    std::string line =
        fmt::format("  {:<9}  {}", name_of(step.action), label_of(step.id, step.record));
    if (step.wished_id) line += fmt::format(", because {} is taken", *step.wished_id);
    return line + "\n";
}

Json step_json(const ImportStep& step) {
    Json map = json_map();
    add(map, "action", name_of(step.action));
    add_number(map, "id", step.id);
    if (step.wished_id) add_number(map, "idInFile", *step.wished_id);
    add(map, "name", step.record.name());
    return map;
}

Answer import_answer(const std::vector<ImportStep>& steps, bool only_shown) {
    const long added = count(steps, Action::add);
    const long replaced = count(steps, Action::replace);
    const long kept = count(steps, Action::keep);
    Answer answer;
    answer.text = fmt::format("{}{} added, {} replaced, {} unchanged.\n",
                              only_shown ? "Nothing was stored. This would be done: " : "", added,
                              replaced, kept);
    Json list = json_list();
    for (const ImportStep& step : steps) {
        answer.text += step_text(step);
        append(list, step_json(step));
    }
    answer.json = json_map();
    add_number(answer.json, "added", added);
    add_number(answer.json, "replaced", replaced);
    add_number(answer.json, "unchanged", kept);
    add_flag(answer.json, "stored", !only_shown);
    add(answer.json, "connections", std::move(list));
    return answer;
}

} // namespace

Run define_import(CLI::App& app) {
    struct Options {
        std::string file;
        bool replace = false;
        bool unchecked = false;
        bool dry_run = false;
    };
    auto options = std::make_shared<Options>();
    app.add_option("FILE", options->file, "the file; - or none is standard input");
    app.add_flag("--replace", options->replace, "replace connections that have the same number");
    app.add_flag("--unchecked", options->unchecked,
                 "refuse only what cannot be stored, not what clients cannot use");
    app.add_flag("--dry-run", options->dry_run, "only say what would be done");
    return [options](const Context& context) {
        const Device device(context.chatter());
        const ChangeLock lock;
        const std::vector<ImportStep> steps =
            plan(device, options->file, options->unchecked, options->replace);
        if (!options->dry_run) carry_out(device, steps);
        return import_answer(steps, options->dry_run);
    };
}

Run define_export(CLI::App& app) {
    struct Options {
        std::string type;
        bool no_passwords = false;
    };
    auto options = std::make_shared<Options>();
    app.add_option("TYPE", options->type, "only connections of this type");
    app.add_flag("--no-passwords", options->no_passwords, "leave passwords out");
    return [options](const Context& context) {
        const ConnectionType* type = options->type.empty() ? nullptr : &require_type(options->type);
        const Device device(context.chatter());
        Answer answer;
        answer.text = exported_text(type == nullptr ? device.records() : device.records(*type),
                                    !options->no_passwords);
        answer.json.reset(json_tokener_parse(answer.text.c_str()));
        return answer;
    };
}

} // namespace qvtc::qvtcctl
