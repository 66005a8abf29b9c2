// dual.cpp - the dual simplex: set-up, the choice of phase, the main loop, the
// checks at each factorisation (duals recomputed, boxed columns flipped to the
// side their reduced cost asks for, small infeasible costs shifted), the cost
// perturbation against dual degeneracy, the cutoff, and the end with its
// hand-over to the primal (stat 7) when the true costs leave the basis dual
// infeasible.
//
// Phase 1 minimises the sum of dual infeasibilities as an auxiliary problem
// solved by the phase-2 loop itself: right-hand side 0 and boxes [0,0] for
// boxed columns, [0,1] below-bounded, [-1,0] above-bounded and [-1000,1000]
// free ones.  Its optimal basis is dual feasible for the true bounds when the
// model is dual feasible at all.
//
// Phase 3, on request (KX_IPARAM_SPLEX_DUAL_PHASE 3), is the composite
// method: every bound is clamped to plus or minus bndinf, so every column is
// boxed and any basis is dual feasible after flips.  A run that ends with a
// nonbasic on such an artificial bound hands over to the primal.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "simplex/dual_int.h"

namespace dual {

namespace {

constexpr double kFreeBox = 1000.0;       // phase-1 box of a free column
constexpr double kPerturbBase = 5e-7;     // relative size of the cost perturbation
constexpr double kRaiseShare = 0.15;      // degenerate share of a window that raises it
constexpr int kMaxRaises = 2;             // tenfold raises at most
constexpr double kTieColumns = 100.0;     // columns per distinct cost that call for kTieScale
constexpr double kTieScale = 8.0;         // the larger perturbation of such models
constexpr double kShiftLimit = 1e-4;      // phase-1 leftovers up to this are shifted away
constexpr int kMaxRowRejects = 50;
// The fewest updates the fill advice allows before it asks for a refactorisation
// is twice this (or m^0.45 when that is more).  The advice asks as soon as it
// may on most bases, so this sets the interval below m = 3,800: at 101 updates
// the netlib models solve 3% faster (shifted geometric mean) than at 41, where
// factorising took 15 to 30% of the time of many.
constexpr int kFillMinimum = 50;
constexpr double kStartShiftLimit = 1e-5;  // infeasible costs at the start up to this are shifted

enum PhaseEnd : int { PE_OPTIMAL = 0, PE_STAT = 1, PE_ERROR = 2 };

double now_wall() { return kx_now().wall; }

// Internal objective of the current point with the working costs.
double work_objective(const Work &w) {
  const GLP *g = w.g;
  double s = 0.0;
  for (int j = 0; j < g->n; j++) s += w.cost[j] * g->x[j];
  return s;
}

double true_objective(const GLP *g) {
  double s = 0.0;
  for (int j = 0; j < g->n; j++) s += g->objv[j] * g->x[j];
  return s;
}

// Nonbasic j to the bound its reduced cost asks for.
void place_dual(Work &w, int j) {
  GLP *g = w.g;
  const double lo = g->clb[j], up = g->cub[j];
  const bool hl = has_lo(g, j), hu = has_up(g, j);
  int st;
  if (hl && hu) {
    if (lo == up) st = -1;
    else if (g->rdc[j] > g->ceps) st = -1;
    else if (g->rdc[j] < -g->ceps) st = -2;
    else st = g->cbas[j] == -2 ? -2 : -1;
  } else if (hl) {
    st = -1;
  } else if (hu) {
    st = -2;
  } else {
    st = -3;
  }
  g->cbas[j] = st;
  g->x[j] = st == -1 ? lo : (st == -2 ? up : 0.0);
}

void rebuild_infeas(Work &w) {
  GLP *g = w.g;
  int cnt = 0;
  double sum = 0.0, mx = 0.0;
  w.infList.clear();
  w.infAt.assign(g->m, -1);
  for (int p = 0; p < g->m; p++) {
    const double v = violation2(g, g->rbas[p]);
    set_infeas(w, p, v);
    if (v > 0) {
      cnt++;
      const double e = std::sqrt(v);
      sum += e;
      mx = std::max(mx, e);
    }
  }
  g->npinf = cnt;
  g->sumpinf = sum;
  g->maxpinf = mx;
}

// Dual infeasibility of nonbasic j for its bounds and status.
double dual_viol(const GLP *g, int j) {
  const int st = g->cbas[j];
  if (st >= 0 || g->clb[j] == g->cub[j]) return 0.0;
  const double d = g->rdc[j];
  const bool hl = has_lo(g, j), hu = has_up(g, j);
  if (hl && hu) return 0.0;  // boxed: fixed by a flip
  if (hl) return d < 0 ? -d : 0.0;
  if (hu) return d > 0 ? d : 0.0;
  return std::fabs(d);
}

// Count and measure the infeasible costs of the columns that cannot flip.
int count_dual_infeas(Work &w, double *maxv) {
  GLP *g = w.g;
  int c = 0;
  double mx = 0.0, sum = 0.0;
  for (int j = 0; j < g->nm; j++) {
    const double v = dual_viol(g, j);
    if (v > g->ceps) {
      c++;
      sum += v;
      mx = std::max(mx, v);
    }
  }
  g->ndinf = g->ncinf = c;
  g->sumdinf = sum;
  g->maxdinf = mx;
  if (maxv) *maxv = mx;
  return c;
}

// Largest dual violation once the scaling is taken off, relative to the largest
// cost of the model (at least 1); the objective scaling is taken off as well.
double unscaled_dual_viol(const GLP *g) {
  double mx = 0.0;
  for (int j = 0; j < g->nm; j++) {
    const double v = dual_viol(g, j);
    if (v == 0.0) continue;
    const double e = j < g->n ? v / g->cscale[j] : v * g->rscale[j - g->n];
    mx = std::max(mx, e);
  }
  return mx / spx_unscaled_cost_size(g);
}

int lu_rc(int rc) { return rc == SPX_NOMEM ? SPX_NOMEM : (rc ? SPX_NUMERIC : 0); }

// Factorise, recompute the duals and the basic values, correct the signs of the
// reduced costs, and rebuild the infeasibilities.  With allowShift the
// infeasible costs of columns that cannot flip are shifted to zero; without it
// they are counted in g->ncinf.
int refresh(Work &w, bool allowShift) {
  GLP *g = w.g;
  int rc = 0;
  if (w.factorFresh) {
    w.factorFresh = false;  // the factors of the start serve
  } else {
    rc = spx_factor(g);
    if (rc) return rc;
  }
  if (g->recompute) {
    // The basis was repaired: the weights belong to another basis.
    g->recompute = 0;
    init_weights(w, false);
  }
  g->wfact = WF_NONE;
  w.sinceFactor = 0;
  if (w.nRowRej) {
    std::fill(w.rowRej.begin(), w.rowRej.end(), 0);
    w.nRowRej = 0;
  }
  rc = spx_compute_duals(g, w.cost);
  if (rc) return lu_rc(rc);
  for (int j = 0; j < g->nm; j++) {
    if (g->cbas[j] >= 0) continue;
    const bool hl = has_lo(g, j), hu = has_up(g, j);
    if (hl && hu) {
      place_dual(w, j);
      continue;
    }
    if (allowShift) {
      const double v = dual_viol(g, j);
      if (v > g->ceps) {
        w.cost[j] -= g->rdc[j];
        g->rdc[j] = 0.0;
        w.shifted = true;
      }
    }
  }
  count_dual_infeas(w, nullptr);
  rc = spx_compute_xb(g);
  if (rc) return lu_rc(rc);
  rebuild_infeas(w);
  return 0;
}

// The scale of the cost perturbation.  When the nonzero costs share few values,
// a hundred columns or more per distinct value on average (assignment models,
// qap12 and qap15 among netlib's), ties among the reduced costs are the rule, and
// the usual perturbation separates them too little: the dual then takes long
// runs of tiny steps.  Eight times the usual size solves qap12 in 60,000
// iterations instead of 166,000, and qap15 in 304,000 where it had not ended
// after 759,000; the other twelve netlib models of this kind keep their time
// (shifted geometric mean 0.96, best of three).
double cost_tie_scale(const GLP *g) {
  std::vector<double> c;
  for (int j = 0; j < g->n; j++)
    if (g->objv[j] != 0.0) c.push_back(g->objv[j]);
  if (c.empty()) return 1.0;
  std::sort(c.begin(), c.end());
  const double distinct = static_cast<double>(std::unique(c.begin(), c.end()) - c.begin());
  return static_cast<double>(c.size()) >= kTieColumns * distinct ? kTieScale : 1.0;
}

// Random cost changes of relative size `factor` times the base, each in the
// direction that its column's reduced cost may move without losing dual
// feasibility.  With `nonbasicOnly` the duals stay as they are and the reduced
// costs take the same changes, so a run can raise the perturbation midway.
void perturb_costs(Work &w, double factor = 1.0, bool nonbasicOnly = false) {
  GLP *g = w.g;
  double cmax = 0.0;
  for (int j = 0; j < g->n; j++) cmax = std::max(cmax, std::fabs(g->objv[j]));
  // The tie scale sizes the full perturbation only; a raise (nonbasicOnly)
  // adds 10 or 100 times the usual size on top of what is in place.
  double scale = factor;
  if (!nonbasicOnly) {
    if (w.pertScale == 0.0) w.pertScale = cost_tie_scale(g);
    scale = factor * w.pertScale;
  }
  const double base = scale * kPerturbBase * std::max(1.0, std::min(cmax, 1e3));
  for (int j = 0; j < g->n; j++) {
    if (nonbasicOnly && g->cbas[j] >= 0) continue;
    const bool hl = has_lo(g, j), hu = has_up(g, j);
    if (hl && hu && g->clb[j] == g->cub[j]) continue;
    if (!hl && !hu) continue;
    const double r = static_cast<double>(std::rand()) / RAND_MAX;
    const double xi = base * (1.0 + std::fabs(g->objv[j])) * (1.0 + r);
    double sgn;
    if (hl && !hu) sgn = 1.0;
    else if (hu && !hl) sgn = -1.0;
    else sgn = g->cbas[j] == -2 ? -1.0 : 1.0;
    w.cost[j] += sgn * xi;
    if (nonbasicOnly) g->rdc[j] += sgn * xi;
  }
  w.perturbed = true;
  if (nonbasicOnly) spx_debug(g, 1, "\nRaising dual perturbation (x%g).\n", factor);
  else spx_debug(g, 1, "\nStarting dual perturbation due to degeneracy.\n");
}

void remove_cost_changes(Work &w) {
  GLP *g = w.g;
  for (int j = 0; j < g->nm; j++) w.cost[j] = g->objv[j];
  w.perturbed = false;
  w.shifted = false;
}

// The true bounds and right-hand side are kept while phase 1 or 3 works on
// others, and swapped back at its end.
void keep_true_data(Work &w) {
  const GLP *g = w.g;
  w.trueLb = g->clb;
  w.trueUb = g->cub;
  w.trueRhs = g->rhs1;
}

void restore_true_data(Work &w) {
  GLP *g = w.g;
  g->clb.swap(w.trueLb);
  g->cub.swap(w.trueUb);
  g->rhs1.swap(w.trueRhs);
}

// The auxiliary boxes of phase 1 over the true bounds.
void enter_phase1(Work &w) {
  GLP *g = w.g;
  keep_true_data(w);
  for (int j = 0; j < g->nm; j++) {
    const bool hl = has_lo(g, j), hu = has_up(g, j);
    double lo, up;
    if (hl && hu) lo = up = 0.0;
    else if (hl) lo = 0.0, up = 1.0;
    else if (hu) lo = -1.0, up = 0.0;
    else lo = -kFreeBox, up = kFreeBox;
    g->clb[j] = lo;
    g->cub[j] = up;
  }
  std::fill(g->rhs1.begin(), g->rhs1.end(), 0.0);
  w.phase = 1;
  g->dphase = 1;
}

void leave_phase1(Work &w) {
  GLP *g = w.g;
  if (w.phase != 1) return;
  restore_true_data(w);
  w.phase = 2;
  g->dphase = 2;
}

// Every bound clamped to plus or minus bndinf; the true ones are kept.
void enter_phase3(Work &w) {
  GLP *g = w.g;
  keep_true_data(w);
  for (int j = 0; j < g->nm; j++) {
    g->clb[j] = std::max(g->clb[j], -g->bndinf);
    g->cub[j] = std::min(g->cub[j], g->bndinf);
  }
  w.phase = 3;
  g->dphase = 3;
}

// Whether nonbasic j rests on a bound that phase 3 made up.
bool at_artificial_bound(const Work &w, int j) {
  const GLP *g = w.g;
  const int st = g->cbas[j];
  return ((st == -1 || st == -4) && w.trueLb[j] <= -g->bndinf) || (st == -2 && w.trueUb[j] >= g->bndinf);
}

void log_line(Work &w) {
  GLP *g = w.g;
  if (!g->model->logFunc || g->printLevel <= 0) return;
  if (g->nfact % 31 == 1)
    spx_log(g, "\n%8s %6s %18s %17s %17s %7s %8s", "Iter", "Deg(%)", "Dual obj", "Prim inf", "Dual inf",
            "Ninf", "Time");
  const double deg = g->iter > 0 ? 100.0 * g->ndeg / g->iter : 0.0;
  const double obj = g->sense * work_objective(w) / g->objscale + g->objconst;
  spx_log(g, "\n%8g %6.2f %18.10e %17.8e %17.8e %7d %8.2f", g->iter + g->iterBase, deg, obj, g->sumpinf,
          g->sumdinf, g->npinf, now_wall() - g->started.wall);
}

// Cutoff: true when the dual bound proves that no point beats the cutoff.
bool cutoff_reached(Work &w, int *rc) {
  GLP *g = w.g;
  *rc = 0;
  if (!g->useCutoff || w.phase == 1) return false;
  const double lim = g->sense * (g->cutoff - g->objconst) * g->objscale;
  const double tol = 1e-9 * (1.0 + std::fabs(lim));
  if (work_objective(w) <= lim + tol) return false;
  if (w.perturbed || w.shifted) {
    // Only the true costs give a valid bound.
    remove_cost_changes(w);
    *rc = refresh(w, false);
    if (*rc) return false;
    if (g->ncinf > 0) return false;
  }
  if (w.phase == 3) {
    // A column on a made-up bound makes the objective no bound at all.
    for (int j = 0; j < g->nm; j++)
      if (g->cbas[j] < 0 && at_artificial_bound(w, j)) return false;
  }
  g->dualobj = true_objective(g);
  if (g->dualobj > lim + tol) {
    spx_debug(g, 1, "\n stop on a cutoff=%e ", g->cutoff);
    return true;
  }
  return false;
}

// Limits and the callback; true when the run must stop (stat set).
bool limits_hit(GLP *g, int *rc) {
  *rc = 0;
  if (g->itrlmt >= 0 && g->iter + g->iterBase >= g->itrlmt) {
    g->stat = GLP_ITERLIMIT;
    spx_debug(g, 2, "\nWarning: iteration limit (stat = %d).", g->stat);
    return true;
  }
  const int tl = timelapsed(g->model, g->started, KX_CALLBACK_DUAL, 0, g->timelimit);
  if (tl > 0) {
    g->stat = GLP_TIMELIMIT;
    spx_debug(g, 2, "\nWarning: time limit (stat = %d).", g->stat);
    return true;
  }
  if (tl < 0) {
    g->stat = GLP_USERBREAK;
    spx_debug(g, 2, "\nWarning: user break (stat = %d).", g->stat);
    *rc = SPX_BREAK;
    return true;
  }
  return false;
}

// Apply the flips of the last ratio test to x_N and x_B.
int apply_flips(Work &w) {
  GLP *g = w.g;
  if (w.flipList.empty()) return 0;
  const int n = g->n, m = g->m;
  SpxVec &in = w.dcol, &out = g->work;
  in.clear(m);
  out.clear(m);
  int cnt = 0;
  std::vector<char> &mk = g->mark;  // n+m marks; rows use the first m
  auto add = [&](int i, double v) {
    if (!mk[i]) {
      mk[i] = 1;
      in.ind[cnt++] = i;
    }
    in.val[i] += v;
  };
  for (int j : w.flipList) {
    double delta;
    if (g->cbas[j] == -1) {
      delta = g->cub[j] - g->clb[j];
      g->cbas[j] = -2;
      g->x[j] = g->cub[j];
    } else {
      delta = g->clb[j] - g->cub[j];
      g->cbas[j] = -1;
      g->x[j] = g->clb[j];
    }
    if (j >= n) {
      add(j - n, delta);
    } else {
      for (int k = g->colBeg[j]; k < g->colBeg[j] + g->colLen[j]; k++) add(g->rowInd[k], g->colVal[k] * delta);
    }
  }
  for (int k = 0; k < cnt; k++) mk[in.ind[k]] = 0;
  in.count = cnt;
  g->nflips += static_cast<int>(w.flipList.size());
  const int rc = spx_ftran(g, in, out, 0);
  if (rc) return rc;
  for_each(out, m, [&](int p, double v) {
    const int j = g->rbas[p];
    g->x[j] -= v;
    set_infeas(w, p, violation2(g, j));
  });
  out.clear(m);
  return 0;
}

// Whether row r of B^-1 (rho) proves that basic r cannot reach its violated
// bound (below it for s < 0, above for s > 0): recomputed from the right-hand
// side and the pivot row over the nonbasics' bounds, without the running
// basic values, so that an error in those cannot end the run "infeasible".
bool ray_proves(const Work &w, const SpxVec &rho, int r, int s) {
  const GLP *g = w.g;
  const double inf = g->infin;
  long double base = 0.0L;
  double size = 0.0;
  for_each(rho, g->m, [&](int i, double v) {
    base += static_cast<long double>(v) * g->rhs1[i];
    size = std::max(size, std::fabs(v * g->rhs1[i]));
  });
  // x_r = base - sum over nonbasic j of alpha_rj x_j: its most in the
  // direction of the violated bound.
  long double best = base;
  const SpxVec &row = g->pivrow;
  // Phase 3's clamps are no bounds of the model: the proof takes the true ones.
  const double *lb = w.phase == 3 ? w.trueLb.data() : g->clb.data();
  const double *ub = w.phase == 3 ? w.trueUb.data() : g->cub.data();
  for (int k = 0; k < row.count; k++) {
    const int j = row.ind[k];
    const double a = row.val[j];
    const double toward = s * a;  // the way x_j moves x_r toward the violated bound
    const double bnd = toward > 0 ? ub[j] : lb[j];
    if (std::fabs(bnd) >= inf) {
      // An open column: the ratio test passed it over as a pivot below its
      // tolerance, which the proof follows.
      if (std::fabs(a) <= w.alphaTol) continue;
      return false;
    }
    best += static_cast<long double>(-a) * bnd;
    size = std::max(size, std::fabs(a * bnd));
  }
  const int jr = g->rbas[r];
  const double target = s < 0 ? lb[jr] : ub[jr];
  const double gap = s < 0 ? static_cast<double>(target - best) : static_cast<double>(best - target);
  return gap > g->reps * (1.0 + std::fabs(target)) + 1e-9 * size;
}

// One phase of the loop on the data in g (phase-1 boxes or the true bounds).
// PE_OPTIMAL: no primal infeasibility left with a fresh factorisation and the
// working costs; PE_STAT: g->stat was set; PE_ERROR: *err holds a result.
int run_phase(Work &w, int *err) {
  GLP *g = w.g;
  const int m = g->m;
  *err = 0;
  int sinceCheck = 0;
  int retries = 0;
  const double iterCap = 50.0 * (g->n + m) + 100000.0;
  double runIters = 0;
  for (;;) {
    if (g->wfact != WF_NONE) {
      int rc = refresh(w, w.phase != 1);
      if (rc) {
        *err = rc;
        return PE_ERROR;
      }
      log_line(w);
      if (cutoff_reached(w, &rc)) {
        g->stat = GLP_CUTOFF;
        return PE_STAT;
      }
      if (rc) {
        *err = rc;
        return PE_ERROR;
      }
    }
    if (++sinceCheck >= 8) {
      sinceCheck = 0;
      int rc;
      if (limits_hit(g, &rc)) {
        *err = rc;
        return rc ? PE_ERROR : PE_STAT;
      }
      if (g->useCutoff && w.phase != 1) {
        if (cutoff_reached(w, &rc)) {
          g->stat = GLP_CUTOFF;
          return PE_STAT;
        }
        if (rc) {
          *err = rc;
          return PE_ERROR;
        }
      }
    }
    if (runIters > iterCap) {
      g->numerr++;
      g->stat = GLP_SWITCH;
      return PE_STAT;
    }

    const int r = choose_row(w);
    if (r < 0) {
      if (w.sinceFactor > 0) {
        g->wfact = WF_CONFIRM;
        continue;
      }
      if (w.nRowRej > 0) {
        spx_debug(g, 1, "\nrejected pivot exist. psize_=%d, wfact=%d, stat=%d", w.nRowRej, g->wfact, g->stat);
        g->numerr++;
        g->stat = GLP_SWITCH;
        return PE_STAT;
      }
      return PE_OPTIMAL;
    }
    const int jr = g->rbas[r];
    const double xr = g->x[jr];
    const int s = xr < g->clb[jr] ? -1 : 1;
    const double delta = s < 0 ? g->clb[jr] - xr : xr - g->cub[jr];

    // Row r of the inverse.
    SpxVec &rho = g->binvi;
    rho.clear(m);
    g->work.clear(m);
    g->work.ind[0] = r;
    g->work.val[r] = 1.0;
    g->work.count = 1;
    int rc = spx_btran(g, g->work, rho);
    if (rc) {
      *err = lu_rc(rc);
      return PE_ERROR;
    }
    double beta = 0.0;
    for_each(rho, m, [&](int, double v) { beta += v * v; });
    g->pivnorm = beta;
    if (w.pricing == DP_STEEPEST) {
      const double old = g->dwts[r];
      g->dwts[r] = beta;
      if (old < 0.25 * beta && retries < 3) {
        // The weight was far too small: the row's score was overstated.
        retries++;
        rho.clear(m);
        continue;
      }
    }
    retries = 0;

    pivot_row(w, s, rho);
    double t = 0.0;
    const int q = ratio_test(w, s, delta, &t);
    if (q < 0) {
      if (w.sinceFactor > 0) {
        rho.clear(m);
        g->wfact = WF_CONFIRM;
        continue;
      }
      if (w.phase != 1 && ray_proves(w, rho, r, s)) {
        // No column can make row r feasible: a dual ray.
        g->ray.assign(m, 0.0);
        for_each(rho, m, [&](int i, double v) { g->ray[i] = s * v; });
        g->rayLen = m;
        rho.clear(m);
        spx_debug(g, 1, "\n A dual ray is found, primal is infeasible\n");
        g->stat = GLP_INFEASIBLE;
        return PE_STAT;
      }
      rho.clear(m);
      w.rowRej[r] = 1;
      if (++w.nRowRej > kMaxRowRejects) {
        g->numerr++;
        g->stat = GLP_SWITCH;
        return PE_STAT;
      }
      continue;
    }

    // The entering column.
    SpxVec &col = g->pivcol;
    col.clear(m);
    spx_load_column(g, q, g->work);
    rc = spx_ftran(g, g->work, col, 1);
    if (rc) {
      *err = lu_rc(rc);
      return PE_ERROR;
    }
    const double alpha = col.val[r];
    const double alphaRow = g->pivrow.val[q];
    const double diff = std::fabs(alpha - alphaRow);
    if (std::fabs(alpha) < 1e-11 || diff > 1e-7 * std::max(1.0, std::fabs(alpha)) ||
        alpha * alphaRow <= 0) {
      spx_debug(g, 2, "\nPivot mismatch: col %.6e row %.6e (q=%d r=%d)", alpha, alphaRow, q, r);
      col.clear(m);
      rho.clear(m);
      if (w.sinceFactor > 0) {
        g->wfact = WF_ACCURACY;
      } else {
        w.rowRej[r] = 1;
        if (++w.nRowRej > kMaxRowRejects) {
          g->numerr++;
          g->stat = GLP_SWITCH;
          return PE_STAT;
        }
      }
      continue;
    }

    // tau = B^-1 rho for the steepest-edge update (rho is used up); the
    // update reads it only where the entering column has entries.
    if (w.pricing == DP_STEEPEST) {
      w.tau.clear(m);
      if (col.count >= 0)
        rc = spx_ftran_some(g, rho, col.ind.data(), col.count, w.tau);
      else
        rc = spx_ftran(g, rho, w.tau, 0);
      if (rc) {
        *err = lu_rc(rc);
        return PE_ERROR;
      }
    } else {
      rho.clear(m);
    }

    // Duals.
    double theta = g->rdc[q] / alphaRow;
    if (t < 0 || theta * s < 0) {
      // The entering cost is infeasible within the tolerance: shift it to 0.
      w.cost[q] -= g->rdc[q];
      g->rdc[q] = 0.0;
      w.shifted = true;
      theta = 0.0;
    }
    {
      const SpxVec &row = g->pivrow;
      double *d = g->rdc.data();
      if (theta != 0.0)
        for (int k = 0; k < row.count; k++) {
          const int j = row.ind[k];
          d[j] -= theta * row.val[j];
        }
      d[q] = 0.0;
      d[jr] = -theta;
    }
    if (theta == 0.0) {
      g->ndeg++;
      w.consecDegen++;
    } else {
      w.consecDegen = 0;
    }

    // Flips, then the primal step.
    rc = apply_flips(w);
    if (rc) {
      *err = lu_rc(rc);
      return PE_ERROR;
    }
    // The basic variables move along the column, in the pass that updates the
    // weights: the leaving one to its bound, and its position's violation is
    // that of q from now on.  (The column holds r: its pivot is not negligible.)
    const double bound = s < 0 ? g->clb[jr] : g->cub[jr];
    const double thetaP = (g->x[jr] - bound) / alpha;
    g->x[q] += thetaP;
    update_weights(w, r, alpha, [&](int p, double a) {
      if (p == r) {
        g->x[jr] = bound;
        set_infeas(w, r, violation2(g, q));
        return;
      }
      const int j = g->rbas[p];
      g->x[j] -= thetaP * a;
      set_infeas(w, p, violation2(g, j));
    });

    // Basis change.
    g->rbas[r] = q;
    g->cbas[q] = r;
    g->cbas[jr] = (s < 0 || g->clb[jr] == g->cub[jr]) ? -1 : -2;
    g->pivi = r;
    g->pivj = q;
    g->mrat = thetaP;
    g->smax = std::fabs(alpha);

    int luStat = 0;
    rc = KXI_lu_update(g->lu, r, alpha, 0, &luStat);
    col.clear(m);
    if (w.pricing == DP_STEEPEST) w.tau.clear(m);
    if (rc == KXI_LU_ERR_MEMORY) {
      *err = SPX_NOMEM;
      return PE_ERROR;
    }
    g->iter++;
    runIters++;
    g->nupdates++;
    w.sinceFactor++;
    if (luStat == 1) g->wfact = WF_SINGULAR;
    else if (luStat == 4 || luStat == 2) g->wfact = WF_REFUSED;
    else if (w.sinceFactor >= g->refactfrq) g->wfact = WF_LIMIT;
    else if (slu_get_wfact(g->lu->slu, g->luPam.maxUpdates, kFillMinimum) == 10) g->wfact = WF_FILL;
    w.alphaTol = w.sinceFactor < 10 ? 1e-9 : (w.sinceFactor < 20 ? 3e-8 : 1e-7);

    // Degeneracy that the perturbation does not break: when most steps of a
    // window are degenerate, the perturbation grows tenfold (twice at most).
    if (g->iter - w.winIter >= std::max(200, m / 4)) {
      const double share = static_cast<double>(g->ndeg - w.winDeg) / (g->iter - w.winIter);
      if (w.perturbed && w.phase != 1 && w.pertRemovals == 0 && w.raises < kMaxRaises && share > kRaiseShare) {
        w.raises++;
        perturb_costs(w, std::pow(10.0, w.raises), true);
      }
      w.winIter = g->iter;
      w.winDeg = g->ndeg;
    }
    // Degeneracy: perturb the costs once a run of steps makes no progress.
    if (!w.perturbed && w.consecDegen > std::max(50, m / 20) && w.pertRemovals == 0) {
      perturb_costs(w);
      if (g->wfact == WF_NONE) g->wfact = WF_PERTEND;
      w.consecDegen = 0;
    }
  }
}

// Largest primal violation of the basics once the scaling is taken off.
double unscaled_primal_viol(const GLP *g) {
  double mx = 0.0;
  for (int p = 0; p < g->m; p++) {
    const int j = g->rbas[p];
    double e = 0.0;
    if (g->x[j] < g->clb[j]) e = g->clb[j] - g->x[j];
    else if (g->x[j] > g->cub[j]) e = g->x[j] - g->cub[j];
    if (e == 0.0) continue;
    e = j < g->n ? e * g->cscale[j] : e / g->rscale[j - g->n];
    mx = std::max(mx, e);
  }
  return mx;
}

bool tighten_if_needed(Work &w) {
  GLP *g = w.g;
  if (w.tightenings >= 3) return false;
  const double gs = spx_dual_gap_share(g, g->sense * work_objective(w) / g->objscale + g->objconst);
  if (!spx_tighten(g, unscaled_primal_viol(g), unscaled_dual_viol(g), gs)) return false;
  w.tightenings++;
  return true;
}

int read_pricing(const GLP *g) {
  switch (g->dpricing) {
    case 0: return DP_DANTZIG;
    case 3: return DP_DEVEX;
    case 4: return DP_ROWCOUNT;
    default: return DP_STEEPEST;
  }
}

// Whether to perturb at the start: many nonbasic columns whose reduced cost is 0.
bool degenerate_start(const GLP *g) {
  int zero = 0, nb = 0;
  for (int j = 0; j < g->n; j++) {
    if (g->cbas[j] >= 0 || g->clb[j] == g->cub[j]) continue;
    nb++;
    if (std::fabs(g->rdc[j]) <= 10 * g->ceps) zero++;
  }
  return zero > std::max(10, nb / 20);
}

// Whether a cold start is better left to the primal: with every nonbasic at
// the bound it starts from, the slack basis already satisfies every row, and
// only a few costs, at most one per five rows, have the wrong sign for their
// column's place.  The dual would first flip those columns and so give up a
// feasible point that the primal improves from at once (netlib's grow models
// start so: the dual takes twice the primal's iterations there).  With many
// wrong costs against few rows, as in fit1d and fit2d, the flips are the
// dual's strength: there it is ten to sixty times faster.  The reduced costs
// must be those of the start: rdc holds them.
bool primal_start_is_better(Work &w) {
  GLP *g = w.g;
  if (spx_compute_xb(g) != 0) return false;
  int rowsOff = 0;
  spx_primal_infeas(g, &rowsOff, nullptr);
  if (rowsOff > 0) return false;
  const int wrong = spx_wrong_costs(g);
  return wrong > 0 && 5 * wrong <= g->m;
}

int run(Work &w) {
  GLP *g = w.g;
  const SplexPam *pam = g->model->splexPam;
  const int n = g->n, m = g->m, nm = g->nm;
  w.m = m;
  w.n = n;
  w.nm = nm;
  w.pricing = read_pricing(g);
  w.longStep = pam->dRatio == 1 || pam->dRatio == 2;
  w.cost = g->objv;
  w.infeas.assign(m, 0.0);
  w.infAt.assign(m, -1);
  w.infList.clear();
  w.rowRej.assign(m, 0);
  w.tau.resize(m);
  w.dcol.resize(m);
  g->useCutoff = pam->useCutoffVal;
  g->cutoff = g->model->cutoffVal;
  if (g->mark.size() < static_cast<size_t>(nm)) g->mark.assign(nm, 0);

  // Bounds perturbed by an earlier primal run go back first.
  if (g->pert) spx_remove_perturbation(g);
  for (int j = 0; j < nm; j++)
    if (g->cbas[j] < 0) spx_place_nonbasic(g, j);

  int rc = spx_factor(g);
  if (rc) return rc;
  g->recompute = 0;
  g->wfact = WF_NONE;
  const bool weightsKept = g->dwts.size() == static_cast<size_t>(m) && g->dwtsHead == g->rbas;
  if (!weightsKept) init_weights(w, !g->freshStart && m <= 5000);

  const int forced = pam->dualPhase;
  if (forced == 3) enter_phase3(w);
  rc = spx_compute_duals(g, w.cost);
  if (rc) return lu_rc(rc);
  const bool warm = g->iter > 0 || !g->freshStart;
  // (Not under a cutoff: the primal cannot stop on one.)
  if (!warm && pam->dpSwitch && forced == 0 && !g->useCutoff && primal_start_is_better(w)) {
    spx_debug(g, 1, "\nThe starting basis is primal feasible: switching to primal.");
    g->stat = GLP_SWITCH;
    g->leapAtStart = 1;
    return 0;
  }
  if (!warm && degenerate_start(g)) {
    perturb_costs(w);
    rc = spx_compute_duals(g, w.cost);
    if (rc) return lu_rc(rc);
  }
  double maxInf = 0.0;
  const int ninf = count_dual_infeas(w, &maxInf);
  spx_debug(g, 1, "\nEntering dual simplex.  (LP=%d, m=%d, n=%d, nonz=%lld, stat = %d),", 1, m, n,
            static_cast<long long>(g->nonz), g->stat);
  spx_debug(g, 1, "\nFeasibility tolerances. (Reps=%e, Ceps=%e, dphase=%d, dsim_ratio_type=%d),", g->reps,
            g->ceps, forced, pam->dRatio);

  // A few small infeasible costs, as a basis from an earlier solve on other
  // scaling leaves them, are shifted away rather than worth a phase 1.
  const bool phase1 = forced == 1 || (ninf > 0 && (maxInf > kStartShiftLimit || ninf > std::max(10, m / 100)));
  if (ninf > 0 && !phase1) g->wfact = WF_CHECK;
  if (phase1) {
    spx_debug(g, 1, "\nPhase 1 stated:");
    enter_phase1(w);
    for (int j = 0; j < nm; j++)
      if (g->cbas[j] < 0) place_dual(w, j);
    g->wfact = WF_CHECK;
    int err = 0;
    const int pe = run_phase(w, &err);
    leave_phase1(w);
    for (int j = 0; j < nm; j++)
      if (g->cbas[j] < 0) place_dual(w, j);
    if (pe == PE_ERROR) return err;
    if (pe == PE_STAT) {
      // Limits: the point must be one of the true problem again.
      rc = spx_compute_xb(g);
      return rc ? lu_rc(rc) : 0;
    }
    // Phase 1 done: infeasible costs left over are either noise (shift) or
    // show a model without a dual feasible point.
    rc = refresh(w, false);
    if (rc) return rc;
    double mx = 0.0;
    if (count_dual_infeas(w, &mx) > 0) {
      if (mx > kShiftLimit) {
        spx_debug(g, 1, "\nDual phase 1 ends infeasible (ncinf=%d, max=%e)", g->ncinf, mx);
        g->stat = pam->dpSwitch ? GLP_SWITCH : GLP_DUALRAY;
        return 0;
      }
      g->wfact = WF_CHECK;  // the next refresh shifts them away
    }
  } else {
    for (int j = 0; j < nm; j++)
      if (g->cbas[j] < 0) place_dual(w, j);
    g->wfact = WF_CHECK;
    w.factorFresh = true;
  }
  if (w.phase != 3) {
    w.phase = 2;
    g->dphase = 2;
    spx_debug(g, 1, "\nPhase 2 started:");
  }

  for (;;) {
    int err = 0;
    const int pe = run_phase(w, &err);
    if (pe == PE_ERROR) return err;
    if (pe == PE_STAT) return 0;
    // Optimal with the working costs.  The tolerances hold in scaled terms;
    // where the unscaled point is off by more than the caller allows, they
    // tighten and the run goes on.
    if (tighten_if_needed(w)) continue;
    if (!w.perturbed && !w.shifted) {
      g->stat = GLP_OPTIMAL;
      return 0;
    }
    spx_debug(g, 1, "\nEnding perturbation. psize_=%d, wfact=%d, stat=%d, npinf=%d", 0, g->wfact, g->stat,
              g->npinf);
    remove_cost_changes(w);
    w.pertRemovals++;
    rc = refresh(w, false);
    if (rc) return rc;
    if (g->ncinf > 0 && unscaled_dual_viol(g) <= g->cepsUser) g->ncinf = 0;
    if (g->ncinf > 0) {
      // The true costs are infeasible for some columns that cannot flip: the
      // primal finishes from this basis.
      if (pam->dpSwitch || w.pertRemovals > 3) {
        g->stat = GLP_SWITCH;
        return 0;
      }
      g->wfact = WF_CHECK;  // shift again and go on
      continue;
    }
    if (g->npinf == 0 && tighten_if_needed(w)) continue;
    if (g->npinf == 0) {
      g->stat = GLP_OPTIMAL;
      return 0;
    }
    if (w.pertRemovals > 3) {
      g->stat = GLP_SWITCH;
      return 0;
    }
    // Flips made rows infeasible: go on with the true costs.
  }
}

}  // namespace

}  // namespace dual

int dsimplex(GLP *g) {
  g->method = 1;
  g->stat = GLP_RUNNING;
  g->rayLen = 0;
  dual::Work w;
  w.g = g;
  int rc;
  try {
    rc = dual::run(w);
  } catch (const std::bad_alloc &) {
    rc = SPX_NOMEM;
  }
  bool artificial = false;
  if (w.phase == 3) {
    for (int j = 0; j < g->nm; j++)
      if (g->cbas[j] < 0 && dual::at_artificial_bound(w, j)) {
        artificial = true;
        g->cbas[j] = -1;  // placed below by the true bounds
      }
    // A nonbasic on a made-up bound: the point is not one of the model, and
    // the primal finishes from this basis.
    if (artificial && rc == 0 &&
        (g->stat == GLP_OPTIMAL || g->stat == GLP_INFEASIBLE || g->stat == GLP_UNBOUNDED || g->stat == GLP_SWITCH)) {
      g->stat = GLP_SWITCH;
      spx_debug(g, 1, "\nSome nonbasics are at artifical bounds. (stat = %d)", g->stat);
    }
  }
  if (w.phase == 1 || w.phase == 3) {
    dual::restore_true_data(w);
    for (int j = 0; j < g->nm; j++)
      if (g->cbas[j] < 0) spx_place_nonbasic(g, j);
    // A phase-3 run stopped by a limit keeps its basis; its basic values are
    // computed afresh: they follow the nonbasics that left made-up bounds, and
    // the running ones carry the rounding of every flip across such a box
    // (1e15 times a pivot entry, there and back).
    if (w.phase == 3 && rc == 0 && g->stat != GLP_SWITCH) rc = dual::lu_rc(spx_compute_xb(g));
  }
  if (rc == 0 && g->stat == GLP_RUNNING) g->stat = GLP_SWITCH;
  g->objval = dual::true_objective(g);
  if (g->stat != GLP_SWITCH) timelapsed(g->model, g->started, KX_CALLBACK_DUAL, 1, -1.0);
  return rc;
}

void drecover(GLP *g) {
  // Duals and reduced costs of the true costs for putsolution.
  if (g->factorFailed || g->stat == GLP_SWITCH) return;
  if (spx_compute_duals(g, g->objv) == 0) {
    g->phase = g->stat == GLP_OPTIMAL ? 2 : g->phase;
    if (g->stat == GLP_OPTIMAL) g->npinf = 0;
  }
}
