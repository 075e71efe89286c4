#include "clients/poll_counter.hpp"

#include "core/exported_data.hpp"

QVTC_EXPORTED_DATA(int, counter, 0)

int& qvtc::clients::poll_counter() { return qvtc_storage_counter; }
