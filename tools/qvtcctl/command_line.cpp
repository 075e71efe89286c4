#include "qvtcctl/command_line.hpp"

#include "qvtcctl/refusal.hpp"
#include "qvtcctl/suggest.hpp"
#include "qvtcctl/text.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

constexpr const char* program = "qvtcctl";

void define_common_options(CLI::App& app, Context& context) {
    app.add_flag("--json", context.json, "answer in JSON");
    app.add_flag("--debug", context.debug,
                 "show on standard error what the library and its commands print");
}

void set_help(CLI::App& app) {
    app.set_help_flag("-h,--help", "show this help");
    // Unexpected words are reported here, with suggestions.
    app.allow_extras();
}

std::vector<std::string_view> command_names(const CLI::App& app) {
    std::vector<std::string_view> names;
    for (const CLI::App* sub : app.get_subcommands(nullptr)) names.push_back(sub->get_name());
    return names;
}

std::vector<std::string> option_names(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
}

[[noreturn]] void refuse_extra(const CLI::App& app, const std::string& word) {
    const std::string shown = printable(word);
    if (word.starts_with("-") && word.size() > 1) {
        const std::vector<std::string> names = option_names(app);
        throw UsageError(fmt::format("unknown option \"{}\"{}.", shown,
                                     did_you_mean(word, {names.begin(), names.end()})));
    }
    if (app.get_subcommands(nullptr).empty()) {
        throw UsageError(fmt::format("unexpected argument \"{}\".", shown));
    }
    throw UsageError(
        fmt::format("unknown command \"{}\"{}.", shown, did_you_mean(word, command_names(app))));
}

/// CLI11's message about a wrong command line, in the words of the other messages.
std::string in_plain_words(const CLI::ParseError& error) {
    const std::string text = error.what();
    const std::string name = text.substr(0, text.find_first_of(": "));
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        return fmt::format("{} needs a value.", name);
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
        return fmt::format("{} is missing.", name == "FIELD" ? "FIELD=VALUE" : name);
    }
    return text + ".";
}

} // namespace

CommandLine::CommandLine() : root_(std::make_unique<CLI::App>("", program)) {
    set_help(*root_);
    root_->set_version_flag("--version", fmt::format("{} {}\n", program, QVTCCTL_VERSION),
                            "show the version");
    define_common_options(*root_, context_);
    for (const Group& group : groups()) {
        CLI::App* parent = root_.get();
        if (!group.name.empty()) {
            parent = root_->add_subcommand(std::string(group.name), std::string(group.summary));
            set_help(*parent);
            define_common_options(*parent, context_);
        }
        for (const Verb& verb : group.verbs) define(*parent, verb);
    }
}

void CommandLine::define(CLI::App& parent, const Verb& verb) {
    CLI::App* app = parent.add_subcommand(std::string(verb.name), std::string(verb.summary));
    set_help(*app);
    app->footer(fmt::format("{}\n\n{}", verb.description, verb.examples));
    calls_.emplace(app, Call{verb.define(*app), verb.settings, {}});
    define_common_options(*app, context_);
}

CommandLine::Call CommandLine::parse(std::vector<std::string> words) {
    std::reverse(words.begin(), words.end()); // as CLI11 wants them
    try {
        root_->parse(words);
    } catch (const CLI::CallForHelp&) {
        throw;
    } catch (const CLI::CallForVersion&) {
        throw;
    } catch (const CLI::ParseError& error) {
        // An unexpected argument often is the cause of what is missing, so it is reported first.
        for (const CLI::App* app = &chosen(); app != nullptr; app = app->get_parent()) {
            if (!app->remaining().empty()) refuse_extra(*app, app->remaining().front());
        }
        throw UsageError(in_plain_words(error));
    }
    for (const CLI::App* app = &chosen(); app != nullptr; app = app->get_parent()) {
        if (!app->remaining().empty()) refuse_extra(*app, app->remaining().front());
    }
    const auto call = calls_.find(&chosen());
    if (call == calls_.end()) throw UsageError("no command given.");
    return {call->second.run, call->second.settings, context_};
}

const CLI::App& CommandLine::chosen() const {
    const CLI::App* app = root_.get();
    while (!app->get_subcommands().empty()) app = app->get_subcommands().front();
    return *app;
}

std::string CommandLine::help() const { return help_of(chosen()); }

std::string CommandLine::chosen_name() const { return full_name(chosen()); }

} // namespace qvtc::qvtcctl
