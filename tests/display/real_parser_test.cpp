// The X server's own parser reads every configuration that there can be.

#include "core/text.hpp"
#include "display/xorg_conf.hpp"
#include "display_terminal.hpp"

#include <cstdlib>
#include <gtest/gtest.h>
#include <set>

namespace qvtc::display {

namespace {

constexpr const char* file = "/tmp/parsed/xorg.conf";
constexpr const char* log = "/tmp/parsed/log";

/// What the parser has to say against a text; empty when nothing.
std::string complaints_about(const std::string& text) {
    test::write_file(file, text);
    std::filesystem::create_directories("/tmp/parsed/empty");
    std::filesystem::remove(log);
    // Without modules it ends as soon as it has read its configuration.
    test::capture_stderr([] {
        const int status = std::system("Xorg :7 -modulepath /tmp/parsed/empty "
                                       "-config /tmp/parsed/xorg.conf "
                                       "-configdir /tmp/parsed/empty "
                                       "-logfile /tmp/parsed/log </dev/null >/dev/null");
        EXPECT_NE(status, 0);
    });
    std::string complaints;
    bool used = false;
    for (const std::string& line : test::lines_of(test::read_file(log))) {
        used = used || contains(line, std::string("Using config file: \"") + file);
        if (contains(line, "Parse error") || contains(line, "Problem parsing"))
            complaints += line + "\n";
    }
    return used ? complaints : complaints + "it was not read\n";
}

std::string text_of(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

std::set<std::string> all_files() {
    std::set<std::string> files = {text_of(minimal_configuration()),
                                   text_of(flags_only_configuration())};
    for (const bool dual : {true, false}) {
        for (unsigned number = 0; number <= 13; ++number) {
            files.insert(text_of(
                static_configuration({static_mode_of(number), "intel", dual, {"VGA1", "HDMI1"}})));
        }
        for (const char* const mode : {"", "2560x1440"}) {
            files.insert(text_of(static_configuration({mode, "intel", dual, {"VGA1", "HDMI1"}})));
        }
        for (const char* const driver : {"Radeon", "vmware"}) {
            files.insert(text_of(
                static_configuration({"1920x1080_60.00", driver, dual, {"VGA1", "HDMI1"}})));
        }
    }
    for (const OutputTest holding :
         {OutputTest::none, OutputTest::is_notebook, OutputTest::dp1_is_connected,
          OutputTest::hdmi1_is_not_connected}) {
        for (const char* const processor : {"J3160", "J3355", "N3160", "N5095", ""}) {
            const Outputs outputs =
                outputs_of(processor, [&](OutputTest test) { return test == holding; });
            files.insert(
                text_of(static_configuration({"1920x1080_60.00", "intel", true, outputs})));
        }
    }
    return files;
}

} // namespace

TEST(RealParser, ReadsEveryFile) {
    QVTC_NEED_PROGRAM("Xorg");
    const std::set<std::string> files = all_files();
    EXPECT_EQ(files.size(), 2U + 2 * 9 + 2 * 2 + 2 * 2 + 7);
    for (const std::string& text : files) EXPECT_EQ(complaints_about(text), "") << text;
}

TEST(RealParser, WouldRefuseABrokenOne) {
    QVTC_NEED_PROGRAM("Xorg");
    const std::string sound = text_of(minimal_configuration());
    EXPECT_NE(complaints_about(replace_all(sound, "EndSection", "")), "");
    EXPECT_NE(complaints_about(replace_all(sound, "\"BlankTime\"", "BlankTime\"")), "");
    EXPECT_NE(complaints_about(replace_all(sound, "Section \"Server", "Sektion \"Server")), "");
}

} // namespace qvtc::display
