#pragma once

#include <exception>

#include "core/lock_wait.hpp"

/// Marks what the shared library exports; everything else stays hidden.
#define QVTC_EXPORT __attribute__((visibility("default")))

namespace qvtc {

/// Runs the body of an exported function: no exception may reach a C caller.
/// Only std::exception is caught, so that a thread that is being cancelled or
/// that calls pthread_exit still unwinds. All locks of one call share one wait.
template <typename Result, typename Body>
Result guard(Result on_failure, Body&& body) {
    const LockWait one_for_the_call;
    try {
        return body();
    } catch (const std::exception&) {
        return on_failure;
    }
}

template <typename Body>
void guard_void(Body&& body) {
    const LockWait one_for_the_call;
    try {
        body();
    } catch (const std::exception&) { // out of memory: nothing is left to be done
    }
}

/// Whether a caller gave everything that a function cannot do without. In every exported function
/// alike, a null text, buffer or object does nothing and gives the documented failure.
template <typename... Given>
bool given(const Given*... pointers) {
    return ((pointers != nullptr) && ...);
}

} // namespace qvtc
