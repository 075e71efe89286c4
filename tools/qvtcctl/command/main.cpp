#include "qvtcctl/base/console.hpp"
#include "qvtcctl/base/refusal.hpp"
#include "qvtcctl/base/text.hpp"
#include "qvtcctl/command/command_line.hpp"
#include "qvtcctl/verb/settings_document.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

// Asked by the shell's completion, and by nobody else, so it is in no help.
constexpr std::string_view completion_word = "complete";

void print_notes(const std::vector<std::string>& notes) {
    for (const std::string& note : notes)
        write_error(printable_lines(fmt::format("Note: {}\n", note)));
}

void print(const Answer& answer, bool as_json) {
    if (as_json && answer.json) {
        write_out(to_text(answer.json));
        return;
    }
    write_out(printable_lines(answer.text));
    if (as_json) return;
    print_notes(answer.notes);
    if (!answer.error.empty())
        write_error(printable_lines(fmt::format("qvtcctl: {}", answer.error)));
}

/// What is wrong with the settings document may be the reason of any refusal, so it is told with
/// each that does not speak of it itself.
std::vector<std::string> notes_on(const Refusal& refusal) {
    const std::optional<DocumentFault> fault = fault_in_settings_document();
    if (!fault || std::string_view(refusal.what()).starts_with(fault->what)) return {};
    return {fault->message()};
}

Json refusal_json(const Refusal& refusal, const std::vector<std::string>& notes) {
    Json error = json_map();
    add(error, "code", exit_code_name(refusal.code()));
    add(error, "message", refusal.what());
    Answer answer;
    answer.json = json_map();
    add(answer.json, "error", std::move(error));
    for (const std::string& note : notes) answer.add_note(note);
    return std::move(answer.json);
}

void print_refusal(const Refusal& refusal, bool as_json, const std::string& help_pointer) {
    const std::vector<std::string> notes = notes_on(refusal);
    if (as_json) {
        write_out(to_text(refusal_json(refusal, notes)));
        return;
    }
    write_error(printable_lines(fmt::format("qvtcctl: {}\n{}", refusal.what(), help_pointer)));
    print_notes(notes);
}

int print_completions(const std::vector<std::string>& words) {
    for (const std::string& word : completions(words)) write_out(word + "\n");
    return 0;
}

/// Runs the verb, and lets no verb take settings that cannot be read for settings that are unset.
Answer answer_to(const Verb& verb, const Request& request) {
    const std::optional<DocumentFault> before = fault_in_settings_document();
    if (before && !before->partly && verb.settings == Settings::needed)
        throw Refusal(ExitCode::not_done, before->message());
    Answer answer = verb.run(request);
    // A change may have mended the document, but what was lost before stays lost.
    const bool lost = before && before->partly;
    if (const auto now = lost ? before : fault_in_settings_document())
        answer.add_note(now->message());
    return answer;
}

int run(const CommandLine& line) {
    if (!line.fault.empty()) throw UsageError(line.fault);
    if (line.wanted == CommandLine::Wanted::help) {
        write_out(help_of(line.place));
        return 0;
    }
    if (line.wanted == CommandLine::Wanted::version) {
        write_out(version_text());
        return 0;
    }
    const Answer answer = answer_to(*line.place.verb, line.request);
    print(answer, line.request.json);
    return static_cast<int>(answer.code);
}

int run_or_refuse(const std::vector<std::string>& words) {
    const CommandLine line = parse_command_line(words);
    // A wrong command line is reported in JSON as well, even where it could not be read.
    const bool as_json = std::find(words.begin(), words.end(), "--json") != words.end();
    try {
        return run(line);
    } catch (const UsageError& error) {
        print_refusal(error, as_json, fmt::format("Try \"{} --help\".\n", line.place.full_name()));
        return static_cast<int>(error.code());
    } catch (const Refusal& refusal) {
        print_refusal(refusal, as_json, "");
        return static_cast<int>(refusal.code());
    }
}

/// An answer that nobody received is a failure: a backup that was cut short must not look good.
int unless_output_was_lost(int status) {
    const std::string reason = lost_output();
    if (reason.empty()) return status;
    write_error(fmt::format("qvtcctl: standard output could not be written: {}.\n", reason));
    return status == 0 ? static_cast<int>(ExitCode::not_done) : status;
}

int guarded_main(int argc, char** argv) {
    try {
        hold_standard_descriptors();
        const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
        if (!words.empty() && words.front() == completion_word)
            return unless_output_was_lost(print_completions({words.begin() + 1, words.end()}));
        return unless_output_was_lost(run_or_refuse(words));
    } catch (const std::exception& error) {
        write_error(fmt::format("qvtcctl: {}\n", error.what()));
        return static_cast<int>(ExitCode::not_done);
    }
}

} // namespace
} // namespace qvtc::qvtcctl

int main(int argc, char** argv) { return qvtc::qvtcctl::guarded_main(argc, argv); }
