// Random values in command texts, thousands of them.

#include "core/shell.hpp"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "core/shells.hpp"
#include "core/text.hpp"

namespace qvtc::test {

namespace {

std::vector<std::string> random_values(std::size_t count, std::string_view alphabet) {
    std::mt19937 random(1); // the same values at each run
    std::uniform_int_distribution<std::size_t> letter(0, alphabet.size() - 1);
    std::uniform_int_distribution<std::size_t> length(0, 9);
    std::vector<std::string> values(count);
    for (std::string& value : values) {
        for (std::size_t left = length(random); left > 0; --left) value += alphabet[letter(random)];
    }
    return values;
}

/// What `shell` hands on for each of the pieces of a command text, as a program's arguments in
/// angle brackets; a few hundred at a time, as a text has a limit.
std::vector<std::string> handed_on(const char* shell, const std::vector<std::string>& pieces) {
    constexpr std::size_t most_at_once = 500;
    std::vector<std::string> results;
    for (std::size_t start = 0; start < pieces.size(); start += most_at_once) {
        std::string text;
        for (std::size_t i = start; i < std::min(start + most_at_once, pieces.size()); ++i)
            text += "printf '<%s>' " + pieces[i] + "; printf '\\0'\n";
        const std::string output = output_of(shell, text);
        for (std::size_t at = 0; at < output.size(); at = output.find('\0', at) + 1)
            results.push_back(output.substr(at, output.find('\0', at) - at));
    }
    return results;
}

using Quote = std::string (*)(const std::string&);

std::string as_word(const std::string& value) { return "'' " + shell::word(value); }
std::string inside_word(const std::string& value) {
    return "/t:" + shell::word(value, shell::At::inside_word);
}
std::string bare_inside_word(const std::string& value) {
    return "/t:" + shell::bare(value, shell::At::inside_word);
}
std::string in_single_quotes(const std::string& value) {
    return "'" + shell::in_single(value) + "'";
}
std::string in_double_quotes(const std::string& value) {
    return "\"" + shell::in_double(value) + "\"";
}
std::string through_a_variable(const std::string& value) {
    // The assignment prints nothing of its own: what is printed is the variable.
    return "; A=" + shell::assigned(value) + "; printf '<%s>' \"$A\"";
}

} // namespace

TEST(ShellValues, AreHandedOnAsTheyAre) {
    const std::vector<std::string> values =
        random_values(4000, "ab \t\n\\\"'`$#~*?[]{}()<>|&;!=:,-%1/");
    const auto bracketed = [](const std::string& value) { return "<" + value + ">"; };
    const struct {
        Quote quote;
        std::function<std::string(const std::string&)> expected;
    } positions[] = {
        {as_word,
         [&](const std::string& value) { return "<>" + (value.empty() ? "" : bracketed(value)); }},
        {inside_word, [&](const std::string& value) { return bracketed("/t:" + value); }},
        {in_single_quotes, bracketed},
        {in_double_quotes, bracketed},
        {through_a_variable,
         [&](const std::string& value) { return "<>" + bracketed(one_line(value)); }},
    };
    for (const char* const shell : shells) {
        for (const auto& [quote, expected_for] : positions) {
            std::vector<std::string> pieces;
            std::vector<std::string> expected;
            for (const std::string& value : values) {
                pieces.push_back(quote(value));
                expected.push_back(expected_for(value));
            }
            EXPECT_EQ(handed_on(shell, pieces), expected) << shell;
        }
    }
}

TEST(ShellValues, StayAsTheyAreWhereTheShellWouldHandThemOn) {
    // No value here could do more than lose a character.
    const struct {
        Quote quote;
        const char* before;
        const char* behind;
        const char* result;
        const char* alphabet;
    } positions[] = {
        {in_double_quotes, "\"", "\"", "<", "ab\\n\\#~'!*?[]{} "},
        {inside_word, "/t:", "", "</t:", "ab#~]}!=:,%\\"},
        {bare_inside_word, "/t:", "", "</t:", "ab#~]}!=:,%\\"},
        {through_a_variable, "; A=", "; printf '<%s>' \"$A\"", "<><", "ab#]}[{?*!=:,%-"},
    };
    for (const auto& position : positions) {
        const std::vector<std::string> values = random_values(2000, position.alphabet);
        std::vector<std::string> plain;
        // A backslash at the end would take what stands behind the value.
        for (const std::string& value : values)
            plain.push_back(position.before + (value.ends_with('\\') ? "" : value) +
                            position.behind);
        const std::vector<std::string> by_bash = handed_on("/bin/bash", plain);
        const std::vector<std::string> by_dash = handed_on("/bin/dash", plain);
        ASSERT_EQ(by_bash.size(), values.size());
        ASSERT_EQ(by_dash.size(), values.size());
        std::size_t unchanged = 0;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const std::string intact = position.result + values[i] + ">";
            if (by_bash[i] != intact || by_dash[i] != intact || values[i].ends_with(' ')) continue;
            ++unchanged;
            EXPECT_EQ(position.quote(values[i]), plain[i]);
        }
        EXPECT_GT(unchanged, values.size() / 4);
    }
}

} // namespace qvtc::test
