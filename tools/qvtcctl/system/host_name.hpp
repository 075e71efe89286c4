#pragma once

#include "qvtcctl/verb/quiet.hpp"

#include <string>
#include <string_view>

namespace qvtc::qvtcctl {

/// What is wrong with a host name: a sentence on it and what to do, to follow the value; empty
/// when nothing is wrong. The rules are those of names in the DNS: labels of letters, digits and
/// inner hyphens, at most 63 bytes each, joined by dots, at most 63 bytes in all so that the
/// system takes it.
std::string fault_in_host_name(std::string_view name);

/// The terminal's name; empty when neither a name nor an identity to make one of is stored.
std::string stored_host_name(Chatter chatter);

} // namespace qvtc::qvtcctl
