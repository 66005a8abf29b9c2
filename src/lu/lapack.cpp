// lapack.cpp - LAPACK, loaded when a factorisation first needs it.
//
// Only the dense tail of the LU factorisation calls LAPACK, and most models never
// reach one.  Linking LAPACK would make every program that loads this library
// pay for it at start-up: an optimised LAPACK (OpenBLAS) carries tens of
// thousands of symbols, whose relocation costs a few milliseconds per process,
// more than a small LP takes to solve.  So the library opens it by its Debian
// soname at the first dense tail.  Should that fail, the dense tail is never
// taken and the sparse kernel factorises the whole basis.
#include "lu/slu.h"

#include <dlfcn.h>

#ifndef KORVA_LAPACK_SONAME
#define KORVA_LAPACK_SONAME "liblapack.so.3"
#endif

namespace {

SluDgetrf load_dgetrf() {
    // RTLD_LOCAL keeps LAPACK's symbols out of the program's namespace; the handle
    // stays open for the life of the process.
    for (const char *name : {KORVA_LAPACK_SONAME, "liblapack.so.3", "liblapack.so"}) {
        void *lib = dlopen(name, RTLD_NOW | RTLD_LOCAL);
        if (!lib) continue;
        if (void *fn = dlsym(lib, "dgetrf_")) return reinterpret_cast<SluDgetrf>(fn);
        dlclose(lib);
    }
    return nullptr;
}

}  // namespace

SluDgetrf slu_lapack_dgetrf() {
    // Resolved once, under the guard of a function-local static.
    static const SluDgetrf fn = load_dgetrf();
    return fn;
}
