#pragma once

namespace qvtc {

/// Moves each log that has outgrown its limit aside, over the one older
/// generation that is kept.
void rotate_logs();

} // namespace qvtc
