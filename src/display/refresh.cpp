#include "display/refresh.hpp"

#include "core/shared_buffer.hpp"
#include "store/numbered_store.hpp"

namespace qvtc::display {

namespace {

constexpr std::size_t refresh_size = 10240; // of the longest text, with its NUL

} // namespace

Json refresh() {
    const std::string text = store::numbered_text(store::numbers::display_refresh, refresh_size);
    return text.empty() ? nullptr : parse_json(leave_in_shared_buffer(text));
}

int store_refresh(const char* text) {
    return store::write_numbered(store::numbers::display_refresh, text);
}

} // namespace qvtc::display
