#include "display/demo_mode.hpp"

#include <cstdlib>

#include "store/settings.hpp"
#include "store/settings_keys.hpp"

namespace qvtc::display {

bool demo_mode() { return std::atoi(store::setting(store::keys::demo_mode).c_str()) == 1; }

void set_demo_mode(bool on) { store::store_setting(store::keys::demo_mode, on ? "1" : "0"); }

} // namespace qvtc::display
