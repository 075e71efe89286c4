#pragma once

/// Whether the terminal shows itself off.
namespace qvtc::display {

bool demo_mode();
void set_demo_mode(bool on);

} // namespace qvtc::display
