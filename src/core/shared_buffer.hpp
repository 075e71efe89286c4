#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qvtc {

/// Size of the scratch area that the library exports as `buffer`.
inline constexpr std::size_t shared_buffer_size = 204800;

/// Leaves a text in the exported scratch area, where front-ends look at what the
/// last getter has read: at most its size less one, with a NUL behind it. Gives
/// back what a reader of the area finds. Safe from several threads; the last
/// one's text stays.
std::string leave_in_shared_buffer(std::string_view text);

} // namespace qvtc
