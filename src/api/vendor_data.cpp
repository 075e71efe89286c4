#include "api/vendor_data.hpp"

#include <cstring>
#include <mutex>

#include "core/base64.hpp"
#include "core/encodings.hpp"
#include "core/exported_data.hpp"
#include "core/shared_buffer.hpp"
#include "core/text.hpp"
#include "store/numbered_store.hpp"

QVTC_EXPORTED_ARRAY(char, goemdata, [102400], {})
QVTC_EXPORTED_ARRAY(char, gfeature, [102400], {})

namespace qvtc::api {

namespace {

namespace numbers = store::numbers;

constexpr std::size_t cache_size = sizeof qvtc_storage_goemdata;
static_assert(sizeof qvtc_storage_gfeature == cache_size);

constexpr std::size_t marker_size = 1024;
constexpr std::size_t info_size = 10240;

/// Texts longer than these are kept.
constexpr std::size_t longest_data_read_again = 500;
constexpr std::size_t longest_features_read_again = 100;

std::mutex caches;

std::string in_double_quotes(std::string text) { return replace_all(std::move(text), '\'', '"'); }

/// What a cache holds, filled anew while that is short; a front-end may have written
/// into it.
template <typename Read>
std::string cached(char* cache, std::size_t longest_read_again, Read&& read) {
    const std::scoped_lock lock(caches);
    if (strnlen(cache, cache_size) <= longest_read_again) copy_out(cache, cache_size, read());
    return {cache, strnlen(cache, cache_size)};
}

/// A text that is no base64 stays as it was read.
std::string read_data() {
    std::string text = store::numbered_text(numbers::vendor_data, cache_size);
    const std::string escaped = c_text(base64::decode(text).value_or(""));
    if (!escaped.empty()) text = c_text(unescape_hex_pairs(escaped, '%', cache_size - 1));
    return in_double_quotes(std::move(text));
}

} // namespace

Json vendor_marker() {
    return parse_json(leave_in_shared_buffer(
        in_double_quotes(store::numbered_text(numbers::vendor_marker, marker_size))));
}

Json vendor_info() {
    return parse_json(
        leave_in_shared_buffer(store::numbered_text(numbers::vendor_info, info_size)));
}

Json vendor_data() {
    return parse_json(cached(qvtc_storage_goemdata, longest_data_read_again, read_data));
}

Json vendor_features() {
    const std::string text = cached(qvtc_storage_gfeature, longest_features_read_again, [] {
        return store::numbered_text(numbers::vendor_features, cache_size);
    });
    return text.size() > longest_features_read_again ? parse_json(text) : nullptr;
}

} // namespace qvtc::api
