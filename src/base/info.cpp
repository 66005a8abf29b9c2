// KXgetInfo: one call over all information items of a model.
#include "base/kx.h"

namespace {

int get_int(Model *m, int id, int *out) {
  const Sol *s = m->sol;
  switch (id) {
    case KX_IINFO_OBJSENSE: *out = m->objSense; return 0;
    case KX_IINFO_VER_MAJOR: *out = KX_VERSION_MAJOR; return 0;
    case KX_IINFO_VER_MINOR: *out = KX_VERSION_MINOR; return 0;
    case KX_IINFO_VER_BUILD: *out = KX_VERSION_BUILD; return 0;
    case KX_IINFO_VER_REVISION: *out = KX_VERSION_REVISION; return 0;
    case KX_IINFO_ERR_OPTIM: *out = m->lastError; return 0;
    default: break;
  }
  if (m->modelState == KX_STATUS_UNLOADED) return KXERR_INFO_NOT_AVAILABLE;
  switch (id) {
    case KX_IINFO_NUM_CONS: *out = m->nCons; return 0;
    case KX_IINFO_NUM_VARS: *out = m->nVars; return 0;
    case KX_IINFO_NUM_NONZ: *out = m->nNonz; return 0;
    case KX_IINFO_NUM_CONS_L: *out = m->stats.nL; return 0;
    case KX_IINFO_NUM_CONS_G: *out = m->stats.nG; return 0;
    case KX_IINFO_NUM_CONS_E: *out = m->stats.nE; return 0;
    case KX_IINFO_NUM_CONS_N: *out = m->stats.nN; return 0;
    case KX_IINFO_NUM_CONS_R: *out = m->stats.nR; return 0;
    default: break;
  }
  if (!s) return KXERR_INFO_NOT_AVAILABLE;
  switch (id) {
    case KX_IINFO_METHOD: *out = s->method; return 0;
    case KX_IINFO_MODEL_STATUS: *out = s->model_status; return 0;
    case KX_IINFO_PRIMAL_STATUS: *out = s->primal_status; return 0;
    case KX_IINFO_DUAL_STATUS: *out = s->dual_status; return 0;
    case KX_IINFO_BASIC_STATUS: *out = s->basic_status; return 0;
    case KX_IINFO_IPM_STATUS: *out = s->ipm_status; return 0;
    case KX_IINFO_BAR_ITER: *out = static_cast<int>(s->barIter); return 0;
    case KX_IINFO_SIM_ITER: *out = static_cast<int>(s->simIter); return 0;
    case KX_IINFO_NLP_ITER: *out = static_cast<int>(s->nlpIter); return 0;
    case KX_IINFO_ELAPSED_TIME: *out = static_cast<int>(s->elapsed.wall); return 0;
    default: return KXERR_INFO_NOT_AVAILABLE;
  }
}

int get_double(Model *m, int id, double *out) {
  const Sol *s = m->sol;
  if (m->modelState == KX_STATUS_UNLOADED || !s) return KXERR_INFO_NOT_AVAILABLE;
  switch (id) {
    case KX_DINFO_POBJ: *out = s->pobj; return 0;
    case KX_DINFO_DOBJ: *out = s->dobj; return 0;
    case KX_DINFO_PINFEAS: *out = s->pinfeas; return 0;
    case KX_DINFO_DINFEAS: *out = s->dinfeas; return 0;
    default: return KXERR_INFO_NOT_AVAILABLE;
  }
}

bool is_double_id(int id) {
  switch (id) {
    case KX_DINFO_POBJ:
    case KX_DINFO_DOBJ:
    case KX_DINFO_PINFEAS:
    case KX_DINFO_DINFEAS:
    case KX_DINFO_INST_VAL_MIN_COEF:
    case KX_DINFO_INST_VAL_MAX_COEF:
    case KX_DINFO_MSW_POBJ:
    case KX_DINFO_IPM_POBJ:
    case KX_DINFO_IPM_DOBJ:
    case KX_DINFO_IPM_PINFEAS:
    case KX_DINFO_IPM_DINFEAS:
      return true;
    default:
      return false;
  }
}

}  // namespace

extern "C" KX_API int KXgetInfo(pModel model, int nQuery, void *pResult) {
  return kx::guard([&]() -> int {
    if (!model || !pResult) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->cbLevel < 0) return KXERR_INFO_NOT_AVAILABLE;
    if (is_double_id(nQuery)) return get_double(model, nQuery, static_cast<double *>(pResult));
    return get_int(model, nQuery, static_cast<int *>(pResult));
  });
}
