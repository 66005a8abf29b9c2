// query.cpp - environment and model queries: the models of an environment,
// the owner of a model, version strings, and the field-by-field comparison
// of two models.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

#include "base/kx.h"

namespace {

// Walk an environment's model list under its mutex.
template <class F>
void walk_models(Env *env, F &&f) {
  const bool locked = env->mutexReady && pthread_mutex_lock(env->mutex) == 0;
  for (ModelListNode *nd = env->modelList; nd; nd = nd->next) f(nd->model);
  if (locked) pthread_mutex_unlock(env->mutex);
}

template <class T>
bool same_array(const T *a, const T *b, int len) {
  if (len <= 0) return true;
  if (!a || !b) return a == b;
  return std::equal(a, a + len, b);
}

// Columns of A as sorted (row, value) lists.
std::vector<std::pair<int, double>> column_of(const Model *m, int j) {
  std::vector<std::pair<int, double>> c;
  for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; k++) c.emplace_back(m->Arow[k], m->Acoef[k]);
  std::sort(c.begin(), c.end());
  return c;
}

bool same_names(char **a, char **b, int len) {
  if (!a || !b) return a == b;
  for (int i = 0; i < len; i++)
    if (std::strcmp(a[i], b[i]) != 0) return false;
  return true;
}

double bound_or(const double *v, int j, double dflt) { return v ? v[j] : dflt; }

int compare(const Model *a, const Model *b) {
  int d = 0;
  if (a->nCons != b->nCons || a->nVars != b->nVars || a->nNonz != b->nNonz) d |= KX_COMPARE_DIMENSIONS;
  if (a->objSense != b->objSense || a->objConst != b->objConst) d |= KX_COMPARE_OBJECTIVE;
  if (a->modelState != b->modelState) d |= KX_COMPARE_DIMENSIONS;
  if (a->modelState == KX_STATUS_UNLOADED || b->modelState == KX_STATUS_UNLOADED) return d;
  const int n = std::min(a->nVars, b->nVars), m = std::min(a->nCons, b->nCons);
  if (!same_array(a->cost, b->cost, n)) d |= KX_COMPARE_COSTS;
  if (!same_array(a->rhs, b->rhs, m)) d |= KX_COMPARE_RHS;
  if (!same_array(a->conType, b->conType, m)) d |= KX_COMPARE_CONTYPES;
  for (int j = 0; j < n && !(d & KX_COMPARE_BOUNDS); j++)
    if (bound_or(a->lower, j, 0.0) != bound_or(b->lower, j, 0.0) ||
        bound_or(a->upper, j, KX_INFINITY) != bound_or(b->upper, j, KX_INFINITY))
      d |= KX_COMPARE_BOUNDS;
  for (int j = 0; j < n && !(d & KX_COMPARE_MATRIX); j++)
    if (column_of(a, j) != column_of(b, j)) d |= KX_COMPARE_MATRIX;
  for (int j = 0; j < n && !(d & KX_COMPARE_VARTYPES); j++) {
    const char ta = a->vartype ? a->vartype[j] : 'C', tb = b->vartype ? b->vartype[j] : 'C';
    if (ta != tb) d |= KX_COMPARE_VARTYPES;
  }
  for (int i = 0; i < m && !(d & KX_COMPARE_RANGES); i++) {
    const double ra = a->rangeVal ? a->rangeVal[i] : KX_INFINITY;
    const double rb = b->rangeVal ? b->rangeVal[i] : KX_INFINITY;
    if (ra != rb) d |= KX_COMPARE_RANGES;
  }
  if (!same_names(a->conNames, b->conNames, m) || !same_names(a->varNames, b->varNames, n))
    d |= KX_COMPARE_NAMES;
  // Quadratic terms: the same rows with the same lower-triangle entries.
  if (a->nQCNonz != b->nQCNonz || a->nQCRows != b->nQCRows) {
    d |= KX_COMPARE_QUADRATIC;
  } else if (a->nQCRows > 0) {
    const int nz = a->qcBeg[a->nQCRows];
    if (!same_array(a->qcRow, b->qcRow, a->nQCRows) || !same_array(a->qcBeg, b->qcBeg, a->nQCRows + 1) ||
        !same_array(a->qcCol1, b->qcCol1, nz) || !same_array(a->qcCol2, b->qcCol2, nz) ||
        !same_array(a->qcVal, b->qcVal, nz))
      d |= KX_COMPARE_QUADRATIC;
  }
  // Cones, sets and semi-continuous columns, member lists in their order.
  if (a->nCones != b->nCones || a->nConeNonz != b->nConeNonz) {
    d |= KX_COMPARE_CONES;
  } else {
    for (int k = 0; k < a->nCones && !(d & KX_COMPARE_CONES); k++)
      if (a->coneType[k] != b->coneType[k] || a->coneLen[k] != b->coneLen[k] ||
          !same_array(a->coneVar + a->coneBeg[k], b->coneVar + b->coneBeg[k], a->coneLen[k]))
        d |= KX_COMPARE_CONES;
  }
  if (a->nSets != b->nSets || a->setNnz != b->setNnz) {
    d |= KX_COMPARE_SETS;
  } else {
    for (int k = 0; k < a->nSets && !(d & KX_COMPARE_SETS); k++) {
      const int ca = a->setCard ? a->setCard[k] : 0, cb = b->setCard ? b->setCard[k] : 0;
      if (a->setType[k] != b->setType[k] || ca != cb || a->setLen[k] != b->setLen[k] ||
          !same_array(a->setVar + a->setBeg[k], b->setVar + b->setBeg[k], a->setLen[k]))
        d |= KX_COMPARE_SETS;
    }
  }
  if (a->nSC != b->nSC || !same_array(a->scVar, b->scVar, a->nSC) ||
      !same_array(a->scLower, b->scLower, a->nSC))
    d |= KX_COMPARE_SEMICONT;
  return d;
}

}  // namespace

extern "C" KX_API int KXgetEnvModelCount(pEnv env, int *pnCount) {
  return kx::guard([&]() -> int {
    if (!env || !pnCount) return KXERR_ILLEGAL_NULL_POINTER;
    int c = 0;
    walk_models(env, [&](Model *) { c++; });
    *pnCount = c;
    return 0;
  });
}

extern "C" KX_API int KXgetEnvModelList(pEnv env, int nMax, pModel *paModels) {
  return kx::guard([&]() -> int {
    if (!env || !paModels) return KXERR_ILLEGAL_NULL_POINTER;
    std::vector<Model *> list;
    walk_models(env, [&](Model *m) { list.push_back(m); });
    if (nMax < static_cast<int>(list.size())) return KXERR_PARAMETER_OUT_OF_RANGE;
    std::copy(list.begin(), list.end(), paModels);
    return 0;
  });
}

extern "C" KX_API int KXgetModelEnv(pModel model, pEnv *pEnvOut) {
  return kx::guard([&]() -> int {
    if (!model || !pEnvOut) return KXERR_ILLEGAL_NULL_POINTER;
    *pEnvOut = model->env;
    return 0;
  });
}

extern "C" KX_API int KXgetVersionInfo(char *pachVernum, char *pachBuildDate) {
  return kx::guard([&]() -> int {
    if (pachVernum)
      std::snprintf(pachVernum, 64, "%d.%d.%d.%d", KX_VERSION_MAJOR, KX_VERSION_MINOR,
                    KX_VERSION_BUILD, KX_VERSION_REVISION);
    if (pachBuildDate) std::snprintf(pachBuildDate, 64, "%s", __DATE__);
    return 0;
  });
}

extern "C" KX_API int KXcompareModels(pModel model1, pModel model2, int *pnDiffs) {
  return kx::guard([&]() -> int {
    if (!model1 || !model2 || !pnDiffs) return KXERR_ILLEGAL_NULL_POINTER;
    *pnDiffs = compare(model1, model2);
    return 0;
  });
}
