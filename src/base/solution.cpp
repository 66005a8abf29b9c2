// Reading a solution back: vectors, statuses, the summary and KXgetInfo.
#include <cstring>

#include "base/kx.h"

namespace {

// The preamble shared by the solution getters.
int sol_preamble(const Model *m, const void *out) {
  if (!m || !out) return KXERR_ILLEGAL_NULL_POINTER;
  const Sol *s = m->sol;
  if (!s || s->model_status == KX_STATUS_INFORUNB || m->modelState == KX_STATUS_UNLOADED ||
      s->primal_status == KX_STATUS_UNLOADED || m->cbLevel < 0)
    return KXERR_INFO_NOT_AVAILABLE;
  return 0;
}

void copy_vec(double *out, const double *in, int n) {
  if (n > 0) std::memcpy(out, in, sizeof(double) * static_cast<size_t>(n));
}

int elapsed_seconds(const Sol *s) { return static_cast<int>(s->elapsed.wall); }

}  // namespace

extern "C" KX_API int KXgetPrimalSolution(pModel model, double *padX) {
  return kx::guard([&]() -> int {
    KX_CALL(sol_preamble(model, padX));
    copy_vec(padX, model->sol->x, model->nVars);
    return 0;
  });
}

extern "C" KX_API int KXgetDualSolution(pModel model, double *padY) {
  return kx::guard([&]() -> int {
    KX_CALL(sol_preamble(model, padY));
    copy_vec(padY, model->sol->y, model->nCons);
    return 0;
  });
}

extern "C" KX_API int KXgetReducedCosts(pModel model, double *padDj) {
  return kx::guard([&]() -> int {
    KX_CALL(sol_preamble(model, padDj));
    copy_vec(padDj, model->sol->dj, model->nVars);
    return 0;
  });
}

extern "C" KX_API int KXgetSlacks(pModel model, double *padS) {
  return kx::guard([&]() -> int {
    KX_CALL(sol_preamble(model, padS));
    copy_vec(padS, model->sol->slack, model->nCons);
    return 0;
  });
}

extern "C" KX_API int KXgetObjective(pModel model, double *pdObjval) {
  return kx::guard([&]() -> int {
    KX_CALL(sol_preamble(model, pdObjval));
    *pdObjval = model->sol->pobj;
    return 0;
  });
}

extern "C" KX_API int KXgetBasis(pModel model, int *panCstatus, int *panRstatus) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    // Either output may be null; the preamble's null test applies to neither.
    static const int dummy = 0;
    KX_CALL(sol_preamble(model, &dummy));
    if (panCstatus && model->nVars > 0)
      std::memcpy(panCstatus, model->sol->colstat, sizeof(int) * static_cast<size_t>(model->nVars));
    if (panRstatus && model->nCons > 0)
      std::memcpy(panRstatus, model->sol->rowstat, sizeof(int) * static_cast<size_t>(model->nCons));
    return 0;
  });
}

extern "C" KX_API int KXgetSolutionStatus(pModel model, int *pnStatus) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    const Sol *s = model->sol;
    if (!s || model->modelState == KX_STATUS_UNLOADED || s->primal_status == KX_STATUS_UNLOADED ||
        model->cbLevel < 0)
      return KXERR_INFO_NOT_AVAILABLE;
    if (pnStatus) *pnStatus = s->model_status;
    return 0;
  });
}

extern "C" KX_API int KXgetSolution(pModel model, int nItem, double *padValues) {
  return kx::guard([&]() -> int {
    if (!model || !padValues) return KXERR_ILLEGAL_NULL_POINTER;
    const Sol *s = model->sol;
    if (nItem < KX_SOL_X || nItem > KX_SOL_IPM_DJ) return KXERR_PARAMETER_OUT_OF_RANGE;
    if (!s || model->modelState == KX_STATUS_UNLOADED || model->cbLevel < 0)
      return KXERR_INFO_NOT_AVAILABLE;
    bool useIpm = false;
    if (nItem >= KX_SOL_IPM_X) {
      useIpm = model->splexPam->ipmSol == 0 && !kxi_has_quadratic(model) &&
               s->ipm_status != KX_STATUS_UNLOADED;
      nItem -= 4;
    }
    if (!useIpm && (s->basic_status == KX_STATUS_UNLOADED || s->model_status == KX_STATUS_INFORUNB))
      return KXERR_INFO_NOT_AVAILABLE;
    switch (nItem) {
      case KX_SOL_X: copy_vec(padValues, useIpm ? s->xIpm : s->x, model->nVars); break;
      case KX_SOL_Y: copy_vec(padValues, useIpm ? s->yIpm : s->y, model->nCons); break;
      case KX_SOL_SLACK: copy_vec(padValues, useIpm ? s->slackIpm : s->slack, model->nCons); break;
      default: copy_vec(padValues, useIpm ? s->djIpm : s->dj, model->nVars); break;
    }
    return 0;
  });
}

extern "C" KX_API int KXgetSolutionInfo(pModel model, int *pnMethod, int *pnElapsed,
                                        int *pnSpxIter, int *pnBarIter, int *pnNlpIter,
                                        int *pnPrimStatus, int *pnDualStatus, int *pnBasStatus,
                                        double *pdPobj, double *pdDobj, double *pdPinfeas,
                                        double *pdDinfeas) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    const Sol *s = model->sol;
    if (!s) return KXERR_INFO_NOT_AVAILABLE;
    bool unsolved = s->primal_status == KX_STATUS_UNLOADED ||
                    s->primal_status == KX_STATUS_LOADED ||
                    (s->primal_status == KX_STATUS_UNKNOWN && s->method == 0);
    if (unsolved) {
      if (s->method < -1) return KXERR_INFO_NOT_AVAILABLE;
      if (pnMethod) *pnMethod = -1;
      if (pnElapsed) *pnElapsed = 0;
      if (pnSpxIter) *pnSpxIter = 0;
      if (pnBarIter) *pnBarIter = 0;
      if (pnNlpIter) *pnNlpIter = 0;
      if (pnPrimStatus) *pnPrimStatus = KX_STATUS_UNLOADED;
      if (pnDualStatus) *pnDualStatus = KX_STATUS_UNLOADED;
      if (pnBasStatus) *pnBasStatus = KX_STATUS_UNLOADED;
      if (pdPobj) *pdPobj = 0.0;
      if (pdDobj) *pdDobj = 0.0;
      if (pdPinfeas) *pdPinfeas = 0.0;
      if (pdDinfeas) *pdDinfeas = 0.0;
      return 0;
    }
    if (pnMethod) *pnMethod = s->method;
    if (pnElapsed) *pnElapsed = elapsed_seconds(s);
    if (pnSpxIter) *pnSpxIter = static_cast<int>(s->simIter);
    if (pnBarIter) *pnBarIter = static_cast<int>(s->barIter);
    if (pnNlpIter) *pnNlpIter = static_cast<int>(s->nlpIter);
    if (pnPrimStatus) *pnPrimStatus = s->primal_status;
    if (pnDualStatus) *pnDualStatus = s->dual_status;
    if (pnBasStatus) *pnBasStatus = s->basic_status;
    if (pdPobj) *pdPobj = s->pobj;
    if (pdDobj) *pdDobj = s->dobj;
    if (pdPinfeas) *pdPinfeas = s->pinfeas;
    if (pdDinfeas) *pdDinfeas = s->dinfeas;
    return 0;
  });
}
