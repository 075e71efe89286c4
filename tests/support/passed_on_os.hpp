#pragma once

#include "core/os.hpp"

namespace qvtc::test {

/// Takes the place of the operating system for as long as it lives, and passes everything on to
/// it; what a test wants otherwise it overrides.
class PassedOnOs : public Os {
  public:
    int run(const std::string& command) override { return real_.run(command); }
    std::string capture(const std::string& command, std::size_t limit) override {
        return real_.capture(command, limit);
    }
    std::optional<std::vector<std::string>> lines(const std::string& command) override {
        return real_.lines(command);
    }
    bool exists(const char* path) override { return real_.exists(path); }
    std::time_t now() override { return real_.now(); }
    void sleep(unsigned seconds) override { real_.sleep(seconds); }
    bool start_thread(std::function<void()> body) override {
        return real_.start_thread(std::move(body));
    }

  private:
    Os& real_ = os();
    ScopedOs in_force_{*this};
};

} // namespace qvtc::test
