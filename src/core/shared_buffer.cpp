#include "core/shared_buffer.hpp"

#include <mutex>

#include "core/exported_data.hpp"
#include "core/text.hpp"

QVTC_EXPORTED_ARRAY(char, buffer, [qvtc::shared_buffer_size], {})

namespace qvtc {

std::string leave_in_shared_buffer(std::string_view text) {
    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    copy_out(qvtc_storage_buffer, shared_buffer_size, text);
    return qvtc_storage_buffer;
}

} // namespace qvtc
