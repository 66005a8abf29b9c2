// Allocation wrappers for the raw arrays of the model records.
// Each takes the address of the pointer, the element count, the source file and
// line, and returns 0 or 2001.  A count of 0 leaves a null pointer and succeeds
// (the realloc form frees what was there).  Blocks are released with free().
#pragma once

#include <cstddef>
#include <cstdlib>

int CharMalloc(char **p, long n, const char *file, int line);
int IntMalloc(int **p, long n, const char *file, int line);
int DoubleMalloc(double **p, long n, const char *file, int line);
int CharPtrMalloc(char ***p, long n, const char *file, int line);
int KXIIntPtrMalloc(int ***p, long n, const char *file, int line);

int CharCalloc(char **p, long n, const char *file, int line);
int IntCalloc(int **p, long n, const char *file, int line);
int DoubleCalloc(double **p, long n, const char *file, int line);
int CharPtrCalloc(char ***p, long n, const char *file, int line);
int KXIIntPtrCalloc(int ***p, long n, const char *file, int line);

int CharRealloc(char **p, long n, const char *file, int line);
int IntRealloc(int **p, long n, const char *file, int line);
int DoubleRealloc(double **p, long n, const char *file, int line);
int CharPtrRealloc(char ***p, long n, const char *file, int line);
int KXIIntPtrRealloc(int ***p, long n, const char *file, int line);

// Resize an array of pointers into a text block, after the block itself moved
// from `oldBlock` to `block`: each of the first `oldCount` non-null pointers is
// rebased on the new block; new slots are set to null.
int PACharPtrRealloc(char ***p, long oldCount, long n, const char *oldBlock, const char *block,
                     const char *file, int line);

// Free and null a pointer of any type.
template <class T>
inline void kx_free(T *&p) {
  std::free(const_cast<void *>(static_cast<const void *>(p)));
  p = nullptr;
}

#define KX_HERE __FILE__, __LINE__
