// compute.cpp - solves with the basis, values of the basic variables, duals and
// reduced costs from scratch, the pivot row, and measures of the point.
#include <algorithm>
#include <cmath>

#include "simplex/glp.h"
#include "simplex/pivot_row.h"

namespace {

int lu_code(int rc) { return rc == KXI_LU_ERR_MEMORY ? SPX_NOMEM : (rc ? SPX_NUMERIC : 0); }

// After a solve: the output's count from the engine's vector, the input
// cleared (the engine leaves its values in place), the result code mapped.
int solved(GLP *g, int rc, SpxVec &in, SpxVec &out, const SLUVec &b) {
  out.count = b.count;
  in.clear(g->m);
  return lu_code(rc);
}

}  // namespace

int spx_ftran(GLP *g, SpxVec &in, SpxVec &out, int save) {
  SLUVec a = in.as_slu(), b = out.as_slu();
  return solved(g, KXI_lu_ftran(g->lu, &a, &b, save), in, out, b);
}

int spx_ftran_some(GLP *g, SpxVec &in, const int *want, int nWant, SpxVec &out) {
  SLUVec a = in.as_slu(), b = out.as_slu();
  int some = 0;
  return solved(g, KXI_lu_ftran_some(g->lu, &a, want, nWant, &b, &some), in, out, b);
}

int spx_btran(GLP *g, SpxVec &in, SpxVec &out) {
  SLUVec a = in.as_slu(), b = out.as_slu();
  return solved(g, KXI_lu_btran(g->lu, &a, &b), in, out, b);
}

void spx_load_column(const GLP *g, int j, SpxVec &v) {
  if (j >= g->n) {
    const int i = j - g->n;
    v.ind[0] = i;
    v.val[i] = 1.0;
    v.count = 1;
    return;
  }
  int c = 0;
  for (int k = g->colBeg[j]; k < g->colBeg[j] + g->colLen[j]; k++) {
    const int i = g->rowInd[k];
    v.ind[c++] = i;
    v.val[i] = g->colVal[k];
  }
  v.count = c;
}

int spx_compute_xb(GLP *g) {
  const int m = g->m, n = g->n;
  SpxVec &in = g->work, &out = g->work2;
  in.clear(m);
  out.clear(m);
  double *r = in.val.data();
  for (int i = 0; i < m; i++) r[i] = g->rhs1[i];
  for (int j = 0; j < n; j++) {
    if (g->cbas[j] >= 0) continue;
    const double xj = g->x[j];
    if (xj == 0.0) continue;
    for (int k = g->colBeg[j]; k < g->colBeg[j] + g->colLen[j]; k++) r[g->rowInd[k]] -= g->colVal[k] * xj;
  }
  for (int i = 0; i < m; i++)
    if (g->cbas[n + i] < 0) r[i] -= g->x[n + i];
  in.count = -1;
  out.count = -1;
  int rc = spx_ftran(g, in, out, 0);
  if (rc) return rc;
  if (out.count < 0) {
    for (int p = 0; p < m; p++) g->x[g->rbas[p]] = out.val[p];
  } else {
    for (int p = 0; p < m; p++) g->x[g->rbas[p]] = out.val[p];
  }
  out.clear(m);
  return spx_refine_xb(g);
}

// One step of iterative refinement of x_B: the residual rhs1 - [A I] x is summed
// in extended precision and its FTRAN corrects the basics.  On ill-conditioned
// bases with large terms this takes the row residuals from rounding of the
// solve down to rounding of the data.
int spx_refine_xb(GLP *g) {
  const int m = g->m, n = g->n;
  SpxVec &in = g->work, &out = g->work2;
  std::vector<long double> res(m);
  for (int i = 0; i < m; i++) res[i] = static_cast<long double>(g->rhs1[i]) - g->x[n + i];
  for (int j = 0; j < n; j++) {
    const long double xj = g->x[j];
    if (xj == 0.0L) continue;
    for (int k = g->colBeg[j]; k < g->colBeg[j] + g->colLen[j]; k++)
      res[g->rowInd[k]] -= static_cast<long double>(g->colVal[k]) * xj;
  }
  in.clear(m);
  out.clear(m);
  bool any = false;
  for (int i = 0; i < m; i++) {
    in.val[i] = static_cast<double>(res[i]);
    if (in.val[i] != 0.0) any = true;
  }
  if (!any) return 0;
  in.count = -1;
  out.count = -1;
  const int rc = spx_ftran(g, in, out, 0);
  if (rc) return rc;
  for (int p = 0; p < m; p++) g->x[g->rbas[p]] += out.val[p];
  out.clear(m);
  return 0;
}

double spx_unscaled_cost_size(const GLP *g) {
  double cmax = 1.0;
  const Model *model = g->model;
  for (int j = 0; j < model->nVars; j++) cmax = std::max(cmax, std::fabs(model->cost[j]));
  return g->objscale * cmax;
}

double spx_dual_gap_share(const GLP *g, double objective) {
  double gap = 0.0;
  for (int j = 0; j < g->nm; j++) {
    const int st = g->cbas[j];
    if (st >= 0 || !(g->clb[j] > -g->infin) || !(g->cub[j] < g->infin)) continue;
    const double span = g->cub[j] - g->clb[j];
    double v;
    if (spx_status_viol(st, g->rdc[j], 0.0, &v) && span > 0.0) gap += v * span;
  }
  return gap / g->objscale / std::max(1.0, std::fabs(objective));
}

bool spx_tighten(GLP *g, double pv, double dv, double gs) {
  if (pv <= g->repsUser && dv <= g->cepsUser && gs <= g->cepsUser) return false;
  if (pv > g->repsUser) g->reps = std::max(g->reps * g->repsUser / pv * 0.5, 1e-12);
  if (dv > g->cepsUser) g->ceps = std::max(g->ceps * g->cepsUser / dv * 0.5, 1e-12);
  if (gs > g->cepsUser) g->ceps = std::max(g->ceps * 0.1, 1e-12);
  spx_debug(g, 1, "\nTightening tolerances: reps=%e ceps=%e (unscaled %e %e, gap share %e)", g->reps, g->ceps, pv, dv,
            gs);
  g->wfact = WF_CHECK;
  return true;
}

int spx_compute_duals(GLP *g, const std::vector<double> &cost) {
  const int m = g->m, n = g->n;
  SpxVec &in = g->work, &out = g->work2;
  in.clear(m);
  out.clear(m);
  for (int p = 0; p < m; p++) in.val[p] = cost[g->rbas[p]];
  in.count = -1;
  out.count = -1;
  int rc = spx_btran(g, in, out);
  if (rc) return rc;
  for (int i = 0; i < m; i++) g->y[i] = out.val[i];
  out.clear(m);
  const double *y = g->y.data();
  for (int j = 0; j < n; j++) {
    if (g->cbas[j] >= 0) {
      g->rdc[j] = 0.0;
      continue;
    }
    double d = cost[j];
    for (int k = g->colBeg[j]; k < g->colBeg[j] + g->colLen[j]; k++) d -= y[g->rowInd[k]] * g->colVal[k];
    g->rdc[j] = d;
  }
  for (int i = 0; i < m; i++) g->rdc[n + i] = g->cbas[n + i] >= 0 ? 0.0 : cost[n + i] - y[i];
  g->candValid = false;
  return 0;
}

void spx_pivot_row(GLP *g, const SpxVec &rho) {
  spx_pivot_row_visit(g, rho, [](int, double, int) {});
}

double spx_primal_infeas(GLP *g, int *count, double *maxv) {
  double sum = 0.0, mx = 0.0;
  int c = 0;
  for (int p = 0; p < g->m; p++) {
    const int j = g->rbas[p];
    const double v = g->x[j];
    double e = 0.0;
    if (v < g->clb[j] - g->reps) e = g->clb[j] - v;
    else if (v > g->cub[j] + g->reps) e = v - g->cub[j];
    if (e > 0) {
      c++;
      sum += e;
      if (e > mx) mx = e;
    }
  }
  if (count) *count = c;
  if (maxv) *maxv = mx;
  return sum;
}

int spx_wrong_costs(const GLP *g) {
  int count = 0;
  for (int j = 0; j < g->nm; j++) {
    const int st = g->cbas[j];
    if (st >= 0 || g->clb[j] == g->cub[j]) continue;
    const double d = g->rdc[j];
    if ((st == -1 && d < -g->ceps) || (st == -2 && d > g->ceps) || (st == -3 && std::fabs(d) > g->ceps)) count++;
  }
  return count;
}

double spx_objective(const GLP *g) {
  double s = 0.0;
  for (int j = 0; j < g->n; j++) s += g->objv[j] * g->x[j];
  return s;
}
