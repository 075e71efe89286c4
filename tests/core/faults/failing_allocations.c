/* Linked into a program, takes the place of the C library's allocation and lets one of the
 * program's choice fail. Counts those of the thread that asks for it only, so that a number means
 * the same in every run. */
#include <errno.h>
#include <stddef.h>

void fail_allocation(long number);
long allocations_made(void);
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

static __thread long remaining __attribute__((tls_model("initial-exec"))) = -1; /* -1: none fails */
static __thread long made __attribute__((tls_model("initial-exec"))) = 0;

/* Lets that many allocations pass, and the one behind them fail. */
void fail_allocation(long number) {
    remaining = number;
    made = 0;
}

/* How many there were from then until the one that failed. */
long allocations_made(void) { return made; }

static int fails(void) {
    if (remaining < 0) return 0;
    ++made;
    if (remaining-- > 0) return 0;
    errno = ENOMEM;
    return 1;
}

void* malloc(size_t size) { return fails() ? NULL : __libc_malloc(size); }

void* calloc(size_t count, size_t size) { return fails() ? NULL : __libc_calloc(count, size); }

void* realloc(void* block, size_t size) { return fails() ? NULL : __libc_realloc(block, size); }
