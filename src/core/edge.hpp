#pragma once

#include <exception>

/// Marks what the shared library exports; everything else stays hidden.
#define QVTC_EXPORT __attribute__((visibility("default")))

namespace qvtc {

/// Runs the body of an exported function: no exception may reach a C caller.
/// Only std::exception is caught, so that a thread that is being cancelled or
/// that calls pthread_exit still unwinds.
template <typename Result, typename Body>
Result guard(Result on_failure, Body&& body) {
    try {
        return body();
    } catch (const std::exception&) {
        return on_failure;
    }
}

template <typename Body>
void guard_void(Body&& body) {
    try {
        body();
    } catch (const std::exception&) { // out of memory: nothing is left to be done
    }
}

} // namespace qvtc
