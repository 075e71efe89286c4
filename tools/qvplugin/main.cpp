#include "qvplugin/checks.hpp"
#include "qvplugin/failure.hpp"
#include "qvplugin/values.hpp"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>

#include <CLI/CLI.hpp>
#include <unistd.h>

namespace qvtc::qvplugin {
namespace {

constexpr const char* default_path = "/var/lib/qvplugin/values.db";
constexpr const char* path_variable = "QVPLUGIN_DATABASE";

std::string path_of_store() {
    const char* const path = std::getenv(path_variable);
    return path != nullptr && *path != '\0' ? path : default_path;
}

/// Output that cannot be written, as on a full disk, is a failure.
void write_out(const std::string& text) {
    std::cout << text << std::flush;
    if (!std::cout) throw Failure(ExitCode::store_failed, "the output could not be written.");
}

ExitCode print_text(std::uint32_t key) {
    const auto text = Values(path_of_store()).find(key);
    if (!text) return ExitCode::nothing_stored;
    // The text alone, as the library reads it; on a tty the next prompt needs a line of its own.
    write_out(*text + (isatty(STDOUT_FILENO) != 0 ? "\n" : ""));
    return ExitCode::done;
}

ExitCode store_text(std::uint32_t key, const std::string& text) {
    check_text(text);
    Values(path_of_store()).store(key, text);
    return ExitCode::done;
}

ExitCode print_all() {
    std::string lines;
    for (const Value& value : Values(path_of_store()).all()) {
        lines += std::to_string(value.key) + '\t' + value.text + '\n';
    }
    write_out(lines);
    return ExitCode::done;
}

ExitCode remove_text(std::uint32_t key) {
    if (Values(path_of_store()).remove(key)) return ExitCode::done;
    throw Failure(ExitCode::nothing_stored, "nothing is stored under " + std::to_string(key) + ".");
}

constexpr const char* footer =
    R"(KEY is a decimal number from 0 to 4294967295. TEXT is base64; without it, the empty value is stored.

Exit status:
  0  done
  1  nothing is stored under KEY
  2  wrong command line, or an invalid KEY or TEXT; nothing was changed
  3  the store cannot be read or written; nothing was changed

Files:
  /var/lib/qvplugin/values.db  the values, unless QVPLUGIN_DATABASE names another file)";

/// The command line, and what each command does.
class CommandLine {
  public:
    CommandLine() {
        app_.footer(footer);
        app_.set_version_flag("--version", std::string("qvplugin ") + QVPLUGIN_VERSION,
                              "Show the version");
        app_.set_help_flag("-h,--help", "Show this help");
        // Just one: in "1 90 list", "list" is a text.
        app_.require_subcommand(1);
        app_.failure_message(CLI::FailureMessage::simple);
        add("0", "Print the text under KEY, or nothing if there is none", with_key(print_text));
        CLI::App* const store =
            add("1", "Store TEXT under KEY", [this] { return store_text(key_of(key_), text_); });
        add("list", "Print every key and its text, separated by a tab", print_all);
        add("delete", "Delete what is stored under KEY", with_key(remove_text));
        for (const char* const name : {"0", "1", "delete"}) {
            app_.get_subcommand(name)
                ->add_option("KEY", key_, "The key")
                ->required()
                ->type_name("");
        }
        store->add_option("TEXT", text_, "The value, encoded in base64")->type_name("");
    }

    ExitCode run(int argc, char** argv) {
        try {
            app_.parse(argc, argv);
        } catch (const CLI::Success& asked) { // for the help or the version
            return static_cast<ExitCode>(app_.exit(asked));
        } catch (const CLI::ParseError& error) {
            throw Failure(ExitCode::bad_usage, in_words(error) + ". Try \"qvplugin --help\".");
        }
        return commands_.at(app_.get_subcommands().front())();
    }

  private:
    using Command = std::function<ExitCode()>;

    std::string in_words(const CLI::ParseError& error) const {
        if (!app_.get_subcommands().empty()) return error.what();
        const std::vector<std::string> unknown = app_.remaining();
        return unknown.empty() ? "no command given" : "unknown command " + shown(unknown.front());
    }

    CLI::App* add(const char* name, const char* description, Command command) {
        CLI::App* const added = app_.add_subcommand(name, description);
        commands_.emplace(added, std::move(command));
        return added;
    }
    Command with_key(ExitCode (*action)(std::uint32_t)) {
        return [this, action] { return action(key_of(key_)); };
    }

    CLI::App app_{"Store texts under numbers, on a thin-client terminal.", "qvplugin"};
    std::map<CLI::App*, Command> commands_;
    std::string key_;
    std::string text_;
};

int guarded_main(int argc, char** argv) {
    try {
        return static_cast<int>(CommandLine().run(argc, argv));
    } catch (const Failure& failure) {
        std::cerr << "qvplugin: " << failure.what() << '\n';
        return static_cast<int>(failure.code());
    } catch (const std::exception& error) {
        std::cerr << "qvplugin: " << error.what() << '\n';
        return static_cast<int>(ExitCode::store_failed);
    }
}

} // namespace
} // namespace qvtc::qvplugin

int main(int argc, char** argv) { return qvtc::qvplugin::guarded_main(argc, argv); }
