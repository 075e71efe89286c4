#pragma once

#include "qvtcctl/connections/record.hpp"
#include "qvtcctl/verb/quiet.hpp"

#include <optional>
#include <string>
#include <vector>

namespace qvtc::qvtcctl {

/// This terminal, through the library. The library's setters always report success, so every
/// change is read back here, and one that did not take is refused with ExitCode::not_done.
class StoredConnections {
  public:
    /// Refuses (ExitCode::not_possible) to work without root's rights or without /home/root.
    explicit StoredConnections(Chatter chatter);

    /// In ascending order of their ids.
    std::vector<Record> records(const ConnectionType& type) const;
    std::vector<Record> records() const;

    /// Refuses (ExitCode::not_found) an id under which nothing is stored.
    Record record(unsigned id) const;

    /// Stores a record under its own id, new or in place of the one that is there.
    void store(const ConnectionType& type, const Record& record) const;

    /// Stores a record under the lowest free id of its type, and returns that id.
    unsigned add(const ConnectionType& type, Record record) const;

    void remove(unsigned id) const;

    /// The stored text, or nothing when none is set.
    std::optional<std::string> connect_delay() const;
    void set_connect_delay(unsigned seconds) const;

  private:
    Chatter chatter_;
};

} // namespace qvtc::qvtcctl
