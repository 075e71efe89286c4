// Only the shared library has this source: an archive with a main() in it would give that
// to any program whose own main() lies in an archive, too.
#include "core/edge.hpp"
#include "store/key_value_table.hpp"

#include <cstdio>

using namespace qvtc;

extern "C" {

/// Makes the table and stores a row. The library's symbol is "main": a program that
/// links the library has a main() of its own, which is what runs.
QVTC_EXPORT int qvtc_test_entry() __asm__("main");

int qvtc_test_entry() {
    std::puts("hell world");
    guard_void([] {
        store::prepare_table();
        store::write_row("olddisplay", "1440x900");
    });
    return 0;
}
}
