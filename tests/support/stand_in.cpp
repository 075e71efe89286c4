#include "support/stand_in.hpp"

#include "support/files.hpp"
#include "support/records.hpp"

#include <stdexcept>
#include <string_view>

namespace fs = std::filesystem;

namespace qvtc::test {

namespace {

constexpr auto state_directory = "/run/disposable-terminal";

} // namespace

StandIn::StandIn(const fs::path& name)
    : path_(name.has_parent_path() ? name : "/usr/local/bin" / name),
      directory_(fs::path(state_directory) / "stand-ins" / name.filename()) {
    const fs::path program = fs::path(state_directory) / "stand_in";
    if (!file_exists(program)) {
        throw std::runtime_error("this terminal has no program for stand-ins: it was started "
                                 "without --recorder, or the project is not built");
    }
    if (!fs::create_directories(directory_)) {
        throw std::runtime_error("there is a stand-in for " + name.filename().string() +
                                 " already");
    }
    fs::create_directories(path_.parent_path());
    if (file_exists(path_)) {
        replaced_ = directory_ / "replaced";
        fs::copy(path_, replaced_, fs::copy_options::copy_symlinks);
        fs::remove(path_);
    }
    fs::create_symlink(program, path_);
}

StandIn::~StandIn() {
    std::error_code ignored; // the terminal may be past saving; its test has failed by then
    fs::remove(path_, ignored);
    if (!replaced_.empty()) {
        fs::copy(replaced_, path_, fs::copy_options::copy_symlinks, ignored);
    }
    fs::remove_all(directory_, ignored);
}

StandIn& StandIn::prints(std::initializer_list<std::string> texts) {
    for (int number = 1; fs::remove(directory_ / ("output." + std::to_string(number)));) ++number;
    int number = 0;
    for (const std::string& text : texts) {
        write_file(directory_ / ("output." + std::to_string(++number)), text);
    }
    return *this;
}

StandIn& StandIn::prints_errors(const std::string& text) {
    write_file(directory_ / "errors", text);
    return *this;
}

StandIn& StandIn::exits_with(int status) {
    write_file(directory_ / "status", std::to_string(status));
    return *this;
}

StandIn& StandIn::keeps_running() {
    write_file(directory_ / "status", "stays");
    return *this;
}

StandIn& StandIn::runs(const std::string& script) {
    const fs::path file = directory_ / "script" / path_.filename();
    write_file(file, "#!/bin/bash\n" + script + "\n");
    fs::permissions(file, fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec |
                              fs::perms::group_read | fs::perms::others_read);
    return *this;
}

StandIn::Calls StandIn::calls() const {
    if (!file_exists(directory_ / "calls")) return {};
    const std::string text = read_file(directory_ / "calls");
    Calls calls;
    for (std::string_view rest = text;;) {
        const auto count = take_field(rest);
        if (!count) return calls;
        Arguments arguments(std::stoul(*count));
        for (std::string& argument : arguments) {
            auto field = take_field(rest);
            if (!field) return calls;
            argument = std::move(*field);
        }
        calls.push_back(std::move(arguments));
    }
}

void StandIn::forget_calls() {
    fs::remove(directory_ / "calls");
    fs::remove(directory_ / "count");
}

} // namespace qvtc::test
