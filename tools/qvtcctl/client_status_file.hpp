#pragma once

#include "qvtcctl/outcome.hpp"

#include <cstdint>
#include <string>

namespace qvtc::qvtcctl {

/// Where the library's watchers write what has come of a launch (RDP excepted).
inline constexpr const char* client_status_path = "/usr/local/vpclient/config/clientstatus";

/// The client-status file as it was at some moment, to tell an old verdict from a new one.
class ClientStatusFile {
  public:
    ClientStatusFile();

    /// What stands in the file now if it has been written since; else none.
    WatcherVerdict new_verdict() const;

    /// What stands in the file, whenever it was written.
    static WatcherVerdict verdict();

  private:
    struct Stamp {
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;
        std::uint64_t inode = 0;
        bool operator==(const Stamp&) const = default;
    };
    static Stamp stamp();

    Stamp before_;
};

} // namespace qvtc::qvtcctl
