#include <tovik/host.h>

#include <dlfcn.h>
#include <stddef.h>

int main(int count, char** arguments)
{
    void* library = dlopen(TOVIK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    tovik_main* run = library == NULL ? NULL : (tovik_main*)dlsym(library, "Main");
    return run == NULL ? 1 : run(count, arguments);
}
