// optimize.cpp - the optimize driver: KXoptimize sorts a model to its solver,
// KXoptimizeLP wraps presolve and postsolve around ydo_the_lp_opt, which runs the
// simplex with the chain of retries after numerical trouble; KXtrivialOptimizer
// settles models without rows or columns; the final callback and report.
#include <cmath>
#include <cstdlib>

#include "base/kx.h"
#include "base/optimize.h"
#include "base/outside.h"
#include "base/query.h"
#include "presolve/presolve.h"
#include "simplex/glp.h"


namespace {

bool has_nonlinear(const Model *m) { return m->instr && m->instr->codeLen > 0; }
bool has_quadratic(const Model *m) { return m->nQCNonz > 0; }
bool has_cones(const Model *m) { return m->nConeNonz > 0 || m->nCones > 0; }

const char *event_text(int event, double pf, double df, bool severe, bool nearFeasible) {
  switch (event) {
    case 6: return "\nWarning: initial basis singular,\nWarning: crashing a new basis...";
    case 2: return "\nWarning: numerical instability,\nWarning: optimizing model using another method...";
    case 1: return "\nWarning: numerical instability,\nWarning: optimizing unscaled model...";
    case 3:
      return severe ? "\nSevere: descaled solution is not primal feasible (ppfeas=%12.6e),\nWarning: optimizing unscaled model with cold start...\n"
                    : "\nWarning: descaled solution is not primal feasible (ppfeas=%12.6e),\nWarning: optimizing unscaled model...\n";
    case 4:
      return severe ? "\nSevere: descaled solution is not dual feasible (ddfeas=%12.6e),\nWarning: optimizing unscaled model with cold start..."
                    : "\nWarning: descaled solution is not dual feasible (ddfeas=%12.6e),\nWarning: optimizing unscaled model...";
    case 7:
      return "\nWarning: descaled cutoff solution is not dual feasible (ddfeas=%12.6e),\nWarning: optimizing unscaled model...";
    case 5:
      return nearFeasible ? "\nWarning: scaled solution is near (primal) feasible (ppfeas=%12.6e, ddfeas=%12.6e),\nWarning: optimizing unscaled model...\n"
                          : "\nWarning: descaled solution is primal feasible (ppfeas=%12.6e, ddfeas=%12.6e),\nWarning: optimizing unscaled model...\n";
    default: (void)pf; (void)df; return "";
  }
}

void log_event(Model *model, int event) {
  if (!model->logFunc || model->splexPam->lpPrintLevel <= 0 || event == 0) return;
  const Sol *s = model->sol;
  const bool severe = model->splexPam->lpScale == 0;
  const double of = model->glp ? model->glp->objscale : 1.0;
  const bool nearFeasible = !(s->pinfeas < model->splexPam->feasTol) && of > 0;
  const char *fmt = event_text(event, s->pinfeas, s->dinfeas, severe, nearFeasible);
  if (event == 4 || event == 7) kxi_log(model, fmt, s->dinfeas);
  else if (event == 5) kxi_log(model, fmt, s->pinfeas, s->dinfeas);
  else if (event == 3) kxi_log(model, fmt, s->pinfeas);
  else kxi_log(model, "%s", fmt);
}

// Solve once on the model as it stands: warm on a live state, else cold.
int run_simplex(Model *model, int method) {
  if (model->glp) {
    model->glp->iterBase = 0;
    return KXsplexReoptimize(model, method);
  }
  kxi_free_solver_memory(model);
  std::srand(1);
  return KXsplexOptimize(model, method);
}

void collect_lu_counts(Model *model) {
  Sol *s = model->sol;
  s->luCountRetry += s->luCount;
  s->luStableCountRetry += s->luStableCount;
  s->luFailCountRetry += s->luFailCount;
}

const char *verdict_text(int status) {
  switch (status) {
    case KX_STATUS_OPTIMAL: return "\nSolution is optimal.\n";
    case KX_STATUS_BASIC_OPTIMAL: return "\nBasic solution is optimal.\n";
    case KX_STATUS_INFEASIBLE: return "\nModel is infeasible.\n";
    case KX_STATUS_UNBOUNDED: return "\nModel is unbounded.\n";
    case KX_STATUS_FEASIBLE: return "\nSolution is feasible.\n";
    case KX_STATUS_INFORUNB: return "\nModel is infeasible or unbounded.\n";
    case KX_STATUS_LOCAL_OPTIMAL: return "\nSolution is locally optimal.\n";
    case KX_STATUS_LOCAL_INFEASIBLE: return "\nModel is locally infeasible.\n";
    default: return nullptr;
  }
}

void KXI_DispSolStatsLP(Model *model) {
  const Sol *s = model->sol;
  kxi_log(model, "\n");
  kxi_log(model, "\nUsed Method        = %d ", s->method);
  kxi_log(model, "\nUsed Time          = %u ", static_cast<unsigned>(s->elapsed.wall));
  const double share = s->luCount > 0 ? static_cast<double>(s->luStableCount) / s->luCount : 0.0;
  kxi_log(model, "\nRefactors (ok,stb) = %u (%.2f,%.2f) ", static_cast<unsigned>(s->luCount), share, share);
  kxi_log(model, "\nSimplex   Iters    = %u ", static_cast<unsigned>(s->simIter));
  kxi_log(model, "\nBarrier   Iters    = %u ", static_cast<unsigned>(s->barIter));
  kxi_log(model, "\nNonlinear Iters    = %u ", static_cast<unsigned>(s->nlpIter));
  kxi_log(model, "\nPrimal Status      = %u ", static_cast<unsigned>(s->primal_status));
  kxi_log(model, "\nDual   Status      = %u ", static_cast<unsigned>(s->dual_status));
  kxi_log(model, "\nBasis  Status      = %u ", static_cast<unsigned>(s->basic_status));
  kxi_log(model, "\nPrimal Objective   = %.22g ", s->pobj);
  kxi_log(model, "\nDual   Objective   = %.22g ", s->dobj);
  kxi_log(model, "\nDuality Gap        = %e ", std::fabs(s->pobj - s->dobj));
  kxi_log(model, "\nPrimal Infeas      = %e ", s->pinfeas);
  kxi_log(model, "\nDual   Infeas      = %e ", s->dinfeas);
  const char *v = verdict_text(s->model_status);
  if (v) kxi_log(model, "%s", v);
  else kxi_log(model, "\nModel status is unknown (%d).\n", s->model_status);
}

}  // namespace

// ---------------------------------------------------------------------------

// A column whose lower bound lies above its upper bound makes the model
// infeasible whatever the rows say; answer that before any solver runs.  The
// point left in sol puts each column at its lower bound (or upper when the
// lower is infinite), with every logical basic.
static bool crossed_bounds_verdict(Model *model) {
  const int n = model->nVars, m = model->nCons;
  const double tol = model->splexPam->feasTol;
  double worst = 0.0;
  for (int j = 0; j < n; j++) {
    const double gap = model->lower[j] - model->upper[j];
    if (gap > tol * (1.0 + std::fabs(model->upper[j])) && gap > worst) worst = gap;
  }
  if (worst <= 0.0) return false;
  Sol *s = model->sol;
  for (int j = 0; j < n; j++) {
    const double l = model->lower[j], u = model->upper[j];
    s->x[j] = l > -kx::kInfinity ? l : (u < kx::kInfinity ? u : 0.0);
    s->dj[j] = 0.0;
    s->colstat[j] = l > -kx::kInfinity ? KX_BASIS_AT_LOWER
                                        : (u < kx::kInfinity ? KX_BASIS_AT_UPPER : KX_BASIS_FREE_ZERO);
  }
  for (int i = 0; i < m; i++) {
    s->y[i] = 0.0;
    s->rowstat[i] = i;
  }
  for (int i = 0; i < m; i++) s->slack[i] = model->rhs[i];
  for (int j = 0; j < n; j++)
    for (int k = model->Abeg[j]; k < model->Abeg[j] + model->Alen[j]; k++)
      s->slack[model->Arow[k]] -= model->Acoef[k] * s->x[j];
  double obj = model->objConst;
  for (int j = 0; j < n; j++) obj += model->cost[j] * s->x[j];
  s->pobj = s->dobj = obj;
  s->pinfeas = worst;
  s->dinfeas = 0.0;
  s->simIter = s->barIter = s->nlpIter = 0;
  s->model_status = s->primal_status = KX_STATUS_INFEASIBLE;
  s->dual_status = KX_STATUS_UNKNOWN;
  s->basic_status = KX_STATUS_UNLOADED;
  return true;
}

int KXtrivialOptimizer(Model *model) {
  KX_CALL(kxi_ensure_sol(model));
  Sol *s = model->sol;
  if (crossed_bounds_verdict(model)) return 0;
  const int m = model->nCons, n = model->nVars;
  const double feastol = model->splexPam->feasTol;
  const double inf = model->env ? model->env->envInfinity : kx::kInfinity;
  s->simIter = s->barIter = s->nlpIter = 0;
  s->pobj = model->objConst;
  s->pinfeas = s->dinfeas = 0;
  s->model_status = KX_STATUS_BASIC_OPTIMAL;
  s->primal_status = KX_STATUS_BASIC_OPTIMAL;
  s->dual_status = KX_STATUS_OPTIMAL;
  s->basic_status = KX_STATUS_BASIC_OPTIMAL;
  if (n == 0) {
    double worst = 0.0;
    for (int i = 0; i < m; i++) {
      s->rowstat[i] = i;
      s->slack[i] = model->rhs[i];
      s->y[i] = 0.0;
      const double b = model->rhs[i];
      const char t = model->conType[i];
      const bool bad = (t == 'E' && std::fabs(b) > feastol) || (t == 'G' && b > feastol) ||
                       (t == 'L' && b < -feastol);
      if (bad) {
        s->dual_status = KX_STATUS_INFORUNB;
        s->model_status = s->primal_status = s->basic_status = KX_STATUS_INFEASIBLE;
        if (std::fabs(b) > std::fabs(worst)) worst = b;
      }
    }
    s->pinfeas = worst;
    s->dobj = s->pobj;
    s->dinfeas = 0;
    return 0;
  }
  if (model->objSense < -1) return KXERR_BAD_OBJECTIVE_SENSE;
  const int sense = model->objSense == -1 ? -1 : 1;
  bool unbounded = false;
  for (int j = 0; j < n; j++) {
    const double c = model->cost[j];
    const double lo = model->lower ? model->lower[j] : 0.0;
    const double up = model->upper ? model->upper[j] : inf;
    s->dj[j] = c;
    double x = 0.0;
    int st = -1;
    const double dir = sense * c;
    if (dir > 0) {
      if (lo <= -inf) unbounded = true;
      x = lo;
      st = -1;
    } else if (dir < 0) {
      if (up >= inf) unbounded = true;
      x = up;
      st = -2;
    } else if (lo <= -inf && up >= inf) {
      x = 0.0;
      st = -3;
    } else if (std::fabs(lo) < std::fabs(up)) {
      x = lo;
      st = -1;
    } else {
      x = up;
      st = -2;
    }
    if (x <= -inf || x >= inf) x = x < 0 ? -inf : inf;
    s->x[j] = x;
    s->colstat[j] = st;
    if (!unbounded) s->pobj += c * x;
  }
  for (int i = 0; i < m; i++) {
    s->rowstat[i] = i;
    s->y[i] = 0.0;
    s->slack[i] = model->rhs[i];
  }
  if (unbounded) {
    s->model_status = s->primal_status = KX_STATUS_UNBOUNDED;
    s->dual_status = KX_STATUS_INFEASIBLE;
    s->basic_status = KX_STATUS_LOADED;
    s->pobj = -sense * inf;
  }
  s->dobj = s->pobj;
  return 0;
}

int do_the_event_check(Model *model, int result, double iterMade) {
  const Sol *s = model->sol;
  const SplexPam *p = model->splexPam;
  const int scale = p->lpScale;
  const double ft = p->feasTol, ot = p->optTol;
  if (iterMade == 0 && result == KXERR_NUMERIC_INSTABILITY) return 6;
  if (scale < 1 && result == KXERR_NUMERIC_INSTABILITY) return 2;
  if (scale >= 1 && result == KXERR_NUMERIC_INSTABILITY) return 1;
  if (result != 0) return 0;
  const int ps = s->primal_status;
  if (scale >= 1) {
    if (ps == KX_STATUS_BASIC_OPTIMAL && s->pinfeas > 10 * ft) return 3;
    if (ps == KX_STATUS_BASIC_OPTIMAL && s->dinfeas > 10 * ot) return 4;
    if (ps == KX_STATUS_CUTOFF && s->dinfeas > 10 * ot) return 7;
    if (ps == KX_STATUS_INFEASIBLE && s->pinfeas < ft) return 5;
  } else if (scale == 0) {
    if (ps == KX_STATUS_BASIC_OPTIMAL && s->pinfeas > 10 * ft) return 3;
    if (ps == KX_STATUS_BASIC_OPTIMAL && s->dinfeas > 10 * ot) return 4;
  }
  return 0;
}

int pick_imethod_lp(Model *model, int wanted, int *method) {
  if (wanted == 0) wanted = 2;
  if (model->splexPam->restart) kxi_free_solver_memory(model);
  *method = wanted;
  return 0;
}

int do_the_strategy(Model *model, int event, int *level, int *method) {
  SplexPam *p = model->splexPam;
  kxi_free_solver_memory(model);
  if (event == 6) {
    p->restart = 1;
    *method = 2;
    return 0;
  }
  if (event == 2) {
    p->restart = 1;
    *method = 2;
    *level = 4;
    return 0;
  }
  switch (*level) {
    case 0:
      p->lpScale = 0;
      p->restart = 0;
      *method = event == 7 ? 2 : 1;
      break;
    case 1:
      p->lpScale = 1;
      p->restart = 0;
      *method = 2;
      break;
    case 2:
      p->lpScale = 1;
      p->restart = 1;
      *method = 1;
      break;
    case 3:
      p->lpScale = 0;
      p->restart = 1;
      pick_imethod_lp(model, 2, method);
      break;
    default:
      p->lpScale = 0;
      p->restart = 1;
      pick_imethod_lp(model, 1, method);
      break;
  }
  return 0;
}

int ydo_the_lp_opt(Model *model, int method) {
  KX_CALL(kxi_ensure_sol(model));
  Sol *s = model->sol;
  SplexPam *p = model->splexPam;
  const int forced = 1;
  if (crossed_bounds_verdict(model)) {
    s->method = (method >= 0 && method <= 2 ? (method == 0 ? 2 : method) : 2) + 1;
    return 0;
  }
  if (model->nCons == 0 || model->nVars == 0) return KXtrivialOptimizer(model);
  if (method == 3) {
    s->method = 4;
    return KXERR_BAD_SOLVER_TYPE;  // no barrier environment in this build
  }
  if (method < 0 || method > 3) return KXERR_BAD_SOLVER_TYPE;
  if (method == 0) method = 2;
  if (p->restart) kxi_free_solver_memory(model);
  s->method = method + 1;
  const int savedScale = p->lpScale;
  const int savedRestart = p->restart;
  int rc;
  if (p->useExternal && model->env->externalSolver) {
    rc = optimizeExternalTask(model, method);
    p->restart = 0;
    return rc;
  }
  rc = run_simplex(model, method);
  p->restart = 0;
  if (rc == KXERR_OUT_OF_MEMORY) {
    p->lpScale = savedScale;
    return rc;
  }
  double iterMade = model->glp ? model->glp->iter : 0;
  int event = do_the_event_check(model, rc, iterMade);
  int level = 0;
  for (int round = 0; event != 0 && round < 4; round++) {
    log_event(model, event);
    s->accSimIter += model->glp ? model->glp->iter : 0;
    collect_lu_counts(model);
    s->primal_status = s->model_status = KX_STATUS_UNKNOWN;
    p->lpScale = 1;
    p->restart = 0;
    do_the_strategy(model, event, &level, &method);
    if (p->restart) kxi_free_solver_memory(model);
    s->method = method + 1;
    if (p->restart) s->basic_status = KX_STATUS_UNLOADED;
    rc = run_simplex(model, method);
    p->restart = 0;
    if (rc != 0 && model->glp) {
      if (model->glp->badEnd || !check_basis_glp(model)) kxi_free_solver_memory(model);
    }
    if (rc == KXERR_OUT_OF_MEMORY) break;
    iterMade = model->glp ? model->glp->iter : 0;
    event = do_the_event_check(model, rc, iterMade);
    level++;
  }
  p->lpScale = savedScale;
  p->restart = savedRestart;  // the retries never change the caller's setting
  s->simIter = s->accSimIter + (model->glp ? model->glp->iter : 0);
  s->accSimIter = 0;
  if (model->cbFunc && rc != KXERR_USER_INTERRUPT) {
    s->inFinalCallback = 1;
    const int loc = method == 1 ? KX_CALLBACK_PRIMAL : KX_CALLBACK_DUAL;
    if (timelapsed(model, s->started, loc, forced, -1.0) < 0) rc = KXERR_USER_INTERRUPT;
    s->inFinalCallback = 0;
  }
  return rc;
}

namespace {

// Solve the reduced model of the presolve and map its solution back.
int solve_reduced(Model *model, int method) {
  Model *red = model->presolved;
  Sol *s = model->sol;
  KX_CALL(kxi_ensure_sol(red));
  Sol *rs = red->sol;
  rs->ipm_status = KX_STATUS_UNLOADED;
  rs->started = s->started;
  rs->accSimIter = rs->simIter = 0;
  red->lastError = 0;
  // The reduced model works under the caller's parameters, callbacks and log.
  *red->splexPam = *model->splexPam;
  *red->solverPam = *model->solverPam;
  red->splexPam->lpPreLevel = 0;
  red->cbFunc = nullptr;
  red->cbFunc2 = nullptr;
  red->parent = model;
  red->logFunc = model->logFunc;
  red->userLogFunc = model->userLogFunc;
  red->logData = model->logData;
  kxi_free_solver_memory(model);
  int rc = ydo_the_lp_opt(red, method);
  red->parent = nullptr;
  if (rc && rc != KXERR_ITER_LIMIT && rc != KXERR_TIME_LIMIT && rc != KXERR_USER_INTERRUPT) return rc;
  int status = KX_STATUS_UNKNOWN;
  const int prc = genpre_postsolv_prob(red, model, model->poststack, &status);
  if (prc) return prc;
  s->model_status = status;
  s->simIter = rs->simIter;
  s->method = rs->method;
  return rc;
}

}  // namespace

int KXoptimizeLP(Model *model, int method) {
  SplexPam *p = model->splexPam;
  Sol *s = model->sol;
  if ((has_cones(model) || has_quadratic(model) || has_nonlinear(model))) return 0;
  const int level = p->lpPreLevel;
  if (model->poststack && (level <= 0 || !gen_presolve_is_current(model, level))) gen_free_presolve(model);
  int rc = 0;
  if (level > 0 && !model->poststack) {
    PostStack *ps = nullptr;
    KX_CALL(allocate_poststack(&ps, 3L * (model->nCons + model->nVars) + 16));
    Model *reduced = nullptr;
    int verdict = kPreNoChange;
    rc = gen_pre(model, &reduced, ps, level, p->lpPrintLevel, p->preElimFill,
                 model->solverPam->timeLimit, &verdict, p->restart ? 2 : 0);
    if (rc) {
      if (reduced) KXdeleteModel(&reduced);
      deallocate_poststack(&ps);
      return rc;
    }
    // An infeasible verdict settles the model.  A dual infeasibility (kPreUnbounded)
    // leaves open whether the model is unbounded or infeasible: the simplex tells,
    // on the model without presolve.
    if (verdict == kPreInfeasible && !p->iuSol) {
      if (reduced) KXdeleteModel(&reduced);
      deallocate_poststack(&ps);
      s->model_status = KX_STATUS_INFEASIBLE;
      s->method = -1;
      return 0;
    }
    if (verdict == kPreReduced || (verdict == kPreSolved && !p->iuSol)) {
      model->presolved = reduced;
      model->poststack = ps;
    } else {
      if (reduced) KXdeleteModel(&reduced);
      deallocate_poststack(&ps);
    }
  }
  if (model->poststack) {
    if (model->presolved && model->presolved->nCons + model->presolved->nVars > 0) {
      rc = solve_reduced(model, method);
      if (rc) return rc;
    } else {
      // The presolve settled the model.
      int status = KX_STATUS_UNKNOWN;
      KX_CALL(genpre_postsolv_prob(model->presolved, model, model->poststack, &status));
      s->model_status = status;
      s->method = -1;
    }
    const int ms = s->model_status;
    bool again = false;
    if (ms == KX_STATUS_OPTIMAL || ms == KX_STATUS_BASIC_OPTIMAL || ms == KX_STATUS_FEASIBLE) {
      double pinf = 0, dinf = 0;
      KXgetInfo(model, KX_DINFO_PINFEAS, &pinf);
      KXgetInfo(model, KX_DINFO_DINFEAS, &dinf);
      if (pinf > p->feasTol) {
        if (p->lpPrintLevel > 0) kxi_log(model, "\nPostsolve leads to primal infeasibility (%.8e)", pinf);
        again = true;
      }
      if (dinf > p->feasTol) {
        if (p->lpPrintLevel > 0) kxi_log(model, "\nPostsolve leads to dual infeasibility (%.8e)", dinf);
        again = true;
      }
    } else if (p->iuSol) {
      again = true;
    }
    if (!again) return 0;
    if (p->lpPrintLevel > 0) kxi_log(model, "\nPerforming postsolve reoptimization ...");
    const int keep = s->method;
    const double before = s->simIter;
    s->accSimIter = before;
    rc = ydo_the_lp_opt(model, method);
    s->method = keep;
    s->accSimIter = 0;
    return rc;
  }
  rc = ydo_the_lp_opt(model, method);
  if (rc == 0 && s->model_status == KX_STATUS_INFORUNB && p->iuSol) {
    if (p->lpPrintLevel > 0) kxi_log(model, "\nEnforcing reoptimization ...");
    const int keep = s->method;
    s->accSimIter += s->simIter;
    rc = ydo_the_lp_opt(model, 1);
    s->method = keep;
    s->accSimIter = 0;
  }
  return rc;
}

extern "C" KX_API int KXoptimize(pModel model, int nMethod, int *pnStatus) {
  return kx::guard([&]() -> int {
    const KXtime start = kx_now();
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->modelState == KX_STATUS_UNLOADED) {
      model->lastError = KXERR_NO_MODEL_LOADED;
      return KXERR_NO_MODEL_LOADED;
    }
    model->lastError = 0;
    if (pnStatus) *pnStatus = KX_STATUS_UNKNOWN;
    KX_CALL(kxi_ensure_sol(model));
    Sol *s = model->sol;
    s->model_status = KX_STATUS_UNKNOWN;
    s->started = start;
    s->simIter = s->barIter = s->nlpIter = 0;
    s->accSimIter = s->accBarIter = s->accNlpIter = 0;
    s->luCount = s->luStableCount = s->luFailCount = 0;
    s->luCountRetry = s->luStableCountRetry = s->luFailCountRetry = 0;
    s->ipm_status = KX_STATUS_UNLOADED;
    if (s->primal_status != KX_STATUS_UNLOADED) s->primal_status = KX_STATUS_LOADED;
    if (s->dual_status != KX_STATUS_UNLOADED) s->dual_status = KX_STATUS_LOADED;

    int rc = 0;
    const bool nonlinear = has_nonlinear(model);
    const bool quadratic = has_quadratic(model);
    const bool cones = has_cones(model);
    if ((model->nCons == 0 && !quadratic && !nonlinear) || model->nVars == 0) {
      rc = KXtrivialOptimizer(model);
    } else if (!nonlinear && !quadratic && !cones) {
      // KX_IPARAM_PROB_TO_SOLVE 2: through the explicit dual (dualmodel.cpp).
      rc = model->splexPam->probToSolve == 2 ? kxi_optimize_dual(model, nMethod)
                                             : KXoptimizeLP(model, nMethod);
    } else {
      // Quadratic, conic and nonlinear models need solvers this build lacks.
      rc = KXERR_BAD_SOLVER_TYPE;
    }
    const bool stopped = rc == KXERR_USER_INTERRUPT;
    model->lastError = rc;
    s = model->sol;
    const KXtime end = kx_now();
    s->elapsed = KXtime{end.cpu - start.cpu, end.wall - start.wall};
    if (pnStatus) *pnStatus = s->model_status;
    if (model->cbFunc && !stopped && !model->mipsol) {
      s->inFinalCallback = 1;
      if (timelapsed(model, start, KX_CALLBACK_END, 1, -1.0) < 0) rc = KXERR_USER_INTERRUPT;
      s->inFinalCallback = 0;
      model->lastError = rc;
    }
    if (model->splexPam->lpPrintLevel > 0 && model->logFunc) KXI_DispSolStatsLP(model);
    return rc;
  });
}

extern "C" KX_API int KXsetCallback(pModel model, KXcallback pfCallback, void *pvUserData) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    model->cbFunc = pfCallback;
    model->cbData = pvUserData;
    return 0;
  });
}
