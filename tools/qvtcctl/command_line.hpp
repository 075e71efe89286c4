#pragma once

#include "qvtcctl/verb.hpp"

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace qvtc::qvtcctl {

/// The program's commands and options, built from the verb table.
class CommandLine {
  public:
    CommandLine();

    /// A verb that was called, with its options read.
    struct Call {
        Run run;
        Settings settings;
        Context context;
    };

    /// Reads the words after the program's name. Throws UsageError for words that are wrong, and
    /// CLI::CallForHelp or CLI::CallForVersion when that is what was asked for.
    Call parse(std::vector<std::string> words);

    /// The help of the command that the last parsed words named.
    std::string help() const;

    const CLI::App& root() const { return *root_; }

    /// "qvtcctl connection add", for the command that the last parsed words named.
    std::string chosen_name() const;

  private:
    void define(CLI::App& parent, const Verb& verb);
    const CLI::App& chosen() const;

    std::unique_ptr<CLI::App> root_;
    Context context_;
    std::map<const CLI::App*, Call> calls_;
};

/// The whole help text of a command: usage, what it does, its commands or its arguments and
/// options, examples.
std::string help_of(const CLI::App& app);

/// "qvtcctl connection add"
std::string full_name(const CLI::App& app);

/// What a person could type next: the words that may stand in the place of the last word.
std::vector<std::string> completions(const CLI::App& root, const std::vector<std::string>& words);

} // namespace qvtc::qvtcctl
