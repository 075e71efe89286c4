#include "core/os.hpp"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <pthread.h>
#include <thread>
#include <unistd.h>

#include "core/command.hpp"
#include "core/edge.hpp"
#include "core/text.hpp"

namespace qvtc {

namespace {

void* run_body(void* argument) {
    const std::unique_ptr<std::function<void()>> body(
        static_cast<std::function<void()>*>(argument));
    guard_void(*body);
    return nullptr;
}

bool start_detached(std::function<void()> body) {
    auto owned = std::make_unique<std::function<void()>>(std::move(body));
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) return false;
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t thread{};
    const bool started = pthread_create(&thread, &attributes, run_body, owned.get()) == 0;
    pthread_attr_destroy(&attributes);
    if (started) static_cast<void>(owned.release()); // run_body has it now
    return started;
}

class LinuxOs final : public Os {
  public:
    int run(const std::string& command) override { return std::system(command.c_str()); }
    std::string capture(const std::string& command, std::size_t limit) override {
        std::string output(limit, '\0');
        capture_output(command.c_str(), output.data(), output.size());
        return c_text(std::move(output));
    }
    std::optional<std::vector<std::string>> lines(const std::string& command) override {
        return output_lines(command.c_str());
    }
    bool exists(const char* path) override { return access(path, F_OK) == 0; }
    std::time_t now() override { return std::time(nullptr); }
    void sleep(unsigned seconds) override {
        // Goes on after a signal with what is left to the nanosecond: sleep()
        // rounds, and a front-end's timer would make it endless or short.
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
    }
    bool start_thread(std::function<void()> body) override {
        return start_detached(std::move(body));
    }
};

LinuxOs& linux_os() {
    // Never destroyed: a watcher may still run while the process is ending.
    static auto* const system = new LinuxOs;
    return *system;
}

std::atomic<Os*> in_force{nullptr};

} // namespace

Os& os() {
    Os* const replacement = in_force.load();
    return replacement != nullptr ? *replacement : linux_os();
}

ScopedOs::ScopedOs(Os& replacement) : former_(in_force.exchange(&replacement)) {}

ScopedOs::~ScopedOs() { in_force.store(former_); }

} // namespace qvtc
