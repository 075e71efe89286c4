#pragma once

#include "core/json.hpp"

/// Switches of clients that hold for all their connections.
namespace qvtc::clients {

/// Whether the Horizon client shows its menu bar: stores it, false when the
/// settings document cannot take it.
bool show_horizon_menu_bar(bool on);

/// {"toolbar": "on"} or {"toolbar": "off"}; on unless it was switched off.
Json horizon_menu_bar();

/// Stores whether a camera is redirected; the status of the numbered store.
int redirect_camera(bool on);

/// What is stored of that, when it is JSON, else null.
Json camera_redirection();

} // namespace qvtc::clients
