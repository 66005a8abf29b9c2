// putsolution.cpp - from the scaled simplex state to the model's solution
// record: duals with the true costs, unscaling, statuses, and the measure of
// the primal and dual infeasibility on the model's own data.
#include <algorithm>
#include <cmath>

#include "simplex/glp.h"

int compsol(GLP *g) {
  // Reduced costs and duals of the true objective (phase 1 leaves others).
  if (g->factorFailed) return 0;
  // An optimal point gets its basic values afresh from the final factors (with
  // a refinement step): the values the iterations updated carry the rounding
  // of every step since the last factorisation.
  if (g->stat == GLP_OPTIMAL && g->m > 0) {
    const int rc = spx_compute_xb(g);
    if (rc) return rc;
  }
  if (g->phase != 2 || g->stat != GLP_OPTIMAL) {
    const int rc = spx_compute_duals(g, g->objv);
    if (rc) return rc;
  }
  return 0;
}

void spx_measure_solution(const Model *model, double *pinf, double *dinf) {
  const int m = model->nCons, n = model->nVars;
  const Sol *s = model->sol;
  const double inf = kx::kInfinity;
  const int sense = model->objSense == -1 ? -1 : 1;
  std::vector<double> act(m, 0.0), ya(n, 0.0);
  double cmax = 0.0;
  for (int j = 0; j < n; j++) {
    cmax = std::max(cmax, std::fabs(model->cost[j]));
    const int b = model->Abeg[j], l = model->Alen ? model->Alen[j] : model->Abeg[j + 1] - b;
    double t = 0.0;
    for (int k = b; k < b + l; k++) {
      act[model->Arow[k]] += model->Acoef[k] * s->x[j];
      t += s->y[model->Arow[k]] * model->Acoef[k];
    }
    ya[j] = t;
  }
  const double dscale = std::max(1.0, cmax);
  double pv = 0.0, dv = 0.0;
  // A variable within this of a bound counts as at that bound for the sign test.
  auto atTol = [](double v) { return 1e-9 * (1.0 + std::fabs(v)); };
  // The sign test follows the basis where there is one: a nonbasic variable at a
  // bound is there by definition, even when the value measured on the model's
  // data (a logical's b - a x, summed over large terms) misses the bound by more
  // than the rounding of that sum.  Basic, free and superbasic variables, and
  // points without a basis, are judged by their values.
  const bool withBasis = s->colstat && s->rowstat && s->basic_status != KX_STATUS_UNLOADED;
  auto check = [&](double x, double lo, double up, double d, int st) {
    if (lo > -inf && x < lo) pv = std::max(pv, lo - x);
    if (up < inf && x > up) pv = std::max(pv, x - up);
    if (lo > -inf && up < inf && up - lo <= atTol(lo)) return;  // fixed: any sign
    bool atLo = lo > -inf && x <= lo + atTol(lo);
    bool atUp = up < inf && x >= up - atTol(up);
    if (st == -1 && lo > -inf) atLo = true, atUp = false;
    else if (st == -2 && up < inf) atLo = false, atUp = true;
    // Minimisation form: d >= 0 at a lower bound, <= 0 at an upper one, 0 between.
    const double dm = sense * d;
    double e = 0.0;
    if (atLo) e = std::max(0.0, -dm);
    else if (atUp) e = std::max(0.0, dm);
    else e = std::fabs(dm);
    dv = std::max(dv, e / dscale);
  };
  for (int j = 0; j < n; j++) {
    const double lo = model->lower ? model->lower[j] : 0.0;
    const double up = model->upper ? model->upper[j] : inf;
    check(s->x[j], lo, up, model->cost[j] - ya[j], withBasis ? s->colstat[j] : 0);
  }
  for (int i = 0; i < m; i++) {
    double lo, up;
    spx_row_bounds(model, i, &lo, &up);
    // The logical s = b - a x, with cost 0 and column e_i.
    check(model->rhs[i] - act[i], lo, up, -s->y[i], withBasis ? s->rowstat[i] : 0);
  }
  *pinf = pv;
  *dinf = dv;
}

int putsolution(Model *model, GLP *g) {
  KX_CALL(kxi_ensure_sol(model));
  Sol *s = model->sol;
  const int m = g->m, n = g->n;
  const int sense = g->sense;
  const double os = g->objscale;
  for (int j = 0; j < n; j++) {
    s->x[j] = g->x[j] * g->cscale[j];
    s->dj[j] = sense * g->rdc[j] / (g->cscale[j] * os) + 0.0;
    s->colstat[j] = g->cbas[j];
  }
  for (int i = 0; i < m; i++) {
    s->slack[i] = g->x[n + i] / g->rscale[i];
    s->y[i] = sense * g->y[i] * g->rscale[i] / os + 0.0;  // no negative zero
    s->rowstat[i] = g->cbas[n + i];
  }
  // Nonbasic values exactly at the user's bounds.
  for (int j = 0; j < n; j++) {
    if (s->colstat[j] == -1 && model->lower) s->x[j] = model->lower[j];
    else if (s->colstat[j] == -2 && model->upper) s->x[j] = model->upper[j];
  }
  double obj = model->objConst;
  for (int j = 0; j < n; j++) obj += model->cost[j] * s->x[j];

  switch (g->stat) {
    case GLP_OPTIMAL:
      s->pobj = s->dobj = obj;
      s->primal_status = KX_STATUS_BASIC_OPTIMAL;
      s->dual_status = KX_STATUS_OPTIMAL;
      s->basic_status = KX_STATUS_BASIC_OPTIMAL;
      break;
    case GLP_INFEASIBLE:
      s->pobj = obj;
      s->dobj = -sense * 1e30;
      s->primal_status = KX_STATUS_INFEASIBLE;
      s->dual_status = KX_STATUS_INFORUNB;
      s->basic_status = KX_STATUS_LOADED;
      break;
    case GLP_DUALRAY:
      s->pobj = obj;
      s->dobj = obj;
      s->primal_status = KX_STATUS_INFORUNB;
      s->dual_status = KX_STATUS_INFEASIBLE;
      s->basic_status = KX_STATUS_LOADED;
      break;
    case GLP_UNBOUNDED:
      s->pobj = -sense * 1e30;
      s->dobj = obj;
      s->primal_status = KX_STATUS_UNBOUNDED;
      s->dual_status = KX_STATUS_INFEASIBLE;
      s->basic_status = KX_STATUS_LOADED;
      break;
    case GLP_CUTOFF:
      s->pobj = s->dobj = obj;
      s->primal_status = KX_STATUS_CUTOFF;
      s->dual_status = KX_STATUS_CUTOFF;
      s->basic_status = KX_STATUS_LOADED;
      break;
    default:
      s->pobj = obj;
      s->dobj = obj;
      s->primal_status = KX_STATUS_UNKNOWN;
      s->dual_status = KX_STATUS_UNKNOWN;
      s->basic_status = KX_STATUS_LOADED;
      break;
  }
  double pinf = 0, dinf = 0;
  spx_measure_solution(model, &pinf, &dinf);
  s->pinfeas = pinf;
  s->dinfeas = dinf;
  spx_debug(g, 1, "\nputsolution: prim infeas: max: %.8e, relmax= %.8e", pinf, pinf);
  spx_debug(g, 1, "\nputsolution: dual infeas: max: %.8e, relmax= %.8e", dinf, dinf);
  int v = 0;
  KXI_lu_get_iinfo(g->lu, 21501, &v);
  s->luCount = v;
  KXI_lu_get_iinfo(g->lu, 21500, &v);
  s->luStableCount = v;
  KXI_lu_get_iinfo(g->lu, 21502, &v);
  s->luFailCount = v - s->luCount > 0 ? v - s->luCount : 0;
  return 0;
}
