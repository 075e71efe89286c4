#include "qvtcctl/base/table.hpp"

#include "qvtcctl/base/text.hpp"

#include <algorithm>

namespace qvtc::qvtcctl {
namespace {

constexpr std::size_t gap = 2;

std::vector<std::size_t> column_widths(const std::vector<Row>& rows) {
    std::vector<std::size_t> widths;
    for (const Row& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], display_width(row[i]));
        }
    }
    return widths;
}

} // namespace

std::string layout(const std::vector<Row>& rows) {
    std::vector<Row> cells;
    for (const Row& row : rows) {
        Row shown;
        for (const std::string& cell : row) shown.push_back(printable(cell));
        cells.push_back(shown);
    }
    const std::vector<std::size_t> widths = column_widths(cells);
    std::string text;
    for (const Row& row : cells) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            line.append(widths[i] - display_width(row[i]) + gap, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

} // namespace qvtc::qvtcctl
