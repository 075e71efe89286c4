#pragma once

namespace qvtc::clients {

/// Polls of a running RDP client, over all launches.
int& poll_counter();

} // namespace qvtc::clients
