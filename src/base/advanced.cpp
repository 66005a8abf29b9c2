// advanced.cpp - direct work on the basis of the last simplex solve: FTRAN and
// BTRAN in the model's own terms, hand pivots, refactorisation, the extreme ray
// of an unbounded or infeasible run, and the check of optimality.
//
// The simplex state holds the model scaled, A_s = R A C, with the scaled
// structural x_s = x / c_j and the scaled logical s_s = r_i s.  Its basis matrix
// is B_s = R B D with D_p = c_j for a basic column j and 1 / r_i for a basic
// logical of row i, so  B x = a  is  B_s (D^-1 x) = R a,  and  B' y = e  is
// B_s' (R^-1 y) = D e.
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/kx.h"
#include "base/query.h"
#include "simplex/glp.h"

namespace {

constexpr int kNA = KXERR_INFO_NOT_AVAILABLE;
constexpr double kPivotMin = 1e-9;   // smallest |alpha| a hand pivot accepts
constexpr double kRatioAlpha = 1e-9; // entries below this take no part in a ratio test

double dscale(const GLP *g, int j) { return j < g->n ? g->cscale[j] : 1.0 / g->rscale[j - g->n]; }

// A state whose factors can be used: present and not left broken.
int usable(Model *model, GLP **out) {
  if (model->cbLevel < 0) return kNA;
  GLP *g = kxi_live_glp(model);
  if (!g || !g->lu || g->factorFailed || g->badEnd || g->m <= 0) return kNA;
  *out = g;
  return 0;
}

int lu_rc(int rc) {
  if (rc == SPX_NOMEM) return KXERR_OUT_OF_MEMORY;
  return rc ? KXERR_NUMERIC_INSTABILITY : 0;
}

// Scaled FTRAN of variable j's column into out (by position, dense).
int ftran_var(GLP *g, int j, std::vector<double> &out) {
  SpxVec in, res;
  in.resize(g->m);
  res.resize(g->m);
  spx_load_column(g, j, in);
  KX_CALL(lu_rc(spx_ftran(g, in, res, 0)));
  out.assign(res.val.begin(), res.val.begin() + g->m);
  return 0;
}

// Scaled BTRAN of e_p into out (by row, dense).
int btran_unit(GLP *g, int p, std::vector<double> &out) {
  SpxVec in, res;
  in.resize(g->m);
  res.resize(g->m);
  in.ind[0] = p;
  in.val[p] = 1.0;
  in.count = 1;
  KX_CALL(lu_rc(spx_btran(g, in, res)));
  out.assign(res.val.begin(), res.val.begin() + g->m);
  return 0;
}

bool has_lo(const GLP *g, int j) { return g->clb[j] > -g->infin; }
bool has_up(const GLP *g, int j) { return g->cub[j] < g->infin; }

// Status and place of variable j when it leaves the basis towards `toUpper`.
void make_nonbasic(GLP *g, int j, bool toUpper) {
  if (toUpper && has_up(g, j)) {
    g->cbas[j] = -2;
    g->x[j] = g->cub[j];
  } else if (has_lo(g, j)) {
    g->cbas[j] = -1;
    g->x[j] = g->clb[j];
  } else if (has_up(g, j)) {
    g->cbas[j] = -2;
    g->x[j] = g->cub[j];
  } else {
    g->cbas[j] = -3;
    g->x[j] = 0.0;
  }
}

// Counts of primal and dual infeasibilities of the state's point (scaled, with
// the working tolerances).
void count_infeasible(const GLP *g, int *npinf, int *ndinf) {
  *npinf = 0;
  *ndinf = 0;
  for (int j = 0; j < g->nm; j++) {
    if (g->cbas[j] >= 0) {
      if ((has_lo(g, j) && g->x[j] < g->clb[j] - g->reps) || (has_up(g, j) && g->x[j] > g->cub[j] + g->reps))
        (*npinf)++;
      continue;
    }
    if (has_lo(g, j) && has_up(g, j) && g->clb[j] == g->cub[j]) continue;
    const double d = g->rdc[j];
    const int st = g->cbas[j];
    if ((st == -1 && d < -g->ceps) || (st == -2 && d > g->ceps) || (st == -3 && std::fabs(d) > g->ceps))
      (*ndinf)++;
  }
}

// After a change of the basis by hand: factorise, recompute the point and the
// duals, set the verdict and write the solution record.
int refresh(Model *model, GLP *g) {
  int luStat = 0;
  const int rc = KXI_lu_fact(g->lu, g->rbas.data(), static_cast<int>(g->iter), 0, &luStat);
  g->nupdates = 0;
  g->wfact = WF_LIMIT;
  if (rc == KXI_LU_ERR_MEMORY || luStat == 2) {
    g->factorFailed = 1;
    return KXERR_OUT_OF_MEMORY;
  }
  if (rc != 0 || luStat != 0) {
    g->factorFailed = 1;  // the next solve repairs the basis
    g->wfact = WF_FIRST;
    return KXERR_NUMERIC_INSTABILITY;
  }
  g->factorFailed = 0;
  KX_CALL(lu_rc(spx_compute_xb(g)));
  KX_CALL(lu_rc(spx_compute_duals(g, g->objv)));
  int np = 0, nd = 0;
  count_infeasible(g, &np, &nd);
  g->npinf = np;
  g->ndinf = nd;
  g->phase = np == 0 ? 2 : 1;
  g->stat = np == 0 && nd == 0 ? GLP_OPTIMAL : GLP_RUNNING;
  KX_CALL(kxi_ensure_sol(model));
  KX_CALL(putsolution(model, g));
  Sol *s = model->sol;
  if (g->stat == GLP_OPTIMAL) {
    s->model_status = KX_STATUS_BASIC_OPTIMAL;
  } else {
    s->model_status = KX_STATUS_UNKNOWN;
    s->basic_status = KX_STATUS_LOADED;
  }
  return 0;
}

// Replace the basic variable at position p by the nonbasic q.
int pivot(Model *model, GLP *g, int q, int p, bool leaveToUpper) {
  const int out = g->rbas[p];
  g->rbas[p] = q;
  g->cbas[q] = p;
  make_nonbasic(g, out, leaveToUpper);
  g->rdc[q] = 0.0;
  return refresh(model, g);
}

// Dense model-term solves behind the exported calls.
int ftran_model(GLP *g, const double *in, double *out) {
  const int m = g->m;
  SpxVec a, b;
  a.resize(m);
  b.resize(m);
  for (int i = 0; i < m; i++) a.val[i] = in[i] * g->rscale[i];
  a.count = -1;
  KX_CALL(lu_rc(spx_ftran(g, a, b, 0)));
  for (int p = 0; p < m; p++) out[p] = b.val[p] * dscale(g, g->rbas[p]);
  return 0;
}

int btran_model(GLP *g, const double *in, double *out) {
  const int m = g->m;
  SpxVec a, b;
  a.resize(m);
  b.resize(m);
  for (int p = 0; p < m; p++) a.val[p] = in[p] * dscale(g, g->rbas[p]);
  a.count = -1;
  KX_CALL(lu_rc(spx_btran(g, a, b)));
  for (int i = 0; i < m; i++) out[i] = b.val[i] * g->rscale[i];
  return 0;
}

// Sparse forms: scatter, solve, gather the nonzeros.
int sparse_solve(Model *model, bool forward, const int *pnInLen, const int *ind, const double *val,
                 int *pnOutLen, int *outInd, double *outVal) {
  if (!model || !pnInLen || !pnOutLen || !outInd || !outVal) return KXERR_ILLEGAL_NULL_POINTER;
  if (*pnInLen > 0 && (!ind || !val)) return KXERR_ILLEGAL_NULL_POINTER;
  GLP *g = nullptr;
  KX_CALL(usable(model, &g));
  const int m = g->m;
  if (*pnInLen < 0 || *pnInLen > m) return KXERR_PARAMETER_OUT_OF_RANGE;
  std::vector<double> in(m, 0.0), out(m, 0.0);
  for (int k = 0; k < *pnInLen; k++) {
    if (ind[k] < 0 || ind[k] >= m) return KXERR_INDEX_OUT_OF_RANGE;
    in[ind[k]] += val[k];
  }
  KX_CALL(forward ? ftran_model(g, in.data(), out.data()) : btran_model(g, in.data(), out.data()));
  int c = 0;
  for (int i = 0; i < m; i++)
    if (out[i] != 0.0) {
      outInd[c] = i;
      outVal[c++] = out[i];
    }
  *pnOutLen = c;
  return 0;
}

// Prepare hand pivots: the point and the duals of the current basis.
int pivot_setup(Model *model, GLP **out) {
  GLP *g = nullptr;
  KX_CALL(usable(model, &g));
  KX_CALL(lu_rc(spx_compute_xb(g)));
  KX_CALL(lu_rc(spx_compute_duals(g, g->objv)));
  *out = g;
  return 0;
}

// The unbounded direction of a primal run that ended unbounded: n values.
int unbounded_ray(Model *model, GLP *g, double *ray) {
  const int n = g->n, q = g->pivj;
  if (q < 0 || q >= g->nm || g->cbas[q] >= 0) return kNA;
  const double dir = g->rdc[q] < 0 ? 1.0 : -1.0;
  std::vector<double> alpha;
  KX_CALL(ftran_var(g, q, alpha));
  std::vector<double> d(n, 0.0);
  if (q < n) d[q] = dir * g->cscale[q];
  for (int p = 0; p < g->m; p++) {
    const int j = g->rbas[p];
    if (j < n) d[j] = -dir * alpha[p] * g->cscale[j];
  }
  // Largest entry 1 in magnitude.
  double big = 0.0;
  for (double v : d) big = std::max(big, std::fabs(v));
  if (big == 0.0) return kNA;
  for (int j = 0; j < model->nVars; j++) ray[j] = d[j] / big;
  return 0;
}

// The row activity range [lo, hi] of row i.
void row_span(const Model *model, int i, double *lo, double *hi) {
  double slo, sup;
  spx_row_bounds(model, i, &slo, &sup);  // s = b - a x
  const double b = model->rhs[i];
  *lo = sup >= kx::kInfinity ? -kx::kInfinity : b - sup;
  *hi = slo <= -kx::kInfinity ? kx::kInfinity : b - slo;
}

// How far the Farkas multipliers y prove infeasibility: the sum of the row sides
// they take minus the most y'Ax can reach over the bounds (positive: proof).
double farkas_gap(const Model *model, const std::vector<double> &y) {
  const double inf = kx::kInfinity;
  double sides = 0.0;
  for (int i = 0; i < model->nCons; i++) {
    if (y[i] == 0.0) continue;
    double lo, hi;
    row_span(model, i, &lo, &hi);
    const double side = y[i] > 0 ? lo : hi;
    if (std::fabs(side) >= inf) return -inf;
    sides += y[i] * side;
  }
  double reach = 0.0;
  for (int j = 0; j < model->nVars; j++) {
    double z = 0.0;
    for (int k = model->Abeg[j]; k < model->Abeg[j] + model->Alen[j]; k++) z += y[model->Arow[k]] * model->Acoef[k];
    if (z == 0.0) continue;
    const double bnd = z > 0 ? model->upper[j] : model->lower[j];
    if (std::fabs(bnd) >= inf) {
      if (std::fabs(z) > 1e-9) return -inf;
      continue;
    }
    reach += z * bnd;
  }
  return sides - reach;
}

// Multipliers of an infeasible run: the dual ray of the dual simplex, or the
// duals of the phase-1 costs of the primal.  m values.
int infeasible_ray(Model *model, GLP *g, double *ray) {
  const int m = g->m;
  std::vector<double> w(m, 0.0);
  if (g->rayLen == m && static_cast<int>(g->ray.size()) == m) {
    w = g->ray;
  } else {
    SpxVec in, res;
    in.resize(m);
    res.resize(m);
    for (int p = 0; p < m; p++) {
      const int j = g->rbas[p];
      if (has_lo(g, j) && g->x[j] < g->clb[j] - g->reps) in.val[p] = -1.0;
      else if (has_up(g, j) && g->x[j] > g->cub[j] + g->reps) in.val[p] = 1.0;
    }
    in.count = -1;
    KX_CALL(lu_rc(spx_btran(g, in, res)));
    for (int i = 0; i < m; i++) w[i] = res.val[i];
  }
  std::vector<double> y(m);
  double big = 0.0;
  for (int i = 0; i < m; i++) {
    y[i] = w[i] * g->rscale[i];
    big = std::max(big, std::fabs(y[i]));
  }
  if (big == 0.0) return kNA;
  for (int i = 0; i < m; i++) {
    y[i] /= big;
    if (std::fabs(y[i]) < 1e-11) y[i] = 0.0;
  }
  // The sign that proves infeasibility.
  std::vector<double> neg(m);
  for (int i = 0; i < m; i++) neg[i] = -y[i];
  if (farkas_gap(model, neg) > farkas_gap(model, y)) y.swap(neg);
  std::copy(y.begin(), y.end(), ray);
  return 0;
}

}  // namespace

int kxi_ftran_dense(GLP *g, const double *in, double *out) { return ftran_model(g, in, out); }
int kxi_btran_dense(GLP *g, const double *in, double *out) { return btran_model(g, in, out); }
int kxi_basic_var(const GLP *g, int p) { return g->rbas[p]; }

void kxi_var_bounds(const Model *model, int j, double *lo, double *up) {
  if (j < model->nVars) {
    *lo = model->lower ? model->lower[j] : 0.0;
    *up = model->upper ? model->upper[j] : kx::kInfinity;
  } else {
    spx_row_bounds(model, j - model->nVars, lo, up);
  }
}

extern "C" KX_API int KXdoFTRAN(pModel model, const int *pnInLen, const int *paiInd, const double *padVal,
                                int *pnOutLen, int *paiOutInd, double *padOutVal) {
  return kx::guard([&]() -> int {
    return sparse_solve(model, true, pnInLen, paiInd, padVal, pnOutLen, paiOutInd, padOutVal);
  });
}

extern "C" KX_API int KXdoBTRAN(pModel model, const int *pnInLen, const int *paiInd, const double *padVal,
                                int *pnOutLen, int *paiOutInd, double *padOutVal) {
  return kx::guard([&]() -> int {
    return sparse_solve(model, false, pnInLen, paiInd, padVal, pnOutLen, paiOutInd, padOutVal);
  });
}

extern "C" KX_API int KXdoDenseFTRAN(pModel model, const double *padIn, double *padOut) {
  return kx::guard([&]() -> int {
    if (!model || !padIn || !padOut) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = nullptr;
    KX_CALL(usable(model, &g));
    return ftran_model(g, padIn, padOut);
  });
}

extern "C" KX_API int KXdoDenseBTRAN(pModel model, const double *padIn, double *padOut) {
  return kx::guard([&]() -> int {
    if (!model || !padIn || !padOut) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = nullptr;
    KX_CALL(usable(model, &g));
    return btran_model(g, padIn, padOut);
  });
}

extern "C" KX_API int KXdoPivotij(pModel model, int jEnter, int jLeave) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = nullptr;
    KX_CALL(pivot_setup(model, &g));
    if (jEnter < 0 || jEnter >= g->nm || jLeave < 0 || jLeave >= g->nm) return KXERR_INDEX_OUT_OF_RANGE;
    if (g->cbas[jEnter] >= 0 || g->cbas[jLeave] < 0) return KXERR_INDEX_OUT_OF_RANGE;
    std::vector<double> alpha;
    KX_CALL(ftran_var(g, jEnter, alpha));
    const int p = g->cbas[jLeave];
    if (std::fabs(alpha[p]) < kPivotMin) return KXERR_NUMERIC_INSTABILITY;
    // The leaving variable rests at the bound nearer its value.
    const double v = g->x[jLeave];
    const bool toUpper = has_up(g, jLeave) && (!has_lo(g, jLeave) || g->cub[jLeave] - v < v - g->clb[jLeave]);
    return pivot(model, g, jEnter, p, toUpper);
  });
}

extern "C" KX_API int KXdoPivotIn(pModel model, int jEnter, int *pjLeave) {
  return kx::guard([&]() -> int {
    if (!model || !pjLeave) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = nullptr;
    KX_CALL(pivot_setup(model, &g));
    if (jEnter < 0 || jEnter >= g->nm || g->cbas[jEnter] >= 0) return KXERR_INDEX_OUT_OF_RANGE;
    const int q = jEnter;
    // Direction: the one the reduced cost favours, else away from the bound.
    double dir = g->cbas[q] == -2 ? -1.0 : 1.0;
    if (g->rdc[q] < -g->ceps) dir = 1.0;
    else if (g->rdc[q] > g->ceps && g->cbas[q] != -1) dir = -1.0;
    std::vector<double> alpha;
    KX_CALL(ftran_var(g, q, alpha));
    // x_B moves by -dir * t * alpha; the entering variable may also reach its other bound.
    double best = has_lo(g, q) && has_up(g, q) ? g->cub[q] - g->clb[q] : g->infin;
    int r = -1;
    bool toUpper = false;
    for (int p = 0; p < g->m; p++) {
      const double a = -dir * alpha[p];
      if (std::fabs(a) < kRatioAlpha) continue;
      const int j = g->rbas[p];
      double t;
      if (a < 0) {
        if (!has_lo(g, j)) continue;
        t = std::max(0.0, g->x[j] - g->clb[j]) / -a;
      } else {
        if (!has_up(g, j)) continue;
        t = std::max(0.0, g->cub[j] - g->x[j]) / a;
      }
      if (t < best) {
        best = t;
        r = p;
        toUpper = a > 0;
      }
    }
    if (best >= g->infin) return kNA;  // nothing blocks: an unbounded direction
    if (r < 0) {
      // A bound flip of the entering variable.
      make_nonbasic(g, q, dir > 0);
      *pjLeave = -1;
      return refresh(model, g);
    }
    *pjLeave = g->rbas[r];
    return pivot(model, g, q, r, toUpper);
  });
}

extern "C" KX_API int KXdoPivotOut(pModel model, int jLeave, int *pjEnter) {
  return kx::guard([&]() -> int {
    if (!model || !pjEnter) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = nullptr;
    KX_CALL(pivot_setup(model, &g));
    if (jLeave < 0 || jLeave >= g->nm || g->cbas[jLeave] < 0) return KXERR_INDEX_OUT_OF_RANGE;
    const int p = g->cbas[jLeave];
    // The bound it leaves to: the violated one, else the nearer one.
    const double v = g->x[jLeave];
    bool toUpper;
    if (has_up(g, jLeave) && v > g->cub[jLeave]) toUpper = true;
    else if (has_lo(g, jLeave) && v < g->clb[jLeave]) toUpper = false;
    else toUpper = has_up(g, jLeave) && (!has_lo(g, jLeave) || g->cub[jLeave] - v < v - g->clb[jLeave]);
    std::vector<double> rho;
    KX_CALL(btran_unit(g, p, rho));
    SpxVec r;
    r.resize(g->m);
    for (int i = 0; i < g->m; i++)
      if (rho[i] != 0.0) r.ind[r.count++] = i, r.val[i] = rho[i];
    spx_pivot_row(g, r);
    // Dual ratio test: x_p = beta - sum alpha_j x_j must move towards its bound
    // (down for the upper one) while the reduced costs keep their signs.
    const SpxVec &row = g->pivrow;
    int q = -1;
    double best = g->infin;
    for (int k = 0; k < row.count; k++) {
      const int j = row.ind[k];
      const double a = row.val[j];
      if (std::fabs(a) < kRatioAlpha || g->cbas[j] >= 0) continue;
      if (has_lo(g, j) && has_up(g, j) && g->clb[j] == g->cub[j]) continue;  // fixed
      const int st = g->cbas[j];
      // Moving x_j up (at lower or free) changes x_p by -a; down by +a.
      const bool up = st == -1 || (st == -3 && (toUpper ? a > 0 : a < 0));
      const double change = up ? -a : a;
      if (toUpper ? change >= 0 : change <= 0) continue;
      const double t = std::fabs(g->rdc[j]) / std::fabs(a);
      if (t < best) {
        best = t;
        q = j;
      }
    }
    g->pivrow.clear(g->nm);
    if (q < 0) return kNA;
    *pjEnter = q;
    return pivot(model, g, q, p, toUpper);
  });
}

extern "C" KX_API int KXfactorBasis(pModel model) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = kxi_live_glp(model);
    if (!g || !g->lu) return KXERR_BASIS_INVALID;
    return refresh(model, g);
  });
}

extern "C" KX_API int KXgetExtremeRay(pModel model, double *padRay) {
  return kx::guard([&]() -> int {
    if (!model || !padRay) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = nullptr;
    KX_CALL(usable(model, &g));
    if (g->stat == GLP_UNBOUNDED) return unbounded_ray(model, g, padRay);
    if (g->stat == GLP_INFEASIBLE) return infeasible_ray(model, g, padRay);
    return kNA;
  });
}

extern "C" KX_API int KXverifyOptimality(pModel model) {
  return kx::guard([&]() -> int {
    if (!model) return KXERR_ILLEGAL_NULL_POINTER;
    GLP *g = nullptr;
    KX_CALL(usable(model, &g));
    const int m = g->m, n = g->n;
    const Model *md = model;
    const double sense = g->sense;
    // Nonbasic values at their bounds, basic values from B x_B = b - N x_N.
    std::vector<double> x(n + m, 0.0), r(m), xb(m), cb(m), y(m);
    for (int j = 0; j < n + m; j++) {
      if (g->cbas[j] >= 0) continue;
      double lo, up;
      kxi_var_bounds(md, j, &lo, &up);
      const int st = g->cbas[j];
      x[j] = st == -1 && lo > -kx::kInfinity ? lo : st == -2 && up < kx::kInfinity ? up
                                                                                     : g->x[j] * dscale(g, j);
    }
    for (int i = 0; i < m; i++) r[i] = md->rhs[i] - x[n + i];
    for (int j = 0; j < n; j++)
      for (int k = md->Abeg[j]; k < md->Abeg[j] + md->Alen[j]; k++) r[md->Arow[k]] -= md->Acoef[k] * x[j];
    KX_CALL(ftran_model(g, r.data(), xb.data()));
    double cmax = 0.0;
    for (int j = 0; j < n; j++) cmax = std::max(cmax, std::fabs(md->cost[j]));
    for (int p = 0; p < m; p++) {
      const int j = g->rbas[p];
      x[j] = xb[p];
      cb[p] = j < n ? sense * md->cost[j] : 0.0;
    }
    KX_CALL(btran_model(g, cb.data(), y.data()));
    const double ft = 10 * md->splexPam->feasTol, ot = 10 * md->splexPam->optTol * std::max(1.0, cmax);
    for (int j = 0; j < n + m; j++) {
      double lo, up;
      kxi_var_bounds(md, j, &lo, &up);
      if (g->cbas[j] >= 0) {
        if ((lo > -kx::kInfinity && x[j] < lo - ft * (1 + std::fabs(lo))) ||
            (up < kx::kInfinity && x[j] > up + ft * (1 + std::fabs(up))))
          return KXERR_NUMERIC_INSTABILITY;
        continue;
      }
      if (lo == up) continue;
      double d;
      if (j < n) {
        d = sense * md->cost[j];
        for (int k = md->Abeg[j]; k < md->Abeg[j] + md->Alen[j]; k++) d -= y[md->Arow[k]] * md->Acoef[k];
      } else {
        d = -y[j - n];
      }
      const int st = g->cbas[j];
      if ((st == -1 && d < -ot) || (st == -2 && d > ot) || (st == -3 && std::fabs(d) > ot))
        return KXERR_NUMERIC_INSTABILITY;
    }
    return 0;
  });
}
