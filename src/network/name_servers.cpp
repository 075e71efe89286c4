#include "network/name_servers.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

#include "core/descriptor.hpp"
#include "core/paths.hpp"

namespace qvtc::network {

namespace {

constexpr std::string_view keyword = "nameserver";
constexpr std::size_t read_limit = 1024;

/// One read, repeated when a signal interrupts it.
ssize_t read_once(int file, char* bytes, std::size_t size) {
    for (;;) {
        const ssize_t count = read(file, bytes, size);
        if (count >= 0 || errno != EINTR) return count;
    }
}

/// The first `limit` of the words that stand one separator behind the keyword.
/// Deliberate: comments are no exception.
template <std::size_t limit>
std::array<std::string_view, limit> named_in(std::string_view text) {
    std::array<std::string_view, limit> found;
    std::size_t position = 0;
    for (std::size_t count = 0; count < limit; ++count) {
        const std::size_t hit = text.find(keyword, position);
        if (hit == std::string_view::npos) break;
        const std::size_t start = std::min(hit + keyword.size() + 1, text.size());
        found[count] = text.substr(start, text.find_first_of("\n ", start) - start);
        // From where the search stood, not from the hit; only the first moves it.
        if (position == 0) position = hit;
        position = std::min(position + keyword.size() + 1 + found[count].size(), text.size());
    }
    return found;
}

} // namespace

NameServers name_servers_in(std::string_view text) {
    const auto found = named_in<2>(text.substr(0, text.find('\0')));
    return {std::string(found[0]), std::string(found[1])};
}

std::optional<NameServers> name_servers() {
    const Descriptor file(open(paths::resolv_conf, O_RDONLY | O_CLOEXEC));
    if (!file.is_open()) {
        std::fprintf(stderr, "%s open error \n", "getdns");
        return std::nullopt;
    }
    std::array<char, read_limit> bytes{};
    const ssize_t count = read_once(file.get(), bytes.data(), bytes.size());
    if (count < 0) {
        std::fprintf(stderr, "%s read file len error \n", "getdns");
        return std::nullopt;
    }
    return name_servers_in({bytes.data(), static_cast<std::size_t>(count)});
}

} // namespace qvtc::network
