#include "card_file.hpp"

#include <sstream>
#include <stdexcept>

namespace qvtc::test {

namespace {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
    return parts;
}

unsigned number(const std::string& text) { return static_cast<unsigned>(std::stoul(text)); }

CardControl read_control(const std::vector<std::string>& parts) {
    CardControl control{CardControl::Kind::switched, parts.at(1), number(parts.at(2)), 0, 1, 0, {}};
    control.first = std::stol(parts.back());
    if (parts[0] == "volume") {
        control.kind = CardControl::Kind::volume;
        control.least = std::stol(parts.at(3));
        control.most = std::stol(parts.at(4));
    } else if (parts[0] == "choice") {
        control.kind = CardControl::Kind::choice;
        control.choices = split(parts.at(3), ',');
        control.most = static_cast<long>(control.choices.size()) - 1;
    } else if (parts[0] != "switch") {
        throw std::runtime_error("no line of a sound card: " + parts[0]);
    }
    return control;
}

} // namespace

Card read_card(unsigned number_of_card, const std::string& text) {
    Card card;
    card.number = number_of_card;
    for (const std::string& line : split(text, '\n')) {
        const std::vector<std::string> parts = split(line, '|');
        if (parts.at(0) == "id") {
            card.id = parts.at(1);
        } else if (parts[0] == "name") {
            card.name = parts.at(1);
        } else if (parts[0] == "device") {
            card.devices.push_back({number(parts.at(1)), parts.at(2)});
        } else {
            card.controls.push_back(read_control(parts));
        }
    }
    return card;
}

} // namespace qvtc::test
