// The exported calls of the LP presolve: sizes of the reduced model and its MPS file.
#include <new>

#include "io/mps.h"
#include "presolve/poststack.h"
#include "presolve/presolve.h"

namespace {

// The reduced model of `model` at its presolve level: the kept one when current,
// else a fresh one in *temp (deleted by the caller).  *out is null when the presolve
// leaves the model as it is.
int reduced_of(Model *model, Model **out, Model **temp, PostStack **tempStack) {
  *out = *temp = nullptr;
  *tempStack = nullptr;
  const int level = model->splexPam->lpPreLevel;
  if (model->poststack && gen_presolve_is_current(model, level)) {
    *out = model->presolved;
    return 0;
  }
  if (level <= 0) return 0;
  KX_CALL(allocate_poststack(tempStack, 3L * (model->nCons + model->nVars)));
  int verdict = 0;
  int rc = gen_pre(model, temp, *tempStack, level, 0, model->splexPam->preElimFill, -1.0,
                   &verdict, 0);
  if (rc) {
    deallocate_poststack(tempStack);
    return rc;
  }
  *out = *temp;
  return 0;
}

}  // namespace

extern "C" KX_API int KXgetReducedDim(pModel model, int *pnCons, int *pnVars, int *pnNonz) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
    Model *red = nullptr, *temp = nullptr;
    PostStack *stack = nullptr;
    KX_CALL(reduced_of(model, &red, &temp, &stack));
    const Model *src = red ? red : model;
    if (pnCons) *pnCons = src->nCons;
    if (pnVars) *pnVars = src->nVars;
    if (pnNonz) *pnNonz = src->nNonz;
    if (temp) KXdeleteModel(&temp);
    deallocate_poststack(&stack);
    return 0;
  });
}

extern "C" KX_API int KXwriteReducedMPSFile(pModel model, const char *pszFname, int nFormat) {
  return kx::guard([&]() -> int {
    if (!model || !pszFname) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) return KXERR_NO_MODEL_LOADED;
    Model *red = nullptr, *temp = nullptr;
    PostStack *stack = nullptr;
    KX_CALL(reduced_of(model, &red, &temp, &stack));
    int rc = kxi::mps_write(red ? red : model, pszFname, nFormat);
    if (temp) KXdeleteModel(&temp);
    deallocate_poststack(&stack);
    return rc;
  });
}
