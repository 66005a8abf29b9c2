// callbacks.cpp - the MIP and global callbacks' registration, and what a
// callback may read of the solver that called it: KXgetCallbackInfo,
// KXgetProgressInfo and the live simplex state behind them.
#include "base/kx.h"
#include "base/query.h"
#include "simplex/glp.h"

namespace {

constexpr int kNA = KXERR_INFO_NOT_AVAILABLE;

// A model solved on the caller's behalf (the presolved model, the explicit dual)
// points back to it while it runs.
GLP *child_glp(Model *model) {
  Env *env = model->env;
  if (!env) return nullptr;
  const bool locked = env->mutexReady && pthread_mutex_lock(env->mutex) == 0;
  GLP *g = nullptr;
  for (ModelListNode *nd = env->modelList; nd; nd = nd->next)
    if (nd->model != model && nd->model->parent == model && nd->model->glp) {
      g = nd->model->glp;
      break;
    }
  if (locked) pthread_mutex_unlock(env->mutex);
  return g;
}

// The objective of the current point in the model's terms.
double glp_objective(const GLP *g) {
  double s = 0.0;
  for (int j = 0; j < g->n; j++) s += g->objv[j] * g->x[j];
  return g->sense * s / g->objscale + g->objconst;
}

// Items of a running simplex.
int simplex_item(Model *owner, GLP *g, int id, void *out) {
  const double acc = owner->sol ? owner->sol->accSimIter : 0.0;
  int *pi = static_cast<int *>(out);
  double *pd = static_cast<double *>(out);
  switch (id) {
    case KX_IINFO_CUR_ITER:
    case KX_IINFO_SIM_ITER: *pi = static_cast<int>(g->iter + g->iterBase + acc); return 0;
    case KX_DINFO_CUR_OBJ:
    case KX_DINFO_POBJ: *pd = glp_objective(g); return 0;
    case KX_IINFO_CUR_STATUS:
      *pi = g->stat == GLP_OPTIMAL                       ? KX_STATUS_BASIC_OPTIMAL
            : g->stat == GLP_INFEASIBLE                  ? KX_STATUS_INFEASIBLE
            : g->stat == GLP_UNBOUNDED                   ? KX_STATUS_UNBOUNDED
            : (g->method == 0 && g->phase == 2)          ? KX_STATUS_FEASIBLE
                                                         : KX_STATUS_UNKNOWN;
      return 0;
    case KX_DINFO_PINFEAS: *pd = spx_primal_infeas(g, nullptr, nullptr); return 0;
    case KX_DINFO_DINFEAS: *pd = g->sumdinf; return 0;
    case KX_IINFO_METHOD: *pi = g->method == 0 ? 2 : 3; return 0;  // method plus 1
    default: return kNA;
  }
}

}  // namespace

GLP *kxi_live_glp(Model *model) { return model ? model->glp : nullptr; }

int kxi_progress_info(Model *model, int location, int id, void *out, bool live) {
  if (!kxi_info_find(id)) return kNA;
  if (live && location != KX_CALLBACK_END) {
    // The solver at work: a child model's simplex first, then the model's own.
    GLP *g = child_glp(model);
    if (!g) g = model->glp;
    if (g && (location < 0 || location == KX_CALLBACK_PRIMAL || location == KX_CALLBACK_DUAL))
      return simplex_item(model, g, id, out);
    if (location >= 0) return kNA;  // presolve, MIP and global stages publish nothing yet
  }
  // The end of a solve, or no solver at work: the values of the last solve.
  const int saved = model->inCallback;
  model->inCallback = 0;
  const int rc = kxi_get_info(model, id, out);
  model->inCallback = saved;
  return rc;
}

extern "C" KX_API int KXsetMIPCallback(pModel model, KXcallbackMIP pfMIPCallback, void *pvUserData) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    model->mipCbFunc = reinterpret_cast<void *>(pfMIPCallback);
    model->mipCbData = pvUserData;
    return 0;
  });
}

extern "C" KX_API int KXsetGOPCallback(pModel model, KXcallbackMIP pfGOPCallback, void *pvUserData) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    model->gopCbFunc = reinterpret_cast<void *>(pfGOPCallback);
    model->gopCbData = pvUserData;
    return 0;
  });
}

extern "C" KX_API int KXgetCallbackInfo(pModel model, int nLocation, int nQuery, void *pvResult) {
  return kx::guard([&]() -> int {
    if (!model || !pvResult) return KXERR_ILLEGAL_NULL_POINTER;
    if (!model->inCallback || model->cbLevel < 0) return KXERR_INFO_NOT_AVAILABLE;
    if (nLocation < 0 || nLocation > KX_CALLBACK_GOP) return KXERR_INFO_NOT_AVAILABLE;
    return kxi_progress_info(model, nLocation, nQuery, pvResult, true);
  });
}

extern "C" KX_API int KXgetProgressInfo(pModel model, int nQuery, void *pvResult) {
  return kx::guard([&]() -> int {
    if (!model || !pvResult) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->cbLevel < 0) return KXERR_INFO_NOT_AVAILABLE;
    return kxi_progress_info(model, -1, nQuery, pvResult, model->inCallback != 0);
  });
}
