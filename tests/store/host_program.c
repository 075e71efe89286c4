/* A program of somebody else's. With an argument, it also calls the "main" of the library that
 * lies there. */
#include <dlfcn.h>
#include <stdio.h>

int main(int count, char** arguments) {
    puts("the host's own main");
    if (count < 2) return 0;
    void* const library = dlopen(arguments[1], RTLD_NOW);
    int (*entry)(void) = NULL;
    if (library != NULL) *(void**)(&entry) = dlsym(library, "main");
    return entry != NULL ? entry() : 1;
}
