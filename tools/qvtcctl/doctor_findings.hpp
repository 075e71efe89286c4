#pragma once

#include "qvtcctl/certificate.hpp"
#include "qvtcctl/marker_files.hpp"
#include "qvtcctl/record.hpp"
#include "qvtcctl/server_address.hpp"
#include "qvtcctl/server_probe.hpp"

#include <ctime>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

enum class Health { ok, warning, problem };
std::string_view name_of(Health health);

/// One thing that was looked at.
struct Finding {
    Health health = Health::ok;
    std::string_view check; ///< what was looked at, in a word or two
    std::string text;       ///< a sentence
    std::string advice;     ///< what to do; empty where nothing is to be done

    bool operator==(const Finding&) const = default;
};

/// What was found of a server, or a gateway.
struct ServerFacts {
    ServerAddress address;
    Resolution resolution;
    std::optional<PortAnswer> answer;       ///< nothing when it was not asked
    bool certificate_looked_for = false;    ///< false also where openssl is not installed
    std::optional<Certificate> certificate; ///< nothing when there was none to be had
};

/// What was found of the terminal and of what is around it.
struct DoctorFacts {
    std::optional<ServerFacts> server;  ///< nothing when the record names none
    std::optional<ServerFacts> gateway; ///< nothing when there is none to go through
    bool client_installed = true;
    bool screen_answers = true;
    bool sound_runs = true;
    std::set<std::string_view> markers; ///< paths of the marker files that exist
    std::time_t now = 0;
};

/// Everything that was looked at for a connection, in the order in which its launch would need it.
std::vector<Finding> findings_on(const ConnectionType& type, unsigned id, const Record& record,
                                 const DoctorFacts& facts);

/// The worst of them.
Health worst_of(const std::vector<Finding>& findings);

} // namespace qvtc::qvtcctl
