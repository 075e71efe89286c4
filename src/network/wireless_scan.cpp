#include "network/wireless_scan.hpp"

#include <algorithm>
#include <array>
#include <charconv>

#include "core/text.hpp"

namespace qvtc::network {

namespace {

using Fields = std::vector<std::string>;

constexpr std::string_view separators = " \t\n";
constexpr std::size_t fields_per_line = 64;
constexpr std::size_t listed_limit = 50; ///< one more is listed than this
constexpr std::size_t name_limit = 1023;
constexpr int signal_levels = 7;
constexpr std::size_t signal_behind_mode = 4; ///< CHAN, and RATE in two words

constexpr std::string_view mode = "Infra";
constexpr std::string_view in_use = "*";
constexpr std::string_view hidden = "--";

struct EncryptionRow {
    const char* mark; ///< what the column holds
    Encryption encryption;
};
// In the order in which they are looked for: a network may have several.
constexpr EncryptionRow encryptions[] = {
    {"802.1X", Encryption::enterprise},
    {"WPA2", Encryption::wpa2},
    {"WPA1", Encryption::wpa},
    {"--", Encryption::open},
};
constexpr std::array<const char*, 5> encryption_names = {"open", "wpa", "wpa2", "802.1X", "wep"};

std::string_view take_line(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

/// The number at the beginning of a text, as atoi has it; 0 without one.
int leading_number(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

struct Network {
    std::string name; ///< with its quotes as tabs and carriage returns
    bool connected = false;
    Encryption encryption = Encryption::wep;
    int signal = 0;
};

std::string joined(const Fields& fields, std::size_t begin, std::size_t end) {
    std::string text;
    for (std::size_t i = begin; i < end; ++i) text += (i > begin ? " " : "") + fields[i];
    return text.substr(0, name_limit);
}

/// What a listing tells, line after line.
class Listing {
  public:
    /// NetworkManager of today prints the access point's address before its name;
    /// that of the terminals does not.
    explicit Listing(std::string_view header) {
        const Fields columns = scan_fields(header, fields_per_line);
        has_address_ = std::find(columns.begin(), columns.end(), "BSSID") != columns.end();
    }

    bool is_full() const { return names_.size() > listed_limit; }

    /// The single-quoted object of a line's network; empty for a line that adds none.
    std::string entry_of(std::string_view line) {
        const Fields fields = scan_fields(line, fields_per_line);
        const bool connected = !fields.empty() && fields[0] == in_use;
        const std::size_t begin = std::size_t{connected} + std::size_t{has_address_};
        if (begin >= fields.size()) return "";
        const auto found =
            std::find(fields.begin() + static_cast<std::ptrdiff_t>(begin), fields.end(), mode);
        if (found == fields.end()) return "";
        if (!connected && (fields[begin] == hidden || is_listed(fields[begin]))) return "";

        const auto at = static_cast<std::size_t>(found - fields.begin());
        const std::size_t signal = at + signal_behind_mode;
        // Quotes travel as two other characters: a tab separates fields, and is in
        // no name; a carriage return in one comes out as a double quote.
        names_.push_back(
            replace_all(replace_all(joined(fields, begin, at), '\'', '\t'), '"', '\r'));
        return textf("{'ssid':'%s','connected':'%s','encryptType':'%s','sigStrength':'%d'}",
                     names_.back().c_str(), connected ? "on" : "off",
                     name_of(encryption_of(fields.back())),
                     signal_level(signal < fields.size() ? leading_number(fields[signal]) : 0,
                                  signal_levels));
    }

  private:
    /// Deliberate: only the first word of a name is looked for among the names, so
    /// that names of several words are listed once for each access point.
    bool is_listed(const std::string& first_word) const {
        return std::find(names_.begin(), names_.end(), first_word) != names_.end();
    }

    bool has_address_ = false;
    std::vector<std::string> names_;
};

std::string json_of(std::string_view single_quoted) {
    std::string json;
    for (const char c : single_quoted) {
        switch (c) {
        case '\'':
            json += '"';
            break;
        case '\t':
            json += '\'';
            break;
        case '\\':
            json += "\\\\";
            break;
        case '\r':
            json += "\\\"";
            break;
        default:
            json += c;
        }
    }
    return json;
}

} // namespace

std::vector<std::string> scan_fields(std::string_view line, std::size_t limit) {
    Fields fields;
    while (fields.size() < limit) {
        const std::size_t start = line.find_first_not_of(separators);
        if (start == std::string_view::npos) break;
        line.remove_prefix(start);
        const std::string_view field = line.substr(0, line.find_first_of(separators));
        fields.emplace_back(field.substr(0, scan_field_limit));
        line.remove_prefix(field.size());
    }
    return fields;
}

Encryption encryption_of(std::string_view security) {
    for (const EncryptionRow& row : encryptions) {
        if (contains(security, row.mark)) return row.encryption;
    }
    return Encryption::wep;
}

const char* name_of(Encryption encryption) {
    return encryption_names[static_cast<std::size_t>(encryption)];
}

int signal_level(int value, int levels) {
    constexpr int lowest = 10;
    constexpr int highest = 60;
    if (value <= lowest) return 0;
    if (value >= highest) return levels - 1;
    return static_cast<int>((value - lowest) * (levels - 1L) / (highest - lowest));
}

std::string network_list_json(std::string_view listing) {
    Listing known(take_line(listing));
    std::string text = "{'list':";
    bool first = true;
    while (!listing.empty() && !known.is_full()) {
        const std::string entry = known.entry_of(take_line(listing));
        if (entry.empty()) continue;
        text += (first ? "[" : ",") + entry;
        first = false;
    }
    return json_of(text + (first ? "[]}" : "]}"));
}

} // namespace qvtc::network
