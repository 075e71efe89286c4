#pragma once

#include "qvtcctl/base/finding.hpp"
#include "qvtcctl/clients/client_log.hpp"
#include "qvtcctl/clients/storage.hpp"
#include "qvtcctl/connections/record.hpp"
#include "qvtcctl/doctor/marker_files.hpp"
#include "qvtcctl/doctor/server_findings.hpp"
#include "qvtcctl/verb/settings_document.hpp"

#include <ctime>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qvtc::qvtcctl {

/// What was found of the terminal and of what is around it.
struct DoctorFacts {
    std::optional<ServerFacts> server;  ///< nothing when the record names none, or a gateway
    std::optional<ServerFacts> gateway; ///< nothing when there is none to go through
    std::optional<DocumentFault> document_fault; ///< of one that can be read in part
    std::optional<std::string> storage_fault;
    std::optional<Explanation> last_failure; ///< of this very connection
    bool client_installed = true;
    bool screen_answers = true;
    bool sound_runs = true;
    std::set<std::string_view> markers; ///< paths of the marker files that exist
    std::time_t now = 0;
};

/// Everything that was looked at for a connection, in the order in which its launch would need it.
Findings findings_on(const ConnectionType& type, unsigned id, const Record& record,
                     const DoctorFacts& facts);

/// The worst of them.
Health worst_of(const Findings& findings);

} // namespace qvtc::qvtcctl
