// Names of a model: title, objective, RHS, range and bound set names, and the
// row, column and cone name lists with the hash tables that find them.
#include <cstdio>
#include <cstring>
#include <new>

#include "base/kx.h"
#include "io/hashtab.h"

namespace {

int copy_string(char **dst, const char *src) {
  char *p = nullptr;
  KX_CALL(CharMalloc(&p, static_cast<long>(std::strlen(src)) + 1, KX_HERE));
  std::memcpy(p, src, std::strlen(src) + 1);
  std::free(*dst);
  *dst = p;
  return 0;
}

// Copy a list of `count` names into one text block and a pointer array of `alloc`
// entries.  A null entry takes the default pattern.
int copy_list(char ***names, char **text, int *total, char *const *src, int count, int alloc,
              char pattern) {
  char buf[32];
  auto name_of = [&](int i) -> const char * {
    if (src[i]) return src[i];
    std::snprintf(buf, sizeof buf, "%c%07d", pattern, i);
    return buf;
  };
  long len = 0;
  for (int i = 0; i < count; ++i) len += static_cast<long>(std::strlen(name_of(i))) + 1;
  char *t = nullptr;
  char **p = nullptr;
  KX_CALL(CharMalloc(&t, len > 0 ? len : 1, KX_HERE));
  if (CharPtrCalloc(&p, alloc > count ? alloc : count, KX_HERE)) {
    std::free(t);
    return kx::kErrMemory;
  }
  long at = 0;
  for (int i = 0; i < count; ++i) {
    const char *s = name_of(i);
    size_t l = std::strlen(s) + 1;
    std::memcpy(t + at, s, l);
    p[i] = t + at;
    at += static_cast<long>(l);
  }
  std::free(*names);
  std::free(*text);
  *names = p;
  *text = t;
  *total = static_cast<int>(len);
  return 0;
}

void free_hash(KXnameHash *&h) {
  delete h;
  h = nullptr;
}

// Build the table of a list at its first query.
KXnameHash *hash_of(KXnameHash *&h, char **names, int count) {
  if (h) return h;
  h = new KXnameHash;
  kxi::hash_init(*h, count);
  for (int i = 0; i < count; ++i)
    if (names[i]) kxi::hash_insert(*h, names[i], i);
  return h;
}

int find_index(KXnameHash *&h, char **names, int count, const char *name, int *index,
               int notFound) {
  if (!names) return notFound;
  int v = kxi::hash_lookup(*hash_of(h, names, count), name);
  if (v < 0) return notFound;
  *index = v;
  return 0;
}

int get_name(char **names, int count, int i, char *out, char pattern) {
  if (i < 0 || i >= count) return KXERR_INDEX_OUT_OF_RANGE;
  if (names && names[i])
    std::strcpy(out, names[i]);
  else
    std::sprintf(out, "%c%07d", pattern, i);
  return 0;
}

}  // namespace

void kxi_free_name_hashes(Model *m) {
  free_hash(m->conHash);
  free_hash(m->varHash);
  free_hash(m->coneHash);
}

void kxi_free_names(Model *m) {
  kxi_free_name_hashes(m);
  kx_free(m->modelName);
  kx_free(m->objName);
  kx_free(m->rhsName);
  kx_free(m->rngName);
  kx_free(m->bndName);
  kx_free(m->conNames);
  kx_free(m->varNames);
  kx_free(m->coneNames);
  kx_free(m->conNameText);
  kx_free(m->varNameText);
  kx_free(m->coneNameText);
  m->conNameLen = m->varNameLen = m->coneNameLen = 0;
}

int kxi_load_names(Model *m, const char *title, const char *obj, const char *rhs,
                   const char *rng, const char *bnd, char **conNames, char **varNames,
                   char **coneNames) {
  if (title) KX_CALL(copy_string(&m->modelName, title));
  if (obj) KX_CALL(copy_string(&m->objName, obj));
  if (rhs) KX_CALL(copy_string(&m->rhsName, rhs));
  if (rng) KX_CALL(copy_string(&m->rngName, rng));
  if (bnd) KX_CALL(copy_string(&m->bndName, bnd));
  if (conNames) {
    KX_CALL(copy_list(&m->conNames, &m->conNameText, &m->conNameLen, conNames, m->nCons,
                      m->nConsAlloc, 'R'));
    free_hash(m->conHash);
  }
  if (varNames) {
    KX_CALL(copy_list(&m->varNames, &m->varNameText, &m->varNameLen, varNames, m->nVars,
                      m->nVarsAlloc, 'C'));
    free_hash(m->varHash);
  }
  if (coneNames) {
    KX_CALL(copy_list(&m->coneNames, &m->coneNameText, &m->coneNameLen, coneNames, m->nCones,
                      m->nCones, 'K'));
    free_hash(m->coneHash);
  }
  return 0;
}

extern "C" KX_API int KXloadNameData(pModel model, const char *pszTitle, const char *pszObjName,
                                     const char *pszRhsName, const char *pszRngName,
                                     const char *pszBndName, char **paszConNames,
                                     char **paszVarNames, char **paszConeNames) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    return kxi_load_names(model, pszTitle, pszObjName, pszRhsName, pszRngName, pszBndName,
                          paszConNames, paszVarNames, paszConeNames);
  });
}

extern "C" KX_API int KXfreeNameData(pModel model) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    kxi_free_names(model);
    return 0;
  });
}

extern "C" KX_API int KXgetVariableIndex(pModel model, const char *pszName, int *pnIndex) {
  return kx::guard([&]() -> int {
    if (!model || !pszName || !pnIndex) return KXERR_ILLEGAL_NULL_POINTER;
    return find_index(model->varHash, model->varNames, model->nVars, pszName, pnIndex,
                      KXERR_COL_TOKEN_NOT_FOUND);
  });
}

extern "C" KX_API int KXgetConstraintIndex(pModel model, const char *pszName, int *pnIndex) {
  return kx::guard([&]() -> int {
    if (!model || !pszName || !pnIndex) return KXERR_ILLEGAL_NULL_POINTER;
    return find_index(model->conHash, model->conNames, model->nCons, pszName, pnIndex,
                      KXERR_ROW_TOKEN_NOT_FOUND);
  });
}

extern "C" KX_API int KXgetConeIndex(pModel model, const char *pszName, int *pnIndex) {
  return kx::guard([&]() -> int {
    if (!model || !pszName || !pnIndex) return KXERR_ILLEGAL_NULL_POINTER;
    return find_index(model->coneHash, model->coneNames, model->nCones, pszName, pnIndex,
                      KXERR_NAME_TOKEN_NOT_FOUND);
  });
}

extern "C" KX_API int KXgetConstraintNamei(pModel model, int iCon, char *pszName) {
  return kx::guard([&]() -> int {
    if (!model || !pszName) return KXERR_ILLEGAL_NULL_POINTER;
    return get_name(model->conNames, model->nCons, iCon, pszName, 'R');
  });
}

extern "C" KX_API int KXgetVariableNamej(pModel model, int iVar, char *pszName) {
  return kx::guard([&]() -> int {
    if (!model || !pszName) return KXERR_ILLEGAL_NULL_POINTER;
    return get_name(model->varNames, model->nVars, iVar, pszName, 'C');
  });
}

extern "C" KX_API int KXgetConeNamei(pModel model, int iCone, char *pszName) {
  return kx::guard([&]() -> int {
    if (!model || !pszName) return KXERR_ILLEGAL_NULL_POINTER;
    return get_name(model->coneNames, model->nCones, iCone, pszName, 'K');
  });
}

namespace {

// Copy a name list into the caller's pointer array and text block.
void give_list(char **names, int count, char pattern, char **outPtr, char *outText) {
  if (!outPtr && !outText) return;
  char buf[32];
  size_t at = 0;
  for (int i = 0; i < count; ++i) {
    const char *s = names && names[i] ? names[i] : buf;
    if (s == buf) std::snprintf(buf, sizeof buf, "%c%07d", pattern, i);
    size_t l = std::strlen(s) + 1;
    if (outText) {
      std::memcpy(outText + at, s, l);
      if (outPtr) outPtr[i] = outText + at;
    }
    at += l;
  }
}

void give_string(const char *s, char *out) {
  if (out) std::strcpy(out, s ? s : "");
}

}  // namespace

extern "C" KX_API int KXgetNameData(pModel model, char *pszTitle, char *pszObjName,
                                    char *pszRhsName, char *pszRngName, char *pszBndName,
                                    char **paszConNames, char *pachConNameData,
                                    char **paszVarNames, char *pachVarNameData,
                                    char **paszConeNames, char *pachConeNameData) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    give_string(model->modelName, pszTitle);
    give_string(model->objName, pszObjName);
    give_string(model->rhsName, pszRhsName);
    give_string(model->rngName, pszRngName);
    give_string(model->bndName, pszBndName);
    give_list(model->conNames, model->nCons, 'R', paszConNames, pachConNameData);
    give_list(model->varNames, model->nVars, 'C', paszVarNames, pachVarNameData);
    give_list(model->coneNames, model->nCones, 'K', paszConeNames, pachConeNameData);
    return 0;
  });
}
