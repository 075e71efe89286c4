// Quoted values, read back by the rules of a shell.

#include <optional>
#include <string>
#include <vector>

#include "core/shell.hpp"
#include "fuzzing.hpp"

using namespace qvtc;
using fuzz::require;

namespace {

/// Reads a command text as a shell does that meets no operator and expands nothing: any
/// character at which it would is a failure.
class Reader {
  public:
    explicit Reader(std::string_view text) : rest_(text) {}

    std::vector<std::string> words() {
        while (!rest_.empty()) {
            const char c = take();
            if (c == ' ' || c == '\t') {
                end_word();
            } else if (c == '\\') {
                require(!rest_.empty() && rest_.front() != '\n', "backslash before a character");
                word_ = word_.value_or("") + take();
            } else if (c == '\'') {
                take_single_quoted();
            } else if (c == '"') {
                take_double_quoted();
            } else {
                require(special.find(c) == std::string_view::npos, "no special character");
                require(word_.has_value() || (c != '~' && c != '#'), "none at a word's start");
                word_ = word_.value_or("") + c;
            }
        }
        end_word();
        return words_;
    }

  private:
    static constexpr std::string_view special = "|&;<>()$`*?[{\n";

    char take() {
        const char c = rest_.front();
        rest_.remove_prefix(1);
        return c;
    }
    void take_single_quoted() {
        const std::size_t end = rest_.find('\'');
        require(end != std::string_view::npos, "closing quote");
        word_ = word_.value_or("") + std::string(rest_.substr(0, end));
        rest_.remove_prefix(end + 1);
    }
    void take_double_quoted() {
        word_ = word_.value_or("");
        for (;;) {
            require(!rest_.empty(), "closing quote");
            const char c = take();
            if (c == '"') return;
            require(c != '$' && c != '`', "no expansion");
            if (c != '\\') {
                *word_ += c;
                continue;
            }
            require(!rest_.empty() && rest_.front() != '\n', "backslash before a character");
            // Before any other character a backslash stands for itself.
            if (std::string_view("\"\\$`").find(rest_.front()) == std::string_view::npos)
                *word_ += '\\';
            *word_ += take();
        }
    }
    void end_word() {
        if (word_) words_.push_back(*word_);
        word_.reset();
    }

    std::string_view rest_;
    std::optional<std::string> word_;
    std::vector<std::string> words_;
};

using Words = std::vector<std::string>;

Words fields_of(std::string_view value) {
    Words fields;
    std::size_t start = value.find_first_not_of(" \t");
    while (start != std::string_view::npos) {
        const std::size_t end = value.find_first_of(" \t", start);
        fields.emplace_back(value.substr(start, end - start));
        start = value.find_first_not_of(" \t", end);
    }
    return fields;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string value(fuzz::c_text_of(data, size));
    require(Reader(shell::bare(value)).words() == fields_of(value), "bare");
    require(Reader("x" + shell::word(value, shell::At::inside_word) + "y").words() ==
                Words{"x" + value + "y"},
            "within a word");
    if (!value.empty()) require(Reader(shell::word(value)).words() == Words{value}, "word");
    require(Reader("'" + shell::in_single(value) + "'").words() == Words{value}, "single quotes");
    require(Reader("\"" + shell::in_double(value) + "\"").words() == Words{value}, "double quotes");
    return 0;
}
