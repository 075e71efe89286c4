#pragma once

// Everything that tests use, in one include.
#include "support/capture.hpp"
#include "support/commands.hpp"
#include "support/files.hpp"
#include "support/golden.hpp"
#include "support/requirements.hpp"
#include "support/stand_in.hpp"
#include "support/terminal.hpp"
#include "support/wait.hpp"
