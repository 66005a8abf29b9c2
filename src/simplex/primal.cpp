// primal.cpp - the primal simplex: the main loop, the phase-1 costs and their
// update, perturbation of the bounds against degeneracy, progress checks and
// the log lines.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "simplex/glp.h"

namespace {

constexpr double kDegenerateStep = 1e-12;  // a step below this makes no progress

// Phase-1 cost of a basic variable: -1 below its lower bound, +1 above its upper.
inline double infeas_cost(const GLP *g, int j) {
  const double v = g->x[j];
  if (v < g->clb[j] - g->reps) return -1.0;
  if (v > g->cub[j] + g->reps) return 1.0;
  return 0.0;
}

// Costs of the phase from the basic values; returns the infeasible count.
int set_phase_costs(GLP *g) {
  int cnt = 0;
  for (int j = 0; j < g->nm; j++) g->cph[j] = 0.0;
  for (int p = 0; p < g->m; p++) {
    const int j = g->rbas[p];
    const double c = infeas_cost(g, j);
    g->cph[j] = c;
    if (c != 0.0) cnt++;
  }
  g->npinf = cnt;
  if (cnt == 0) {
    g->phase = 2;
    g->cph = g->objv;
  } else {
    g->phase = 1;
  }
  return cnt;
}

// Values, phase and duals from scratch after a factorisation.
int refresh(GLP *g) {
  KX_CALL(spx_compute_xb(g));
  set_phase_costs(g);
  if (g->phase == 2) g->everFeasible = 1;
  KX_CALL(spx_compute_duals(g, g->cph));
  return 0;
}

// Sum of the dual infeasibilities (for the log).
double dual_infeas(GLP *g, int *count) {
  double s = 0.0;
  int c = 0;
  for (int j = 0; j < g->nm; j++) {
    const int st = g->cbas[j];
    if (st >= 0) continue;
    const double d = g->rdc[j];
    double v = 0.0;
    if ((st == -1 || st == -3 || st == -4) && d < -g->ceps && g->cub[j] > g->clb[j]) v = -d;
    if ((st == -2 || st == -3 || st == -4) && d > g->ceps && g->cub[j] > g->clb[j]) v = std::max(v, d);
    if (v > 0) {
      s += v;
      c++;
    }
  }
  if (count) *count = c;
  return s;
}

double true_objective(const GLP *g) {
  return g->sense * spx_objective(g) / g->objscale + g->objconst;
}

void log_line(GLP *g) {
  Model *model = g->model;
  if (!model->logFunc || g->printLevel <= 0) return;
  static const char *hdr = "\n%8s %6s %18s %17s %17s %7s %8s";
  if (g->nfact % 31 == 1)
    spx_log(g, hdr, "Iter", "Deg(%)", "Prim obj", "Prim inf", "Dual inf", "Ninf", "Time");
  int nd = 0;
  const double dinf = dual_infeas(g, &nd);
  const double pinf = spx_primal_infeas(g, nullptr, nullptr);
  const double deg = g->iter > 0 ? 100.0 * g->ndeg / g->iter : 0.0;
  const KXtime now = kx_now();
  spx_log(g, "\n%8g %6.2f %18.10e %17.8e %17.8e %7d %8.2f", g->iter + g->iterBase, deg,
          true_objective(g), pinf, dinf, g->npinf, now.wall - g->started.wall);
}

// Apply a change of the phase-1 costs of basics (delta by position, listed in
// g->work) to y and the reduced costs.
int apply_cost_change(GLP *g) {
  SpxVec &dy = g->work2;
  dy.clear(g->m);
  KX_CALL(spx_btran(g, g->work, dy));
  if (dy.count < 0) {
    for (int i = 0; i < g->m; i++) g->y[i] += dy.val[i];
  } else {
    for (int k = 0; k < dy.count; k++) g->y[dy.ind[k]] += dy.val[dy.ind[k]];
  }
  spx_pivot_row(g, dy);
  const SpxVec &row = g->pivrow;
  for (int k = 0; k < row.count; k++) {
    const int j = row.ind[k];
    g->rdc[j] -= row.val[j];
    spx_cand_touch(g, j);
  }
  dy.clear(g->m);
  return 0;
}

// After a step in phase 1: new costs of the basics touched by the column,
// listed as a change by position.  Switches to phase 2 when none is left.
int update_phase1_costs(GLP *g, int leave) {
  SpxVec &delta = g->work;
  delta.clear(g->m);
  int cnt = 0;
  const SpxVec &col = g->pivcol;
  for (int k = 0; k < col.count; k++) {
    const int p = col.ind[k];
    const int j = g->rbas[p];
    const double c = infeas_cost(g, j);
    if (c != g->cph[j]) {
      if (g->cph[j] != 0.0) g->npinf--;
      if (c != 0.0) g->npinf++;
      delta.val[p] = c - g->cph[j];
      delta.ind[cnt++] = p;
      g->cph[j] = c;
    }
  }
  delta.count = cnt;
  if (leave >= 0 && g->cph[leave] != 0.0) {
    g->npinf--;
    g->rdc[leave] -= g->cph[leave];
    g->cph[leave] = 0.0;
    spx_cand_touch(g, leave);
  }
  if (g->npinf <= 0) {
    delta.clear(g->m);
    // Feasible: the real costs take over.
    g->phase = 2;
    g->npinf = 0;
    g->everFeasible = 1;
    g->cph = g->objv;
    return spx_compute_duals(g, g->cph);
  }
  if (cnt == 0) return 0;
  return apply_cost_change(g);
}

// Largest violations of the point once the scaling is taken off: primal
// absolute, dual relative to the largest cost of the model (at least 1).  The
// objective scaling makes the largest *scaled* cost 1, which can sit well above
// the largest unscaled one, so the reduced costs are unscaled in full here.
void unscaled_violations(GLP *g, double *pv, double *dv) {
  double p = 0.0, d = 0.0;
  const int n = g->n;
  for (int pos = 0; pos < g->m; pos++) {
    const int j = g->rbas[pos];
    double e = 0.0;
    if (g->x[j] < g->clb[j]) e = g->clb[j] - g->x[j];
    else if (g->x[j] > g->cub[j]) e = g->x[j] - g->cub[j];
    if (e == 0.0) continue;
    e = j < n ? e * g->cscale[j] : e / g->rscale[j - n];
    p = std::max(p, e);
  }
  for (int j = 0; j < g->nm; j++) {
    const int st = g->cbas[j];
    if (st >= 0 || g->cub[j] <= g->clb[j]) continue;
    const double r = g->rdc[j];
    double e = 0.0;
    if ((st == -1 || st == -3 || st == -4) && r < 0) e = -r;
    if ((st == -2 || st == -3 || st == -4) && r > 0) e = std::max(e, r);
    if (e == 0.0) continue;
    e = j < n ? e / g->cscale[j] : e * g->rscale[j - n];
    d = std::max(d, e);
  }
  *pv = p;
  *dv = d / spx_unscaled_cost_size(g);
}

// Nonzeroes of the factors with their updates.
int64_t lu_fill(const GLP *g) { return slu_num_lnonz(g->lu->slu) + slu_num_unonz(g->lu->slu); }

// Share of the basic variables (not fixed) that sit on a bound.
double degenerate_share(const GLP *g) {
  int deg = 0;
  for (int p = 0; p < g->m; p++) {
    const int j = g->rbas[p];
    if (!(g->cub[j] > g->clb[j])) continue;
    const double v = g->x[j];
    if (std::fabs(v - g->clb[j]) <= g->reps || std::fabs(v - g->cub[j]) <= g->reps) deg++;
  }
  return g->m > 0 ? static_cast<double>(deg) / g->m : 0.0;
}

}  // namespace

void pperturb(GLP *g) {
  if (g->clbTrue.empty()) {
    g->clbTrue = g->clb;
    g->cubTrue = g->cub;
  }
  if (!g->pert) spx_debug(g, 1, "Starting primal perturbation\n");
  else spx_debug(g, 2, "Restarting primal perturbation ptval=%e\n", g->ptval);
  if (g->npert > 0 && g->npert % 3 == 0 && g->ptval > 1e-16) g->ptval *= 0.5;
  g->pert = 1;
  g->npert++;
  const double inf = g->infin;
  const double base = g->ptval * 1e-2;
  for (int p = 0; p < g->m; p++) {
    const int j = g->rbas[p];
    const double lo = g->clb[j], up = g->cub[j];
    if (!(up > lo)) continue;  // fixed variables stay fixed
    // Sizes are taken from the true bounds, and a bound only ever widens: a
    // restart must not pile shifts on shifts, nor cut a basic out of its box.
    const double tlo = g->clbTrue[j], tup = g->cubTrue[j];
    const double width = tup < inf && tlo > -inf ? std::min(1.0, (tup - tlo) / 2) : 1.0;
    const double r1 = static_cast<double>(std::rand()) / RAND_MAX;
    const double r2 = static_cast<double>(std::rand()) / RAND_MAX;
    if (lo > -inf) g->clb[j] = std::min(lo, tlo - base * width * (1.0 + std::fabs(tlo)) * (1.0 + 9.0 * r1));
    if (up < inf) g->cub[j] = std::max(up, tup + base * width * (1.0 + std::fabs(tup)) * (1.0 + 9.0 * r2));
  }
}

void spx_remove_perturbation(GLP *g) {
  if (!g->clbTrue.empty()) {
    g->clb = g->clbTrue;
    g->cub = g->cubTrue;
    for (int j = 0; j < g->nm; j++)
      if (g->cbas[j] == -1 || g->cbas[j] == -2) spx_place_nonbasic(g, j);
  }
  g->pert = 0;
}

int psimplex(GLP *g) {
  // plpini: pricing mode, weights, the first factorisation.
  g->method = 0;
  g->stat = GLP_RUNNING;
  g->pricing = g->ppricing == 0 ? 0 : 2;
  devex_reset(g);
  if (g->wfact == WF_NONE) g->wfact = WF_LIMIT;
  const int entryRefact = g->refactfrq;
  bool fresh = false;        // no update since the last factorisation
  int tightenings = 0;       // rounds of tolerance tightening at the end
  int pertRemovals = 0;
  int consecDeg = 0;
  int verdictRefacts = 0;
  double lastProgress = 1e300;
  int stallWindows = 0;
  const int degLimit = std::max(50, g->m / 20);
  const double iterCap = 50.0 * (g->m + g->n) + 200000.0;
  double itersThisRun = 0;
  int64_t factNnz = 0;

  for (;;) {
    if (g->wfact != WF_NONE) {
      const int why = g->wfact;
      int rc = spx_factor(g);
      if (rc == SPX_NOMEM) return SPX_NOMEM;
      if (rc) {
        spx_debug(g, 2, "Out of memory or numeric difficulty (%d).\n", rc);
        g->numerr++;
        if (g->numerr > 2) return SPX_NUMERIC;
        g->stat = GLP_SWITCH;
        return 0;
      }
      rc = refresh(g);
      if (rc) return rc == SPX_NOMEM ? SPX_NOMEM : SPX_NUMERIC;
      g->wfact = WF_NONE;
      g->refactfrq = entryRefact;
      fresh = true;
      factNnz = lu_fill(g);
      // A start with many basics on a bound is degenerate: perturb at once.
      if (g->iter == 0 && !g->pert && g->npert == 0 && degenerate_share(g) > 0.1) {
        pperturb(g);
        g->wfact = WF_PERTEND;
        continue;
      }
      if (why != WF_CHECK && why != WF_CONFIRM) verdictRefacts = 0;
      if (g->ppricing == -1 || g->ppricing == 0) pckstp(g);
      // Stall check once per factorisation window.
      const double measure = g->phase == 1 ? spx_primal_infeas(g, nullptr, nullptr) : spx_objective(g);
      if (measure < lastProgress - 1e-9 * (1.0 + std::fabs(lastProgress))) {
        stallWindows = 0;
        lastProgress = measure;
      } else if (g->iter > 0) {
        stallWindows++;
        if (stallWindows >= 3 && pertRemovals < 4) {
          // A restart keeps the size (halved every third time): larger bounds
          // moved the optimum of the perturbed model far from the true one.
          pperturb(g);
          stallWindows = 0;
          g->wfact = WF_PERTEND;  // recompute with the relaxed bounds
          continue;
        }
      }
      if (g->phase == 1) lastProgress = std::min(lastProgress, measure);
      log_line(g);
    }
    if (g->stat != GLP_RUNNING) break;

    // Limits.
    if (g->itrlmt >= 0 && g->iter + g->iterBase >= g->itrlmt) {
      g->stat = GLP_ITERLIMIT;
      break;
    }
    const int tl = timelapsed(g->model, g->started, KX_CALLBACK_PRIMAL, 0, g->timelimit);
    if (tl > 0) {
      g->stat = GLP_TIMELIMIT;
      break;
    }
    if (tl < 0) {
      g->stat = GLP_USERBREAK;
      return SPX_BREAK;
    }
    if (itersThisRun > iterCap) {
      g->numerr++;
      g->stat = GLP_SWITCH;
      break;
    }

    // Pricing.
    const int q = pgetpj(g);
    if (q < 0) {
      if (!fresh || g->nrejected > 0) {
        if (++verdictRefacts > 3) {
          g->numerr++;
          g->stat = GLP_SWITCH;
          break;
        }
        g->wfact = WF_CONFIRM;
        continue;
      }
      if (g->pert && pertRemovals < 8) {
        spx_debug(g, 1, "Ending primal perturbation\n");
        spx_remove_perturbation(g);
        pertRemovals++;
        g->wfact = WF_PERTEND;
        continue;
      }
      if (g->phase == 1) {
        g->stat = GLP_INFEASIBLE;
        break;
      }
      // Optimal in the scaled model: tighten the tolerances when the unscaled
      // point is off by more than the caller allows.
      double pv, dv;
      unscaled_violations(g, &pv, &dv);
      if (tightenings < 3 && spx_tighten(g, pv, dv, spx_dual_gap_share(g, true_objective(g)))) {
        tightenings++;
        continue;
      }
      g->stat = GLP_OPTIMAL;
      break;
    }

    const int dir = g->rdc[q] < 0 ? 1 : -1;
    SpxVec &col = g->pivcol;
    col.clear(g->m);
    spx_load_column(g, q, g->work);
    int rc = spx_ftran(g, g->work, col, 1);
    if (rc) return rc == SPX_NOMEM ? SPX_NOMEM : SPX_NUMERIC;

    int r = -2;
    double step = 0.0, leaveVal = 0.0;
    if (g->phase == 1) ratio1(g, q, dir, &r, &step, &leaveVal);
    else ratio2(g, q, dir, &r, &step, &leaveVal);

    if (r == -2) {
      if (!fresh) {
        g->wfact = WF_CONFIRM;
        continue;
      }
      if (g->phase == 2) {
        g->pivj = q;
        g->stat = GLP_UNBOUNDED;
        break;
      }
      // Phase 1 cannot be unbounded: skip the column until the next factorisation.
      g->rejected[q] = 1;
      g->nrejected++;
      continue;
    }

    const double mv = dir * step;
    if (r == -1) {
      // Bound flip of the entering variable.
      for (int k = 0; k < col.count; k++) {
        const int p = col.ind[k];
        g->x[g->rbas[p]] -= mv * col.val[p];
      }
      if (dir > 0) {
        g->x[q] = g->cub[q];
        g->cbas[q] = -2;
      } else {
        g->x[q] = g->clb[q];
        g->cbas[q] = -1;
      }
      spx_cand_touch(g, q);
      g->iter++;
      itersThisRun++;
      g->nflips++;
      if (g->phase == 1) {
        rc = update_phase1_costs(g, -1);
        if (rc) return rc == SPX_NOMEM ? SPX_NOMEM : SPX_NUMERIC;
      }
      continue;
    }

    // A pivot at position r.
    const double alpha = col.val[r];
    SpxVec &rho = g->binvi;
    rho.clear(g->m);
    g->work.clear(g->m);
    g->work.ind[0] = r;
    g->work.val[r] = 1.0;
    g->work.count = 1;
    rc = spx_btran(g, g->work, rho);
    if (rc) return rc == SPX_NOMEM ? SPX_NOMEM : SPX_NUMERIC;
    spx_pivot_row(g, rho);
    const double alphaRow = g->pivrow.val[q];
    const double err = std::fabs(alphaRow - alpha);
    if (err > 1e-7 * (1.0 + std::fabs(alpha)) || std::fabs(alpha) < 1e-11) {
      spx_debug(g, 2, "\nPivot mismatch: col %.6e row %.6e (q=%d r=%d)", alpha, alphaRow, q, r);
      if (!fresh) {
        g->wfact = WF_ACCURACY;
      } else {
        g->rejected[q] = 1;
        g->nrejected++;
      }
      continue;
    }

    // Devex: reset the reference framework when the weight of q is far off.
    if (g->pricing == 2) {
      double acc = g->devexRef[q] ? 1.0 : 0.0;
      for (int k = 0; k < col.count; k++) {
        const int p = col.ind[k];
        if (g->devexRef[g->rbas[p]]) acc += col.val[p] * col.val[p];
      }
      if (g->devexw[q] > 3.0 * acc) {
        devex_reset(g);
        g->devexw[q] = std::max(acc, 1.0);
      } else {
        g->devexw[q] = std::max(g->devexw[q], acc);
      }
    }

    const int leave = g->rbas[r];
    pupdrdc(g, q, r, alpha, leave);

    // Primal values.
    for (int k = 0; k < col.count; k++) {
      const int p = col.ind[k];
      g->x[g->rbas[p]] -= mv * col.val[p];
    }
    g->x[q] += mv;
    g->x[leave] = leaveVal;
    // Basis change.
    g->rbas[r] = q;
    g->cbas[q] = r;
    g->cbas[leave] = (leaveVal == g->clb[leave]) ? -1 : -2;
    spx_cand_touch(g, leave);
    if (step < kDegenerateStep) {
      g->ndeg++;
      consecDeg++;
    } else {
      consecDeg = 0;
    }
    g->iter++;
    itersThisRun++;
    g->pivi = r;
    g->pivj = q;
    g->mrat = step;

    int luStat = 0;
    rc = KXI_lu_update(g->lu, r, alpha, 0, &luStat);
    if (rc == KXI_LU_ERR_MEMORY) return SPX_NOMEM;
    g->nupdates++;
    fresh = false;
    if (luStat == 1) g->wfact = WF_SINGULAR;
    else if (luStat == 4 || luStat == 2) g->wfact = WF_REFUSED;
    else if (g->nupdates >= g->refactfrq) g->wfact = WF_LIMIT;
    else if (g->nupdates > 20 && lu_fill(g) > 3 * factNnz + g->m) g->wfact = WF_FILL;

    if (g->phase == 1) {
      if (g->wfact != WF_NONE) {
        // The factorisation recomputes everything.
      } else {
        rc = update_phase1_costs(g, leave);
        if (rc) return rc == SPX_NOMEM ? SPX_NOMEM : SPX_NUMERIC;
      }
    } else {
      // A basic may have drifted out of its bounds; the next factorisation
      // finds it.  Nothing to do here.
    }

    if (consecDeg >= degLimit && g->npert < 50) {
      pperturb(g);
      consecDeg = 0;
      if (g->wfact == WF_NONE) g->wfact = WF_PERTEND;
    }
  }

  // Ending.
  g->objval = spx_objective(g);
  if (g->stat == GLP_OPTIMAL) spx_debug(g, 1, "\n#pivot = %g, optimal value = %f", g->iter, true_objective(g));
  if (g->stat == GLP_INFEASIBLE && g->pert) spx_remove_perturbation(g);
  timelapsed(g->model, g->started, KX_CALLBACK_PRIMAL, 1, -1.0);
  return SPX_OK;
}
