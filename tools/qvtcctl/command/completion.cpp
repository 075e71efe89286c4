#include "qvtcctl/command/command_line.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

/// Where the last word stands: behind which command, and as which of its arguments.
struct Position {
    Place place;
    std::size_t given = 0;            ///< words that stand for arguments
    const Argument* option = nullptr; ///< the option whose value it is
};

const Group* find_group(const std::string& word) {
    for (const Group& group : groups()) {
        if (!group.name.empty() && group.name == word) return &group;
    }
    return nullptr;
}

/// The command of this name in a group, or of the program's own.
Place find_verb(const Group* wanted, const std::string& word) {
    for (const Group& group : groups()) {
        if (wanted != nullptr ? &group != wanted : !group.name.empty()) continue;
        for (const Verb* verb : group.verbs) {
            if (verb->name == word) return {&group, verb};
        }
    }
    return {wanted, nullptr};
}

const Argument* find_option(const Place& place, const std::string& word) {
    if (place.verb == nullptr) return nullptr;
    for (const Argument& argument : place.verb->arguments) {
        if (!argument.value.empty() && argument.name == word) return &argument;
    }
    return nullptr;
}

void step(Position& position, const std::string& word) {
    if (position.option != nullptr) {
        position.option = nullptr;
    } else if (word.starts_with("-")) {
        position.option = find_option(position.place, word);
    } else if (position.place.verb != nullptr) {
        ++position.given;
    } else if (const Group* group = find_group(word); group && !position.place.group) {
        position.place.group = group;
    } else {
        position.place = find_verb(position.place.group, word);
    }
}

std::vector<std::string> option_words(const Place& place) {
    std::vector<std::string> words;
    for (const std::vector<Argument> all = arguments_of(place); const Argument& each : all) {
        if (each.is_option()) words.emplace_back(each.name);
    }
    return words;
}

std::vector<std::string> command_words(const Group* wanted) {
    std::vector<std::string> words;
    for (const Group& group : groups()) {
        if (wanted == nullptr && !group.name.empty()) {
            words.emplace_back(group.name);
        } else if (wanted == nullptr || wanted == &group) {
            for (const Verb* verb : group.verbs) words.emplace_back(verb->name);
        }
    }
    return words;
}

std::vector<std::string> values(const Argument& argument, const std::string& word) {
    return argument.complete ? argument.complete(word) : std::vector<std::string>();
}

std::vector<std::string> argument_words(const Verb& verb, std::size_t given,
                                        const std::string& word) {
    std::size_t index = 0;
    for (const Argument& argument : verb.arguments) {
        if (argument.is_option()) continue;
        if (index == given || argument.repeated) return values(argument, word);
        ++index;
    }
    return {};
}

std::vector<std::string> candidates(const Position& position, const std::string& word) {
    if (position.option != nullptr) return values(*position.option, word);
    if (word.starts_with("-")) return option_words(position.place);
    if (position.place.verb == nullptr) return command_words(position.place.group);
    return argument_words(*position.place.verb, position.given, word);
}

} // namespace

std::vector<std::string> completions(const std::vector<std::string>& words) {
    Position position;
    for (std::size_t i = 0; i + 1 < words.size(); ++i) step(position, words[i]);
    const std::string last = words.empty() ? "" : words.back();
    std::vector<std::string> offered = candidates(position, last);
    std::erase_if(offered, [&](const std::string& word) { return !word.starts_with(last); });
    return offered;
}

} // namespace qvtc::qvtcctl
