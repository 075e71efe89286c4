#pragma once

#include <string>

namespace qvtc::test {

// Servers on 127.0.0.1 for the clients of the other kinds. Each is ready when the call returns,
// and ends with its terminal. They throw std::runtime_error when they do not come up.

/// A VNC server that shows a display. `options` are those of x11vnc, in shell text.
void start_vnc_server(const std::string& display, const std::string& options);

/// A machine of 64 MB without a disk, whose screen is served; `options` are those of "-spice" and
/// whatever is to follow them, in shell text.
void start_spice_server(const std::string& port, const std::string& options);

/// A web server of one blue page called "The terminal's page"; its log is in /tmp/web.log.
void start_web_server(const std::string& port);

/// Whether something answers at that port.
bool answers(const std::string& port);

/// Whether a window's line in the tree of display :0 holds the text.
bool has_window(const std::string& text);

/// What a VNC server of 127.0.0.1 offers: its security types, as numbers with blanks between them.
/// Empty when it does not answer as a VNC server does.
std::string vnc_security_types(const std::string& port);

} // namespace qvtc::test
