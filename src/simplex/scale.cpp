// scale.cpp - the hybrid scaler (geometric passes, then equilibration, with
// optional power-of-two rounding), objective scaling, and the bad-scale measure.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "simplex/glp.h"

namespace {

constexpr int kMaxGeoPasses = 10;

inline double pow2_round(double f) {
  if (!(f > 0) || !std::isfinite(f)) return 1.0;
  return std::ldexp(1.0, static_cast<int>(std::lround(std::log2(f))));
}

// Range of the finite nonzero magnitudes of a vector.
void vec_range(const double *v, int len, double inf, double *mn, double *mx) {
  double lo = 1e300, hi = 0.0;
  for (int k = 0; k < len; k++) {
    const double a = std::fabs(v[k]);
    if (a == 0.0 || a >= inf) continue;
    lo = std::min(lo, a);
    hi = std::max(hi, a);
  }
  if (hi == 0.0) lo = 0.0;
  *mn = lo;
  *mx = hi;
}

double cond_of(double mn, double mx) { return mn > 0 ? mx / mn : 1.0; }

void format_dou(char *buf, size_t len, double v) { std::snprintf(buf, len, "%12.5e", v); }

void log_ranges(GLP *g, const char *title, double aMin, double aMax, double cMin, double cMax,
                double bMin, double bMax, double lMin, double lMax, double uMin, double uMax) {
  if (!g->model->logFunc || g->printLevel <= 1) return;
  spx_log(g, "\nAbs. Ranges (%s): %12s  %12s  %12s", title, "Min.", "Max.", "Condition.");
  struct Row {
    const char *name;
    double mn, mx;
  } rows[] = {{"Matrix Coef. (A)", aMin, aMax}, {"Obj. Vector  (c)", cMin, cMax},
              {"RHS Vector   (b)", bMin, bMax}, {"Lower Bounds (l)", lMin, lMax},
              {"Upper Bounds (u)", uMin, uMax}};
  for (const Row &r : rows) {
    char a[32], b[32], c[32];
    format_dou(a, sizeof a, r.mn);
    format_dou(b, sizeof b, r.mx);
    const double cond = cond_of(r.mn, r.mx);
    format_dou(c, sizeof c, cond);
    spx_log(g, "\n%s: %s  %s  %s %s", r.name, a, b, c, cond > 1e9 ? "(badly scaled)" : "");
  }
}

// Ranges of c, b, l, u of the glp data as it stands (structural bounds only).
void data_ranges(const GLP *g, double *cMin, double *cMax, double *bMin, double *bMax, double *lMin,
                 double *lMax, double *uMin, double *uMax) {
  vec_range(g->objv.data(), g->n, g->infin, cMin, cMax);
  vec_range(g->rhs1.data(), g->m, g->infin, bMin, bMax);
  vec_range(g->clb.data(), g->n, g->infin, lMin, lMax);
  vec_range(g->cub.data(), g->n, g->infin, uMin, uMax);
}

}  // namespace

int spx_bad_scale_mask(double aMin, double aMax, double cMin, double cMax, double lMin, double lMax,
                       double uMin, double uMax, double bMin, double bMax) {
  int mask = 0;
  if (cond_of(aMin, aMax) > 1e9) mask |= 1;
  if (cond_of(cMin, cMax) > 1e12) mask |= 2;
  if (cond_of(lMin, lMax) > 1e12) mask |= 4;
  if (cond_of(uMin, uMax) > 1e12) mask |= 8;
  if (cond_of(bMin, bMax) > 1e12) mask |= 16;
  return mask;
}

void coemax(const GLP *g, double *amin, double *amax) {
  const int nz = g->colBeg[g->n];
  vec_range(g->colVal.data(), nz, g->infin, amin, amax);
}

int hyb_scaler(GLP *g, int equilibrate, int round) {
  const int m = g->m, n = g->n;
  const double inf = g->infin;
  std::vector<double> &r = g->rscale, &c = g->cscale;
  std::vector<double> rmin(m), rmax(m);
  const int *beg = g->colBeg.data(), *len = g->colLen.data(), *ind = g->rowInd.data();
  const double *val = g->colVal.data();

  auto scaled_cond = [&]() {
    double lo = 1e300, hi = 0;
    for (int j = 0; j < n; j++)
      for (int k = beg[j]; k < beg[j] + len[j]; k++) {
        const double a = std::fabs(val[k]) * r[ind[k]] * c[j];
        lo = std::min(lo, a);
        hi = std::max(hi, a);
      }
    return hi > 0 ? hi / lo : 1.0;
  };

  double cond = scaled_cond();
  for (int pass = 0; pass < kMaxGeoPasses && cond > 1.0; pass++) {
    // Rows.
    std::fill(rmin.begin(), rmin.end(), 1e300);
    std::fill(rmax.begin(), rmax.end(), 0.0);
    for (int j = 0; j < n; j++)
      for (int k = beg[j]; k < beg[j] + len[j]; k++) {
        const int i = ind[k];
        const double a = std::fabs(val[k]) * c[j];
        rmin[i] = std::min(rmin[i], a);
        rmax[i] = std::max(rmax[i], a);
      }
    for (int i = 0; i < m; i++)
      if (rmax[i] > 0) r[i] = 1.0 / std::sqrt(rmin[i] * rmax[i]);
    // Columns.
    for (int j = 0; j < n; j++) {
      double lo = 1e300, hi = 0;
      for (int k = beg[j]; k < beg[j] + len[j]; k++) {
        const double a = std::fabs(val[k]) * r[ind[k]];
        lo = std::min(lo, a);
        hi = std::max(hi, a);
      }
      if (hi > 0) c[j] = 1.0 / std::sqrt(lo * hi);
    }
    const double now = scaled_cond();
    if (g->printLevel > 1 && g->model->logFunc) {
      char a[32];
      format_dou(a, sizeof a, now);
      spx_log(g, "\nScaling geo. (A): %s", a);
    }
    const bool small = cond - now < 0.05 * cond;
    cond = now;
    if (small) break;
  }

  if (equilibrate) {
    for (int j = 0; j < n; j++) {
      double hi = 0;
      for (int k = beg[j]; k < beg[j] + len[j]; k++)
        hi = std::max(hi, std::fabs(val[k]) * r[ind[k]] * c[j]);
      if (hi > 0) c[j] /= hi;
    }
    std::fill(rmax.begin(), rmax.end(), 0.0);
    for (int j = 0; j < n; j++)
      for (int k = beg[j]; k < beg[j] + len[j]; k++)
        rmax[ind[k]] = std::max(rmax[ind[k]], std::fabs(val[k]) * r[ind[k]] * c[j]);
    for (int i = 0; i < m; i++)
      if (rmax[i] > 0) r[i] /= rmax[i];
  }
  // Integer columns are not scaled down below a sixty-fourth.
  const Model *model = g->model;
  if (model && model->vartype)
    for (int j = 0; j < n; j++)
      if (model->vartype[j] != 'C' && c[j] < 0.015625) c[j] = 0.015625;
  if (round) {
    for (int i = 0; i < m; i++) r[i] = pow2_round(r[i]);
    for (int j = 0; j < n; j++) c[j] = pow2_round(c[j]);
  }

  // Apply to A, c, b, l, u.
  for (int j = 0; j < n; j++) {
    for (int k = beg[j]; k < beg[j] + len[j]; k++) g->colVal[k] *= r[ind[k]] * c[j];
    g->objv[j] *= c[j];
    if (g->clb[j] > -inf) g->clb[j] /= c[j];
    if (g->cub[j] < inf) g->cub[j] /= c[j];
  }
  for (int i = 0; i < m; i++) {
    g->rhs1[i] *= r[i];
    const int v = g->n + i;
    if (g->clb[v] > -inf) g->clb[v] *= r[i];
    if (g->cub[v] < inf) g->cub[v] *= r[i];
  }
  return 0;
}

int KXI_spx_mscale(GLP *g) {
  const int n = g->n;
  double aMin, aMax, cMin, cMax, bMin, bMax, lMin, lMax, uMin, uMax;
  coemax(g, &aMin, &aMax);
  data_ranges(g, &cMin, &cMax, &bMin, &bMax, &lMin, &lMax, &uMin, &uMax);
  g->badScaleMask = spx_bad_scale_mask(aMin, aMax, cMin, cMax, lMin, lMax, uMin, uMax, bMin, bMax);
  g->model->stats.badScaleMask = g->badScaleMask;

  g->objscale = 1.0;
  const int mode = g->scaleMode;
  if (mode > 0 && g->m > 0 && n > 0) {
    if (g->printLevel > 1) spx_log(g, "\nScaling LP data (c,A,b,l,u)...\n");
    log_ranges(g, "Or", aMin, aMax, cMin, cMax, bMin, bMax, lMin, lMax, uMin, uMax);
    int equil = 0, round = 0;
    if (mode == 1) equil = round = 1;
    else if (mode == 2) round = 1;
    else if (mode == 3) equil = 1;
    int rc = hyb_scaler(g, equil, round);
    if (rc < 0) return kx::kErrMemory;
    coemax(g, &aMin, &aMax);
    data_ranges(g, &cMin, &cMax, &bMin, &bMax, &lMin, &lMax, &uMin, &uMax);
    log_ranges(g, "Sc", aMin, aMax, cMin, cMax, bMin, bMax, lMin, lMax, uMin, uMax);
  }

  // Objective scaling, with or without scaling of A.
  double a = 0.0, b = 1e300;
  for (int j = 0; j < n; j++) a = std::max(a, std::fabs(g->objv[j]));
  const double ctol = (std::sqrt(a) + 1.0) * 1e-10;
  for (int j = 0; j < n; j++) {
    const double v = std::fabs(g->objv[j]);
    if (v > ctol) b = std::min(b, v);
  }
  if (a > 0.0 && b < 1e300) {
    double s = a <= 1e8 * b ? 1.0 / a : 1.0 / std::sqrt(a * b);
    while (s < 1e-6) s *= 10.0;
    if (mode <= 0 || s != 1.0) {
      g->objscale = s;
      for (int j = 0; j < n; j++) g->objv[j] *= s;
    }
    g->bigm *= a * s;
  }
  spx_debug(g, 1, "\nBadScale Measure: %d\n", g->badScaleMask);
  return 0;
}
