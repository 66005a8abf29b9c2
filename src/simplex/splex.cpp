// splex.cpp - the entry points of the simplex engine: a first solve that builds
// the state, a warm solve on a live state, the switching between methods after
// numerical trouble, and the mapping of the solver status to the model's.
#include <cmath>

#include "simplex/glp.h"

namespace {

// Map stat to the model status and an error code; *withSolution tells whether
// putsolution applies.
int map_stat(GLP *g, Sol *s, bool *withSolution) {
  *withSolution = false;
  int err = 0;
  switch (g->stat) {
    case GLP_RUNNING: s->model_status = KX_STATUS_LOADED; break;
    case GLP_OPTIMAL: s->model_status = KX_STATUS_BASIC_OPTIMAL; *withSolution = true; break;
    case GLP_INFEASIBLE: s->model_status = KX_STATUS_INFEASIBLE; *withSolution = true; break;
    case GLP_DUALRAY: s->model_status = KX_STATUS_INFORUNB; *withSolution = true; break;
    case GLP_UNBOUNDED: s->model_status = KX_STATUS_UNBOUNDED; *withSolution = true; break;
    case GLP_ITERLIMIT:
      s->model_status = KX_STATUS_LOADED;
      err = KXERR_ITER_LIMIT;
      *withSolution = true;
      break;
    case GLP_TIMELIMIT:
      s->model_status = KX_STATUS_LOADED;
      err = KXERR_TIME_LIMIT;
      *withSolution = true;
      break;
    case GLP_USERBREAK:
      s->model_status = KX_STATUS_LOADED;
      err = KXERR_USER_INTERRUPT;
      break;
    case GLP_CUTOFF: s->model_status = KX_STATUS_CUTOFF; *withSolution = true; break;
    default: err = KXERR_INTERNAL_ERROR; break;
  }
  return err;
}

// Run, and while the run asks for the other method, switch (at most ten passes).
int run_with_switches(GLP *g, int method, const char *what) {
  int rc = spx_run_method(g, method);
  int pass = 0;
  while (rc == SPX_OK && g->stat == GLP_SWITCH) {
    if (++pass > 10) return SPX_NUMERIC;
    spx_debug(g, 2, "\n%s from stat=%d, pass=%d", what, g->stat, pass);
    g->stat = GLP_RUNNING;
    method = method == 2 ? 1 : 2;
    g->wfact = WF_CHECK;
    // A second primal pass starts from a tighter pivot tolerance and a fresh
    // devex framework; a hand-over before the first iteration is no trouble.
    if (!g->leapAtStart) g->pvteps = std::min(g->pvteps * 10.0, 1e-7);
    g->leapAtStart = 0;
    rc = spx_run_method(g, method);
  }
  return rc;
}

int finish(Model *model, GLP *g, int rc) {
  Sol *s = model->sol;
  if (rc == SPX_NOMEM) {
    s->model_status = KX_STATUS_LOADED;
    return KXERR_OUT_OF_MEMORY;
  }
  if (rc == SPX_NUMERIC) {
    s->model_status = KX_STATUS_LOADED;
    g->badEnd = 1;
    return KXERR_NUMERIC_INSTABILITY;
  }
  if (rc == SPX_BREAK) {
    s->model_status = KX_STATUS_LOADED;
    s->primal_status = KX_STATUS_UNKNOWN;
    return KXERR_USER_INTERRUPT;
  }
  bool withSolution = false;
  int err = map_stat(g, s, &withSolution);
  if (withSolution) {
    if (compsol(g) == SPX_NOMEM) return KXERR_OUT_OF_MEMORY;
    const int ms = s->model_status;
    KX_CALL(putsolution(model, g));
    s->model_status = ms;
  } else {
    s->primal_status = KX_STATUS_UNKNOWN;
  }
  if (g->prtfg >= 1) {
    const KXI_lu *lu = g->lu;
    spx_debug(g, 1, "\nftran (s/d) = %lld/%lld", static_cast<long long>(lu->nSparseFtran),
              static_cast<long long>(lu->nDenseFtran));
    spx_debug(g, 1, "\nbtran (s/d) = %lld/%lld", static_cast<long long>(lu->nSparseBtran),
              static_cast<long long>(lu->nDenseBtran));
    spx_debug(g, 1, "\nExit status=%d, (#pivots=%g)\n", g->stat, g->iter);
  }
  return err;
}

// A warm start whose basis is already optimal ends without an iteration:
// factorise, compute the basic values, duals and reduced costs on the true
// (unperturbed) data, and test primal and dual feasibility against the working
// tolerances.  Any doubt leaves the decision to the simplex run.
bool warm_start_is_optimal(GLP *g) {
  if (g->freshStart || g->pert || g->m == 0) return false;
  if (g->clbTrue.size() == g->clb.size()) {
    for (size_t j = 0; j < g->clb.size(); j++)
      if (g->clb[j] != g->clbTrue[j] || g->cub[j] != g->cubTrue[j]) return false;
  }
  for (int j = 0; j < g->nm; j++)
    if (g->cbas[j] < 0) spx_place_nonbasic(g, j);
  if (spx_factor(g) != 0) return false;
  if (spx_compute_xb(g) != 0) return false;
  int count = 0;
  double maxv = 0.0;
  spx_primal_infeas(g, &count, &maxv);
  if (count > 0) return false;
  if (spx_compute_duals(g, g->objv) != 0) return false;
  if (spx_wrong_costs(g) > 0) return false;
  g->stat = GLP_OPTIMAL;
  g->wfact = WF_NONE;
  return true;
}

}  // namespace

int spx_run_method(GLP *g, int method) {
  if (method == 2) {
    const int rc = dsimplex(g);
    if (rc == SPX_OK && g->stat != GLP_SWITCH) drecover(g);
    return rc;
  }
  return psimplex(g);
}

int KXsplexOptimize(Model *model, int method) {
  KX_CALL(kxi_ensure_sol(model));
  Sol *s = model->sol;
  GLP *g = nullptr;
  const int sense = model->objSense == -1 ? -1 : 1;
  int rc = lpini(model, &g, sense);
  if (rc) {
    s->model_status = KX_STATUS_LOADED;
    return rc == kx::kErrMemory ? KXERR_OUT_OF_MEMORY : rc;
  }
  model->glp = g;
  // A basis left by an earlier solve, or given by the caller.
  if (!model->splexPam->restart &&
      (s->basic_status == KX_STATUS_BASIC_OPTIMAL || s->basic_status == KX_STATUS_LOADED)) {
    rc = setup_basic(model, g);
    if (rc) return rc;
  }
  g->started = s->started;
  g->method = method == 2 ? 1 : 0;
  rc = warm_start_is_optimal(g) ? SPX_OK : run_with_switches(g, method, "Recovering");
  if (rc == SPX_NOMEM) {
    freeglp(&model->glp);
    s->model_status = KX_STATUS_LOADED;
    return KXERR_OUT_OF_MEMORY;
  }
  return finish(model, g, rc);
}

int KXsplexReoptimize(Model *model, int method) {
  GLP *g = model->glp;
  if (!g) return KXsplexOptimize(model, method);
  KX_CALL(kxi_ensure_sol(model));
  Sol *s = model->sol;
  // Parameters that a caller may have changed between solves.
  const SplexPam *p = model->splexPam;
  g->itrlmt = p->lpItrLmt;
  g->printLevel = p->lpPrintLevel;
  g->prtfg = p->prtFg;
  g->timelimit = model->solverPam ? model->solverPam->timeLimit : -1.0;
  g->started = s->started;
  spx_debug(g, 2, "\nEntering reopt ... ");
  if (g->pert) spx_remove_perturbation(g);
  g->npert = 0;
  g->ptval = 2e-4;
  for (int j = 0; j < g->nm; j++)
    if (g->cbas[j] == -4) {
      g->cbas[j] = -1;
      spx_place_nonbasic(g, j);
    }
  if (g->stat != GLP_ITERLIMIT) g->iter = 0;
  g->numerr = 0;
  g->stat = GLP_RUNNING;
  g->reps = g->repsUser;
  g->ceps = g->cepsUser;
  g->pvteps = g->pvtepsInit;
  g->wfact = WF_LIMIT;
  g->freshStart = 0;
  int rc = warm_start_is_optimal(g) ? SPX_OK : run_with_switches(g, method, "Reopt recovering");
  if (rc == SPX_NUMERIC) {
    // Rebuild from the model's data and run the primal cold.
    const double it = g->iter, base = g->iterBase;
    freeglp(&model->glp);
    const int sense = model->objSense == -1 ? -1 : 1;
    KX_CALL(lpini(model, &g, sense));
    model->glp = g;
    g->iter = it;
    g->iterBase = base;
    g->started = s->started;
    rc = run_with_switches(g, 1, "Reopt recovering");
  }
  if (rc == SPX_NOMEM) {
    freeglp(&model->glp);
    s->model_status = KX_STATUS_LOADED;
    return KXERR_OUT_OF_MEMORY;
  }
  return finish(model, g, rc);
}
