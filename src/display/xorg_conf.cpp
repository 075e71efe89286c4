#include "display/xorg_conf.hpp"

#include <algorithm>
#include <iterator>
#include <span>

#include "core/text.hpp"

namespace qvtc::display {

namespace {

constexpr const char* minimal_lines[] = {
    "",
    "Section \"ServerFlags\"",
    "\tOption \"BlankTime\"     \"0\"",
    "\tOption \"StandbyTime\"   \"0\"",
    "\tOption \"SuspendTime\"   \"0\"",
    "\tOption \"OffTime\"       \"0\"",
    "\tOption \"DontVTSwitch\" \"on\"",
    "EndSection",
    "",
};

constexpr const char* server_flags[] = {
    "Section \"ServerFlags\"",
    "\tOption \"BlankTime\"  \t\"0\"",
    "\tOption \"StandbyTime\"  \t\"0\"",
    "\tOption \"SuspendTime\"  \t\"0\"",
    "\tOption \"OffTime\"  \t\"0\"",
    "\tOption \"DontVTSwitch\" \"on\"",
    "EndSection",
    "",
};

constexpr const char* device_begin[] = {
    "# X.Org X server configuration file ",
    "",
    "Section \"Device\"",
    "\tIdentifier \"Card0\"",
};

constexpr const char* device_options[] = {
    "\tOption\t\"ShadowFB\"\t  \"false\"", "\tOption\t\"HWCursor\"\t  \"false\"",
    "\tOption\t\"SWCursor\"\t  \"true\"",  "\tOption\t\"XVHWOverlay\"\t  \"true\"",
    "\tOption\t\"TearFree\"\t  \"true\"",  "\tOption\t\"DRI\"\t \t \"true\"",
};

// Deliberate: the spacing and the capitals of one line differ from the rest.
constexpr const char* modelines[] = {
    "\tModeline\t\"800x600_60.00\"   38.25  800 832 912 1024  600 603 607 624 -hsync +vsync",
    "\tModeline\t\"1024x768_60.00\"   63.50  1024 1072 1176 1328  768 771 775 798 -hsync +vsync",
    "\tModeline\t\"1280x720_60.00\"   74.50  1280 1344 1472 1664  720 723 728 748 -hsync +vsync",
    "\tModeline\t\"1280x1024_60.00\" 108.0  1280 1328 1440 1688 1024 1025 1028 1066 +hsync +vsync",
    "\tModeline\t\"1366x768_60.00\"  85.500 1366 1494 1624 1798 768 770 776 795 +hsync -vsync",
    "\tModeline\t\"1440x900_60.00\"  106.50  1440 1528 1672 1904  900 903 909 934 -hsync +vsync",
    "\tModeline\t\"1600x900_60.00\"  119.00 1600 1696 1864 2128 900 901 904 932 -HSync +Vsync",
    "\tModeline\t\"1600x1200_60.00\"  161.00  1600 1712 1880 2160  1200 1203 1207 1245 -hsync "
    "+vsync",
    "\tModeline\t\"1920x1080_60.00\"  173.00  1920 2048 2248 2576  1080 1083 1088 1120 -hsync "
    "+vsync",
};

constexpr const char* screen_begin[] = {
    "Section \"Screen\"",     "\tIdentifier\t\"Screen-0\"", "\tMonitor\t\t\"Monitor-0\"",
    "\tDevice\t\t\"Card0\"",  "\tDefaultDepth    24",       "\tSubSection \"Display\"",
    "\t\tDepth           24",
};

constexpr const char* screen_end[] = {"\tEndSubSection", "EndSection", ""};

// Deliberate: the layout of a single screen keeps the name of the dual one.
constexpr const char* layout_begin[] = {
    "Section \"ServerLayout\"",
    "\tIdentifier      \"Dual-Monitor-Layout\"",
    "\tScreen\t\t\"Screen-0\"",
};

constexpr const char* dual_layout_options[] = {
    "\tOption \"Clone\"  \t\"false\"",
    "\tOption \"Xinerama\"  \t\"true\"",
    "\tOption \"RandR\"  \t\"false\"",
};

constexpr const char* section_end[] = {"EndSection", ""};

constexpr const char* direct_rendering[] = {"Section \"DRI\"", "\tMode 0666", "EndSection", ""};

struct OutputMapping {
    const char* processor; ///< what its name contains
    OutputTest test;
    Outputs outputs;
};

// The first row that matches counts.
// clang-format off
constexpr OutputMapping output_mappings[] = {
    {"J3160", OutputTest::none,                   {"DP2",    "HDMI1"}},
    {"J3355", OutputTest::none,                   {"DP1",    "HDMI1"}},
    {"N3160", OutputTest::none,                   {"HDMI3",  "HDMI1"}},
    {"N5095", OutputTest::is_notebook,            {"eDP1",   "HDMI1"}},
    {"N5095", OutputTest::dp1_is_connected,       {"DP1",    "HDMI2"}},
    {"N5095", OutputTest::hdmi1_is_not_connected, {"HDMI-2", "HDMI-1"}},
    {"N5095", OutputTest::none,                   {"HDMI2",  "HDMI1"}},
    {"",      OutputTest::none,                   {"VGA1",   "HDMI1"}},
};

// Drivers, by the name that a line of lspci contains.
constexpr const char* drivers[] = {"Radeon", "vmware"};
constexpr const char* usual_driver = "intel";

struct StaticMode {
    unsigned resolution_number;
    const char* mode;
};
// Deliberate: 9 is not among them, unlike where the display script is told.
constexpr StaticMode static_modes[] = {
    {1, "1024x768_60.00"},  {2, "1280x720_60.00"},  {3, "1440x900_60.00"},
    {4, "1600x1200_60.00"}, {5, "1920x1080_60.00"}, {6, "1280x1024_60.00"},
    {7, "1366x768_60.00"},  {8, "1600x900_60.00"},
};
constexpr const char* fallback_mode = "800x600_60.00";
// clang-format on

void append(Lines& lines, std::span<const char* const> more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

void append_device(Lines& lines, const StaticFacts& facts) {
    append(lines, device_begin);
    lines.push_back(textf("\tDriver\t\"%s\"", facts.driver));
    append(lines, device_options);
    if (facts.dual) {
        lines.push_back(textf("\tOption\t\"monitor-%s\"\t  \"Monitor-0\"", facts.outputs.first));
        lines.push_back(textf("\tOption\t\"monitor-%s\"\t  \"Monitor-1\"", facts.outputs.second));
    }
    append(lines, section_end);
}

void begin_monitor(Lines& lines, const char* identifier) {
    lines.emplace_back("Section \"Monitor\"");
    lines.push_back(textf("\tIdentifier      \"%s\"", identifier));
    lines.emplace_back("\tOption   \"Enable\"      \"true\"");
    append(lines, modelines);
}

void append_monitors(Lines& lines, bool dual) {
    begin_monitor(lines, "Monitor-0");
    append(lines, section_end);
    if (!dual) return;
    begin_monitor(lines, "Monitor-1");
    lines.emplace_back("\tOption   \"LeftOf\"      \"Monitor-0\"");
    append(lines, section_end);
}

void append_screen_and_layout(Lines& lines, const StaticFacts& facts) {
    append(lines, screen_begin);
    if (!facts.mode.empty())
        lines.push_back(textf("\t\tModes           \"%s\"", facts.mode.c_str()));
    append(lines, screen_end);
    append(lines, layout_begin);
    if (facts.dual) append(lines, dual_layout_options);
    append(lines, section_end);
}

} // namespace

Lines minimal_configuration() { return {std::begin(minimal_lines), std::end(minimal_lines)}; }

Lines flags_only_configuration() {
    Lines lines{""};
    append(lines, server_flags);
    return lines;
}

Outputs outputs_of(std::string_view processor, const std::function<bool(OutputTest)>& holds) {
    for (const OutputMapping& row : output_mappings) {
        if (!contains(processor, row.processor)) continue;
        if (row.test == OutputTest::none || holds(row.test)) return row.outputs;
    }
    return std::prev(std::end(output_mappings))->outputs;
}

const char* driver_of(std::string_view graphics_cards) {
    for (const char* const driver : drivers) {
        if (contains(graphics_cards, driver)) return driver;
    }
    return usual_driver;
}

const char* static_mode_of(unsigned resolution_number) {
    for (const StaticMode& each : static_modes) {
        if (each.resolution_number == resolution_number) return each.mode;
    }
    return fallback_mode;
}

Lines static_configuration(const StaticFacts& facts) {
    Lines lines;
    append_device(lines, facts);
    append_monitors(lines, facts.dual);
    append_screen_and_layout(lines, facts);
    append(lines, server_flags);
    append(lines, direct_rendering);
    return lines;
}

} // namespace qvtc::display
