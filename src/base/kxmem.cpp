#include "base/kxmem.h"

#include <cstdlib>
#include <cstdint>
#include <cstring>

#include "base/kxdefs.h"

namespace {

template <class T>
int do_malloc(T **p, long n, bool zero) {
  if (n <= 0) {
    *p = nullptr;
    return 0;
  }
  void *b = zero ? std::calloc(static_cast<size_t>(n), sizeof(T))
                 : std::malloc(static_cast<size_t>(n) * sizeof(T));
  if (!b) {
    *p = nullptr;
    return kx::kErrMemory;
  }
  *p = static_cast<T *>(b);
  return 0;
}

template <class T>
int do_realloc(T **p, long n) {
  if (n <= 0) {
    std::free(*p);
    *p = nullptr;
    return 0;
  }
  void *b = std::realloc(*p, static_cast<size_t>(n) * sizeof(T));
  if (!b) return kx::kErrMemory;  // the old block stays valid and owned
  *p = static_cast<T *>(b);
  return 0;
}

}  // namespace

int CharMalloc(char **p, long n, const char *, int) { return do_malloc(p, n, false); }
int IntMalloc(int **p, long n, const char *, int) { return do_malloc(p, n, false); }
int DoubleMalloc(double **p, long n, const char *, int) { return do_malloc(p, n, false); }
int CharPtrMalloc(char ***p, long n, const char *, int) { return do_malloc(p, n, false); }
int KXIIntPtrMalloc(int ***p, long n, const char *, int) { return do_malloc(p, n, false); }

int CharCalloc(char **p, long n, const char *, int) { return do_malloc(p, n, true); }
int IntCalloc(int **p, long n, const char *, int) { return do_malloc(p, n, true); }
int DoubleCalloc(double **p, long n, const char *, int) { return do_malloc(p, n, true); }
int CharPtrCalloc(char ***p, long n, const char *, int) { return do_malloc(p, n, true); }
int KXIIntPtrCalloc(int ***p, long n, const char *, int) { return do_malloc(p, n, true); }

int CharRealloc(char **p, long n, const char *, int) { return do_realloc(p, n); }
int IntRealloc(int **p, long n, const char *, int) { return do_realloc(p, n); }
int DoubleRealloc(double **p, long n, const char *, int) { return do_realloc(p, n); }
int CharPtrRealloc(char ***p, long n, const char *, int) { return do_realloc(p, n); }
int KXIIntPtrRealloc(int ***p, long n, const char *, int) { return do_realloc(p, n); }

int PACharPtrRealloc(char ***p, long oldCount, long n, const char *oldBlock, const char *block,
                     const char *, int) {
  int rc = do_realloc(p, n);
  if (rc != 0 || !*p) return rc;
  const std::uintptr_t from = reinterpret_cast<std::uintptr_t>(oldBlock);
  const std::uintptr_t to = reinterpret_cast<std::uintptr_t>(block);
  for (long i = 0; i < n; ++i) {
    if (i >= oldCount) {
      (*p)[i] = nullptr;
    } else if ((*p)[i] && from != to) {
      (*p)[i] = reinterpret_cast<char *>(reinterpret_cast<std::uintptr_t>((*p)[i]) - from + to);
    }
  }
  return 0;
}
