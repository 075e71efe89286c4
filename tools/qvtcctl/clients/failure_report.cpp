#include "qvtcctl/clients/failure_report.hpp"

#include <fmt/format.h>

namespace qvtc::qvtcctl {

std::string explanation_text(const Explanation& explanation) {
    std::string text = fmt::format("  What it means:   {}\n  What to do:      {}\n",
                                   explanation.means, explanation.advice);
    if (!explanation.words.empty()) {
        text += fmt::format("  Client's words:  {}\n", explanation.words);
    }
    if (explanation.lines.empty()) return text;
    text += fmt::format("  Log lines:       from {}\n", explanation.log);
    for (const std::string& line : explanation.lines) text += fmt::format("    {}\n", line);
    return text;
}

Json explanation_json(const Explanation& explanation) {
    Json map = json_map();
    add(map, "means", explanation.means);
    add(map, "advice", explanation.advice);
    add(map, "words", explanation.words);
    add(map, "log", explanation.log);
    Json lines = json_list();
    for (const std::string& line : explanation.lines) append(lines, json_text(line));
    add(map, "lines", std::move(lines));
    return map;
}

} // namespace qvtc::qvtcctl
