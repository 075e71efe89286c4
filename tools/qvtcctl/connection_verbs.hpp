#pragma once

#include "qvtcctl/verb.hpp"

namespace qvtc::qvtcctl {

// Each adds a verb's options and arguments, and returns what the verb does.
Run define_list(CLI::App& app);
Run define_show(CLI::App& app);
Run define_fields(CLI::App& app);
Run define_types(CLI::App& app);
Run define_add(CLI::App& app);
Run define_set(CLI::App& app);
Run define_remove(CLI::App& app);
Run define_import(CLI::App& app);
Run define_export(CLI::App& app);

} // namespace qvtc::qvtcctl
