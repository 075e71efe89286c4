#include "core/faults/descriptors.hpp"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>
#include <vector>

namespace qvtc::test {

namespace {

constexpr int out_of_the_way = 100;

rlimit descriptor_limit() {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    return limit;
}

} // namespace

std::size_t open_descriptors() {
    // The one with which the list itself is read counts each time.
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

DescriptorLimit::DescriptorLimit(unsigned more) : former_(descriptor_limit()) {
    // The limit is one on numbers: the lowest free ones are those that remain.
    std::vector<int> free;
    while (free.size() <= more) free.push_back(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0));
    rlimit limit = former_;
    limit.rlim_cur = static_cast<rlim_t>(*std::max_element(free.begin(), free.end()));
    for (const int number : free) close(number);
    setrlimit(RLIMIT_NOFILE, &limit);
}

DescriptorLimit::~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &former_); }

ClosedDescriptor::ClosedDescriptor(int number)
    : number_(number), kept_(fcntl(number, F_DUPFD_CLOEXEC, out_of_the_way)) {
    close(number_);
}

ClosedDescriptor::~ClosedDescriptor() {
    if (kept_ < 0) return;
    dup2(kept_, number_);
    close(kept_);
}

} // namespace qvtc::test
