// ranges.cpp - sensitivity of an optimal basis: how far right-hand sides,
// costs and bounds may move before the basis stops being optimal.
//
// All quantities are in the model's own terms, through FTRAN and BTRAN of the
// live simplex state: basic values x_B = B^-1 (b - N x_N), the logical of row i
// s_i = b_i - a_i x with the bounds of its row, and the costs in minimisation
// form c' = sense * c.
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/kx.h"
#include "base/query.h"
#include "simplex/glp.h"

namespace {

constexpr double kInf = kx::kInfinity;
constexpr double kDropAlpha = 1e-9;   // entries of B^-1 a below this limit nothing
constexpr double kDropRow = 1e-9;     // entries of a tableau row below this are skipped

// The optimal point of the live basis in model terms.
struct Point {
  int n = 0, m = 0;
  std::vector<double> x;   // n + m values
  std::vector<double> lo, up;  // bounds of the n + m variables
  std::vector<int> stat;   // basis statuses (position for a basic variable)
  std::vector<double> d;   // reduced costs of c' (0 for basics)
  std::vector<double> y;   // duals of c'
};

int make_point(Model *model, GLP *g, Point &pt) {
  const int n = model->nVars, m = model->nCons;
  pt.n = n;
  pt.m = m;
  pt.x.assign(n + m, 0.0);
  pt.lo.resize(n + m);
  pt.up.resize(n + m);
  pt.stat.assign(g->cbas.begin(), g->cbas.end());
  for (int j = 0; j < n + m; j++) {
    kxi_var_bounds(model, j, &pt.lo[j], &pt.up[j]);
    const int st = pt.stat[j];
    if (st >= 0) continue;
    if (st == -1 && pt.lo[j] > -kInf) pt.x[j] = pt.lo[j];
    else if (st == -2 && pt.up[j] < kInf) pt.x[j] = pt.up[j];
    else pt.x[j] = j < n ? g->x[j] * g->cscale[j] : g->x[j] / g->rscale[j - n];
  }
  std::vector<double> r(m), xb(m), cb(m);
  for (int i = 0; i < m; i++) r[i] = model->rhs[i] - pt.x[n + i];
  for (int j = 0; j < n; j++)
    for (int k = model->Abeg[j]; k < model->Abeg[j] + model->Alen[j]; k++)
      r[model->Arow[k]] -= model->Acoef[k] * pt.x[j];
  KX_CALL(kxi_ftran_dense(g, r.data(), xb.data()));
  const double sense = model->objSense == -1 ? -1.0 : 1.0;
  for (int p = 0; p < m; p++) {
    const int j = kxi_basic_var(g, p);
    pt.x[j] = xb[p];
    cb[p] = j < n ? sense * model->cost[j] : 0.0;
  }
  pt.y.assign(m, 0.0);
  KX_CALL(kxi_btran_dense(g, cb.data(), pt.y.data()));
  pt.d.assign(n + m, 0.0);
  for (int j = 0; j < n; j++) {
    if (pt.stat[j] >= 0) continue;
    double dj = sense * model->cost[j];
    for (int k = model->Abeg[j]; k < model->Abeg[j] + model->Alen[j]; k++) dj -= pt.y[model->Arow[k]] * model->Acoef[k];
    pt.d[j] = dj;
  }
  for (int i = 0; i < m; i++)
    if (pt.stat[n + i] < 0) pt.d[n + i] = -pt.y[i];
  return 0;
}

// Limits of a move x_B(t) = x_B - t alpha (alpha = B^-1 a by position) that
// keeps every basic variable within its bounds: *inc for t > 0, *dec for t < 0.
void clsrngr(GLP *g, const Point &pt, const std::vector<double> &alpha, double *dec, double *inc) {
  double di = kInf, ii = kInf;
  for (int p = 0; p < pt.m; p++) {
    const double a = alpha[p];
    if (std::fabs(a) <= kDropAlpha) continue;
    const int v = kxi_basic_var(g, p);
    const double lo = pt.lo[v], up = pt.up[v], x = pt.x[v];
    if (lo <= -kInf && up >= kInf) continue;  // free: never blocks
    const double room_down = lo > -kInf ? std::max(0.0, x - lo) : kInf;
    const double room_up = up < kInf ? std::max(0.0, up - x) : kInf;
    // t > 0 moves x by -t a; t < 0 by +|t| a.
    if (a > 0) {
      if (room_down < kInf) ii = std::min(ii, room_down / a);
      if (room_up < kInf) di = std::min(di, room_up / a);
    } else {
      if (room_up < kInf) ii = std::min(ii, room_up / -a);
      if (room_down < kInf) di = std::min(di, room_down / -a);
    }
  }
  *dec = di;
  *inc = ii;
}

// B^-1 of column j of A (model terms, by position).
int ftran_column(Model *model, GLP *g, int j, std::vector<double> &alpha) {
  std::vector<double> a(model->nCons, 0.0);
  for (int k = model->Abeg[j]; k < model->Abeg[j] + model->Alen[j]; k++) a[model->Arow[k]] += model->Acoef[k];
  alpha.assign(model->nCons, 0.0);
  return kxi_ftran_dense(g, a.data(), alpha.data());
}

bool is_optimal(const Sol *s) {
  return s && (s->model_status == KX_STATUS_OPTIMAL || s->model_status == KX_STATUS_BASIC_OPTIMAL);
}

// Null checks, the model's verdict and an optimal live state; then the point.
int prepare(Model *model, double *dec, double *inc, GLP **g, Point &pt) {
  if (!model || !dec || !inc) return KXERR_ILLEGAL_NULL_POINTER;
  if (model->modelState == KX_STATUS_UNLOADED || model->cbLevel < 0) return KXERR_INFO_NOT_AVAILABLE;
  KX_CALL(kxi_ranges_prepare(model, g));
  return make_point(model, *g, pt);
}

void swap_for_max(const Model *model, double *dec, double *inc, int len) {
  if (model->objSense != -1) return;
  for (int k = 0; k < len; k++) std::swap(dec[k], inc[k]);
}

}  // namespace

int kxi_ranges_prepare(Model *model, GLP **out) {
  Sol *s = model->sol;
  if (!is_optimal(s)) return KXERR_INFO_NOT_AVAILABLE;
  const int bs = s->basic_status;
  if (bs != KX_STATUS_BASIC_OPTIMAL && bs != KX_STATUS_LOADED && !model->glp) return KXERR_INFO_NOT_AVAILABLE;
  GLP *g = kxi_live_glp(model);
  if (!g || g->stat != GLP_OPTIMAL || g->factorFailed || g->badEnd) {
    // No usable state (the presolve solved the model, or the state went): a
    // primal solve from the basis, without presolve and quietly.
    SplexPam *p = model->splexPam;
    const int pre = p->lpPreLevel, print = p->lpPrintLevel;
    p->lpPreLevel = 0;
    p->lpPrintLevel = 0;
    int status = 0;
    const int rc = KXoptimize(model, KX_METHOD_PSIMPLEX, &status);
    p->lpPreLevel = pre;
    p->lpPrintLevel = print;
    g = kxi_live_glp(model);
    if (rc || !g || g->stat != GLP_OPTIMAL) return KXERR_NUMERIC_INSTABILITY;
  }
  *out = g;
  return 0;
}

extern "C" KX_API int KXgetConstraintRanges(pModel model, double *padDec, double *padInc) {
  return kx::guard([&]() -> int {
    GLP *g = nullptr;
    Point pt;
    KX_CALL(prepare(model, padDec, padInc, &g, pt));
    const int m = model->nCons;
    std::vector<double> e(m, 0.0), alpha(m);
    for (int i = 0; i < m; i++) {
      // b_i + t moves x_B by t B^-1 e_i: the column -e_i.
      e[i] = -1.0;
      KX_CALL(kxi_ftran_dense(g, e.data(), alpha.data()));
      e[i] = 0.0;
      clsrngr(g, pt, alpha, &padDec[i], &padInc[i]);
    }
    return 0;
  });
}

extern "C" KX_API int KXgetBoundRanges(pModel model, double *padDec, double *padInc) {
  return kx::guard([&]() -> int {
    GLP *g = nullptr;
    Point pt;
    KX_CALL(prepare(model, padDec, padInc, &g, pt));
    const int n = model->nVars;
    std::vector<double> alpha;
    for (int j = 0; j < n; j++) {
      const int st = pt.stat[j];
      const double lo = pt.lo[j], up = pt.up[j], x = pt.x[j];
      if (st >= 0 || st == -3) {
        // The value's distance to each bound.
        padDec[j] = lo > -kInf ? std::max(0.0, x - lo) : kInf;
        padInc[j] = up < kInf ? std::max(0.0, up - x) : kInf;
        continue;
      }
      // Moving the bound it rests on moves x_j and, through B^-1 a_j, the basics.
      KX_CALL(ftran_column(model, g, j, alpha));
      double dec, inc;
      clsrngr(g, pt, alpha, &dec, &inc);
      const double width = lo > -kInf && up < kInf ? up - lo : kInf;
      if (st == -1) inc = std::min(inc, width);
      else dec = std::min(dec, width);
      padDec[j] = dec;
      padInc[j] = inc;
    }
    return 0;
  });
}

extern "C" KX_API int KXgetObjectiveRanges(pModel model, double *padDec, double *padInc) {
  return kx::guard([&]() -> int {
    GLP *g = nullptr;
    Point pt;
    KX_CALL(prepare(model, padDec, padInc, &g, pt));
    const int n = model->nVars, m = model->nCons;
    auto fixed = [&](int j) { return pt.lo[j] > -kInf && pt.lo[j] == pt.up[j]; };
    std::vector<double> e(m, 0.0), rho(m);
    for (int j = 0; j < n; j++) {
      const int st = pt.stat[j];
      if (st < 0) {
        const double d = pt.d[j];
        if (fixed(j)) {
          padDec[j] = padInc[j] = kInf;
        } else if (st == -1) {
          padDec[j] = std::max(0.0, d);
          padInc[j] = kInf;
        } else if (st == -2) {
          padDec[j] = kInf;
          padInc[j] = std::max(0.0, -d);
        } else {
          padDec[j] = padInc[j] = std::fabs(d);
        }
        continue;
      }
      // c'_j + t changes y by t rho (rho = B^-T e_p) and d_k by -t alpha_k.
      e[st] = 1.0;
      KX_CALL(kxi_btran_dense(g, e.data(), rho.data()));
      e[st] = 0.0;
      double dec = kInf, inc = kInf;
      auto ratio = [&](int k, double a) {
        if (std::fabs(a) <= kDropRow || fixed(k)) return;
        const int sk = pt.stat[k];
        const double d = pt.d[k];
        if (sk == -3) {
          dec = inc = 0.0;
        } else if (sk == -1) {  // d_k >= 0 must hold
          if (a > 0) inc = std::min(inc, std::max(0.0, d) / a);
          else dec = std::min(dec, std::max(0.0, d) / -a);
        } else {  // d_k <= 0 must hold
          if (a < 0) inc = std::min(inc, std::max(0.0, -d) / -a);
          else dec = std::min(dec, std::max(0.0, -d) / a);
        }
      };
      for (int k = 0; k < n; k++) {
        if (pt.stat[k] >= 0) continue;
        double a = 0.0;
        for (int q = model->Abeg[k]; q < model->Abeg[k] + model->Alen[k]; q++) a += rho[model->Arow[q]] * model->Acoef[q];
        ratio(k, a);
      }
      for (int i = 0; i < m; i++)
        if (pt.stat[n + i] < 0) ratio(n + i, rho[i]);
      padDec[j] = dec;
      padInc[j] = inc;
    }
    // The solver minimises c' = -c in a maximisation: its decrease is the cost's increase.
    swap_for_max(model, padDec, padInc, n);
    return 0;
  });
}
