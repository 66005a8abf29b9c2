// outside.cpp - the outside-solver table: install and remove it, make a task
// per model, send the model, solve there and copy the point back.
#include <cstdlib>
#include <new>

#include "base/outside.h"

int KXinstalExternalSolver(Env *env, const OutsideSolver *table) {
  if (!env || !table) return KXERR_ILLEGAL_NULL_POINTER;
  KX_CALL(KXdeleteExternalSolver(env));
  OutsideSolver *t = static_cast<OutsideSolver *>(std::malloc(sizeof(OutsideSolver)));
  if (!t) return KXERR_OUT_OF_MEMORY;
  *t = *table;
  env->externalSolver = t;
  return 0;
}

int KXdeleteExternalSolver(Env *env) {
  if (!env) return KXERR_ILLEGAL_NULL_POINTER;
  OutsideSolver *t = env->externalSolver;
  if (!t) return 0;
  if (t->destroyEnv) t->destroyEnv(t->env);
  kx_free(env->externalSolver);
  return 0;
}

void kxi_delete_external_task(Model *model) {
  const OutsideSolver *t = model->env ? model->env->externalSolver : nullptr;
  if (model->extTask && t && t->deleteTask) t->deleteTask(t->env, &model->extTask);
  model->extTask = nullptr;
}

int setup_external_task(Model *model) {
  const OutsideSolver *t = model->env->externalSolver;
  if (!t || !t->makeTask || !t->loadMatrix) return KXERR_BAD_SOLVER_TYPE;
  if (model->extTask) return 0;
  KX_CALL(t->makeTask(t->env, &model->extTask));
  int rc = t->loadMatrix(model->extTask, model->nCons, model->nVars, model->objSense,
                         model->objConst, model->cost, model->rhs, model->conType, model->nNonz,
                         model->Abeg, model->Alen, model->Acoef, model->Arow, model->lower,
                         model->upper);
  if (rc) {
    kxi_delete_external_task(model);
    return rc;
  }
  if (t->setIntParam && t->setDouParam) {
    const SplexPam *p = model->splexPam;
    const int ints[][2] = {{61, p->concurrentOptMode}, {35, p->lpPrintLevel}, {37, p->dPricing},
                           {31, p->pPricing},           {32, p->refacFrq},     {29, p->lpScale},
                           {30, static_cast<int>(p->lpItrLmt)},
                           {34, p->probToSolve},        {41, p->lpPreLevel},   {40, p->dualPhase},
                           {59, p->preElimFill},        {51, p->iuSol}};
    for (const auto &iv : ints) t->setIntParam(model->extTask, iv[0], iv[1]);
    t->setDouParam(model->extTask, 54, p->feasTol);
    t->setDouParam(model->extTask, 57, p->optTol);
    t->setDouParam(model->extTask, 60, model->solverPam->timeLimit);
    t->setDouParam(model->extTask, 23, p->callbackFreq);
    if (p->useCutoffVal) t->setDouParam(model->extTask, 53, model->cutoffVal);
    else t->setIntParam(model->extTask, 58, 0);
  }
  return 0;
}

int optimizeExternalTask(Model *model, int method) {
  const OutsideSolver *t = model->env->externalSolver;
  KX_CALL(setup_external_task(model));
  KX_CALL(kxi_ensure_sol(model));
  Sol *s = model->sol;
  if (t->setBasis && (s->basic_status == KX_STATUS_BASIC_OPTIMAL || s->basic_status == KX_STATUS_LOADED))
    t->setBasis(model->extTask, s->colstat, s->rowstat);
  int status = KX_STATUS_UNKNOWN;
  const int rc = t->optimize(model->extTask, method, &status);
  s->model_status = status;
  if (t->getSolution) {
    double iters = 0;
    t->getSolution(model->extTask, s->x, s->y, s->slack, s->dj, s->colstat, s->rowstat, &s->pobj,
                   &s->dobj, &iters);
    s->simIter = iters;
    s->primal_status = status;
    s->basic_status = status == KX_STATUS_BASIC_OPTIMAL ? status : KX_STATUS_LOADED;
  }
  return rc;
}
