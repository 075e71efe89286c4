#pragma once

#include <functional>
#include <string>

namespace qvtc::test {

/// What `action`, and every program it starts, writes to standard output. Ends with `action`:
/// what a background program prints later goes to the test's own output or is lost.
std::string capture_stdout(const std::function<void()>& action);

/// The same for standard error.
std::string capture_stderr(const std::function<void()>& action);

} // namespace qvtc::test
