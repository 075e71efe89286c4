#include "qvtcctl/command_line.hpp"
#include "qvtcctl/console.hpp"
#include "qvtcctl/refusal.hpp"

#include <algorithm>

#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

// Asked by the shell's completion, and by nobody else, so it is in no help.
constexpr std::string_view completion_word = "complete";

void print(const Answer& answer, const Context& context) {
    write_out(context.json && answer.json ? to_text(answer.json) : answer.text);
    if (context.json) return;
    for (const std::string& note : answer.notes) write_error(fmt::format("Note: {}\n", note));
    if (!answer.error.empty()) write_error(fmt::format("qvtcctl: {}", answer.error));
}

void print_refusal(const Refusal& refusal, bool as_json, const std::string& help_pointer) {
    if (as_json) {
        Json error = json_map();
        add(error, "code", exit_code_name(refusal.code()));
        add(error, "message", refusal.what());
        Json document = json_map();
        add(document, "error", std::move(error));
        write_out(to_text(document));
        return;
    }
    write_error(fmt::format("qvtcctl: {}\n{}", refusal.what(), help_pointer));
}

int print_completions(const CommandLine& line, const std::vector<std::string>& words) {
    for (const std::string& word : completions(line.root(), words)) write_out(word + "\n");
    return 0;
}

int run(CommandLine& line, const std::vector<std::string>& words) {
    // A wrong command line is reported in JSON as well, so this must be known before it is read.
    const bool as_json = std::find(words.begin(), words.end(), "--json") != words.end();
    try {
        const CommandLine::Call call = line.parse(words);
        const Answer answer = call.run(call.context);
        print(answer, call.context);
        return static_cast<int>(answer.code);
    } catch (const CLI::CallForHelp&) {
        write_out(line.help());
        return 0;
    } catch (const CLI::CallForVersion& version) {
        write_out(version.what());
        return 0;
    } catch (const UsageError& error) {
        print_refusal(error, as_json, fmt::format("Try \"{} --help\".\n", line.chosen_name()));
        return static_cast<int>(error.code());
    } catch (const Refusal& refusal) {
        print_refusal(refusal, as_json, "");
        return static_cast<int>(refusal.code());
    }
}

int guarded_main(int argc, char** argv) {
    try {
        const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
        CommandLine line;
        if (!words.empty() && words.front() == completion_word) {
            return print_completions(line, {words.begin() + 1, words.end()});
        }
        return run(line, words);
    } catch (const std::exception& error) {
        write_error(fmt::format("qvtcctl: {}\n", error.what()));
        return static_cast<int>(ExitCode::not_done);
    }
}

} // namespace
} // namespace qvtc::qvtcctl

int main(int argc, char** argv) { return qvtc::qvtcctl::guarded_main(argc, argv); }
