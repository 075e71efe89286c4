#include "core/faults/os_calls.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <dlfcn.h>
#include <pthread.h>
#include <spawn.h>
#include <unistd.h>

namespace qvtc::test {

namespace {

std::atomic<OsCalls*> watching{nullptr};

/// The C library's own function behind the one of this file.
template <typename Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

std::string path_of(int descriptor) {
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t length = readlink(link.c_str(), path, sizeof path);
    return length < 0 ? "?" : std::string(path, static_cast<std::size_t>(length));
}

/// The result of a call that reports errors in errno; `perform` makes it.
template <typename Result, typename Perform>
Result watched(const char* name, const std::string& on_file, Perform perform) {
    OsCalls* const calls = watching.load();
    const int error = calls != nullptr ? calls->enter(name, on_file) : 0;
    if (error == 0) return perform();
    errno = error;
    return -1;
}

} // namespace

OsCalls::OsCalls() { watching = this; }

OsCalls::~OsCalls() { watching = nullptr; }

std::vector<std::string> OsCalls::on_files() const {
    const std::lock_guard lock(mutex_);
    return on_files_;
}

OsCalls& OsCalls::fail(const std::string& name, int error) {
    const std::lock_guard lock(mutex_);
    errors_[name] = error;
    return *this;
}

OsCalls& OsCalls::before(const std::string& name, std::function<void()> action, int calls_before) {
    const std::lock_guard lock(mutex_);
    actions_[name] = {std::move(action), calls_before};
    return *this;
}

OsCalls& OsCalls::hamper_writes(std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    most_written_ = bytes;
    return *this;
}

OsCalls& OsCalls::set_time(std::time_t now) {
    const std::lock_guard lock(mutex_);
    now_ = now;
    return *this;
}

int OsCalls::enter(const std::string& name, const std::string& on_file) {
    std::function<void()> action;
    {
        const std::lock_guard lock(mutex_);
        if (!on_file.empty()) {
            std::string call = name + " " + on_file;
            if (on_files_.empty() || on_files_.back() != call) on_files_.push_back(call);
        }
        const auto found = actions_.find(name);
        if (found != actions_.end() && found->second.calls_before-- == 0) {
            action = std::move(found->second.run);
            actions_.erase(found);
        }
    }
    if (action) action();
    const std::lock_guard lock(mutex_);
    const auto error = errors_.find(name);
    return error != errors_.end() ? error->second : 0;
}

std::optional<std::size_t> OsCalls::room_for(std::size_t bytes) {
    const std::lock_guard lock(mutex_);
    if (!most_written_) return bytes;
    interrupted_ = !interrupted_;
    if (interrupted_) return std::nullopt;
    return std::min(bytes, *most_written_);
}

std::optional<std::time_t> OsCalls::now() const {
    const std::lock_guard lock(mutex_);
    return now_;
}

} // namespace qvtc::test

using qvtc::test::OsCalls;
using qvtc::test::path_of;
using qvtc::test::real;
using qvtc::test::watched;
using qvtc::test::watching;

// Definitions in the program itself come before those of the C library.
extern "C" {

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const arguments[],
                char* const environment[]) {
    OsCalls* const calls = watching.load();
    const int error = calls != nullptr ? calls->enter("posix_spawn") : 0;
    if (error != 0) return error;
    return real<decltype(posix_spawn)>("posix_spawn")(child, path, actions, attributes, arguments,
                                                      environment);
}

pid_t fork() noexcept {
    return watched<pid_t>("fork", "", [] { return real<pid_t()>("fork")(); });
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*body)(void*),
                   void* argument) noexcept {
    OsCalls* const calls = watching.load();
    const int error = calls != nullptr ? calls->enter("pthread_create") : 0;
    if (error != 0) return error;
    return real<decltype(pthread_create)>("pthread_create")(thread, attributes, body, argument);
}

ssize_t write(int descriptor, const void* bytes, size_t count) {
    OsCalls* const calls = watching.load();
    if (calls == nullptr) return real<decltype(write)>("write")(descriptor, bytes, count);
    return watched<ssize_t>("write", path_of(descriptor), [&]() -> ssize_t {
        const auto room = calls->room_for(count);
        if (room) return real<decltype(write)>("write")(descriptor, bytes, *room);
        errno = EINTR;
        return -1;
    });
}

int fsync(int descriptor) {
    return watched<int>("fsync", path_of(descriptor),
                        [&] { return real<decltype(fsync)>("fsync")(descriptor); });
}

int posix_fallocate(int descriptor, off_t start, off_t length) {
    OsCalls* const calls = watching.load();
    const int error = calls != nullptr ? calls->enter("fallocate", path_of(descriptor)) : 0;
    if (error != 0) return error;
    return real<decltype(posix_fallocate)>("posix_fallocate")(descriptor, start, length);
}

int rename(const char* from, const char* to) noexcept {
    return watched<int>("rename", std::string(from) + " " + to,
                        [&] { return real<decltype(rename)>("rename")(from, to); });
}

time_t time(time_t* result) noexcept {
    OsCalls* const calls = watching.load();
    const auto set = calls != nullptr ? calls->now() : std::nullopt;
    const time_t now = set ? *set : real<decltype(time)>("time")(nullptr);
    if (result != nullptr) *result = now;
    return now;
}
}
