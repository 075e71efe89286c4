#pragma once

#include <string>

#include "core/json.hpp"

/// A changed resolution is put into force at once, and waits until the user
/// keeps it or goes back to the applied one.
namespace qvtc::display {

/// Puts a resolution into force: a resolution's name, a text with "auto" in it,
/// or a parameter string with "res" (its index) and, to keep it at once, a key
/// "force". What is stored changes all at once. Gives 0, or -1, with nothing
/// done, for an empty text. Neither waits for the user nor restarts the terminal.
int set_resolution(const std::string& request);

/// {"res": index} of the requested resolution.
Json requested_resolution();

/// Whether a requested resolution waits to be kept or reverted.
bool resolution_waits();

/// Keeps the requested resolution; the screen is not touched.
void keep_resolution();

/// Goes back to the applied resolution, on the screen too.
void revert_resolution();

} // namespace qvtc::display
