#pragma once

#include "qvtcctl/verb/quiet.hpp"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// The words that may stand where this one is being typed.
using Complete = std::function<std::vector<std::string>(const std::string& word)>;

/// One argument of a command: a word in its place, or an option.
struct Argument {
    std::string_view name;       ///< as the help shows it: "ID", "--wait"
    std::string help;            ///< one line
    std::string_view value = {}; ///< of an option that takes one: "SECONDS"
    bool required = false;
    bool repeated = false; ///< takes every word that follows
    Complete complete = {};
    std::string_view letter = {}; ///< of an option that has a short form: "h" of "-h, --help"

    bool is_option() const { return name.starts_with("--"); }
    bool is_flag() const { return is_option() && value.empty(); }

    /// This argument with the words that completion offers for it.
    Argument completed_by(Complete words) const;
};

Argument required_argument(std::string_view name, std::string help);
Argument optional_argument(std::string_view name, std::string help);

/// At least one word.
Argument required_list(std::string_view name, std::string help);
Argument optional_list(std::string_view name, std::string help);

Argument flag(std::string_view name, std::string help);
Argument option(std::string_view name, std::string_view value, std::string help);

/// Of every command that asks before it acts.
inline const Argument yes_flag = flag("--yes", "do not ask");

/// Completion by a few words that are always the same.
Complete one_of(std::vector<std::string> words);

/// A command as it was typed: which of its arguments were given, with which values.
class Request {
  public:
    bool json = false;
    bool debug = false;

    Chatter chatter() const { return debug ? Chatter::to_standard_error : Chatter::dropped; }

    bool has(const Argument& argument) const { return given_.contains(argument.name); }

    /// The value of an argument; empty when it was not given.
    const std::string& text(const Argument& argument) const;

    /// All values of a repeated argument.
    const std::vector<std::string>& texts(const Argument& argument) const;

    void give(const Argument& argument, std::vector<std::string> values);

  private:
    std::map<std::string_view, std::vector<std::string>> given_;
};

} // namespace qvtc::qvtcctl
