#pragma once

#include "qvtcctl/doctor/server_findings.hpp"

#include <ctime>

namespace qvtc::qvtcctl {

inline constexpr std::time_t now = 1'795'000'000; // 2026-11-18
inline constexpr std::time_t day = 24L * 60 * 60;

/// A server at which everything is in order.
inline ServerFacts healthy_server(const ServerAddress& address) {
    ServerFacts facts;
    facts.address = address;
    facts.resolution.addresses = {address.host};
    facts.answer = PortAnswer::answered;
    if (address.tls) facts.certificate = Certificate{"CN = h", now - day, now + 900 * day, 0, ""};
    return facts;
}

} // namespace qvtc::qvtcctl
