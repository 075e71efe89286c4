// The tool is what a program of somebody else would be: it sees the public header and nothing
// else of the library.
#include "support/support.hpp"

#include <filesystem>
#include <regex>

#include <gtest/gtest.h>

namespace qvtc::qvtcctl {
namespace {

TEST(QvtcctlSeparation, NoIncludeDirectoryLeadsIntoTheLibrary) {
    const std::vector<std::string> directories =
        test::lines_of(test::read_file(QVTCCTL_INCLUDE_DIRECTORIES));
    const std::string project = QVTC_PROJECT;
    std::vector<std::string> of_the_project;
    for (const std::string& directory : directories) {
        if (directory.starts_with(project))
            of_the_project.push_back(directory.substr(project.size()));
    }
    EXPECT_EQ(of_the_project, (std::vector<std::string>{"/tools", "/include"}));
}

TEST(QvtcctlSeparation, OwnHeadersAreTheOnlyOnesInQuotes) {
    const std::regex in_quotes("^ *#include \"([^\"]*)\"");
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(QVTCCTL_SOURCES)) {
        if (entry.path().extension() != ".cpp" && entry.path().extension() != ".hpp") continue;
        ++files;
        for (const std::string& line : test::lines_of(test::read_file(entry.path()))) {
            std::smatch match;
            if (!std::regex_search(line, match, in_quotes)) continue;
            EXPECT_TRUE(match.str(1).starts_with("qvtcctl/")) << entry.path() << ": " << line;
        }
    }
    EXPECT_GT(files, 100U);
}

} // namespace
} // namespace qvtc::qvtcctl
