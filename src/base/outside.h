// outside.h - the table of an outside solver that takes over LP solves when
// KX_IPARAM_SPLEX_USE_EXTERNAL is set (the barrier binding installs one).
#pragma once

#include "base/kx.h"

struct OutsideSolver {
  void *env;  // the outside solver's environment
  void (*destroyEnv)(void *env);
  int (*makeTask)(void *env, void **task);
  int (*deleteTask)(void *env, void **task);
  int (*loadMatrix)(void *task, int m, int n, int sense, double objConst, const double *c,
                    const double *b, const char *types, int nnz, const int *beg, const int *len,
                    const double *val, const int *rows, const double *l, const double *u);
  int (*setBasis)(void *task, const int *colstat, const int *rowstat);
  int (*optimize)(void *task, int method, int *modelStatus);
  // x, y, slack, dj (model sizes), statuses, objective values and iterations.
  int (*getSolution)(void *task, double *x, double *y, double *slack, double *dj, int *colstat,
                     int *rowstat, double *pobj, double *dobj, double *iters);
  int (*setIntParam)(void *task, int id, int value);
  int (*setDouParam)(void *task, int id, double value);
  void (*log)(void *task, const char *text, void *data);   // ExternalSolver_log
  int (*callback)(void *task, int location, void *data);    // ExternalSolvercbfunc
};

// Install (copy) or remove the table of an environment.
int KXinstalExternalSolver(Env *env, const OutsideSolver *table);
int KXdeleteExternalSolver(Env *env);
// Make the model's task once and send the model to it.
int setup_external_task(Model *model);
// Solve on the task and copy the point back into sol.
int optimizeExternalTask(Model *model, int method);
// Delete the model's task (no-op without one).
void kxi_delete_external_task(Model *model);
