#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Parameter strings: "name=value" pairs joined by "&".
namespace qvtc {

/// The pairs of a parameter string, at fixed places in one table. The places
/// are part of the contract: a name longer than 31 bytes runs on into its
/// value, a value longer than 255 into the next entry; past the table's end
/// nothing is stored.
class ParamTable {
  public:
    static constexpr std::size_t entry_count = 64;
    static constexpr std::size_t name_size = 32;
    static constexpr std::size_t value_size = 256;
    static constexpr std::size_t entry_size = name_size + value_size;
    static constexpr std::size_t table_size = entry_count * entry_size;
    using Bytes = std::array<char, table_size>;

    /// Fills the table anew from a non-empty text; an empty one changes nothing.
    void parse(std::string_view text) {
        if (!text.empty()) readable_ = fill(bytes_, text);
    }

    /// The value of the first pair of that name which has both a name and a
    /// value, valid until the next parse; null when there is none. A pair is
    /// only seen if the text held at least as many "=" as pairs up to it.
    const char* find(std::string_view name) const { return find(bytes_, readable_, name); }

    // The same over bytes that lie elsewhere, as the exported ones do.

    /// Gives the number of entries that may be looked at.
    static std::size_t fill(Bytes& bytes, std::string_view text);
    static const char* find(const Bytes& bytes, std::size_t readable, std::string_view name);

  private:
    Bytes bytes_{};
    std::size_t readable_ = 0;
};

/// Like strtok, but with the position kept by the caller, and: when no further
/// delimiter follows a token, the position becomes null, and so does the next
/// token; behind leading delimiters what is left is a token even when empty.
char* next_token(char* text, const char* delimiters, char*& position);

/// A parameter string as the text of a JSON object of strings, in order. Cuts
/// up `text`. Nothing is escaped: a double quote in a value makes invalid JSON.
std::string params_to_json(char* text);

/// The value of a text that is meant to be one single pair: what follows its
/// first "=", up to any further one. Empty without a name or a value.
std::string single_pair_value(std::string_view text);

} // namespace qvtc
