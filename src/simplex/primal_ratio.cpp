// primal_ratio.cpp - the primal ratio tests.  ratio2 is the two-pass Harris test
// of a feasible basis; ratio1 the phase-1 test, which walks the breakpoints of
// the infeasibility sum so that infeasible basics may pass their bound while the
// slope stays negative.  Both take the entering column's FTRAN from g->pivcol.
#include <algorithm>
#include <cmath>

#include "simplex/glp.h"

namespace {

// Range the entering variable may move in direction dir before its other bound.
double entering_range(const GLP *g, int q, int dir) {
  const double inf = g->infin;
  if (dir > 0) return g->cub[q] < inf ? g->cub[q] - g->x[q] : inf;
  return g->clb[q] > -inf ? g->x[q] - g->clb[q] : inf;
}

struct Soft {
  double t;
  double gain;
  int p;
};

}  // namespace

int ratio2(GLP *g, int q, int dir, int *pivi, double *step, double *leaveVal) {
  const SpxVec &col = g->pivcol;
  const double inf = g->infin, tol = g->reps, ptol = g->pvteps;
  const double *a = col.val.data();
  const double *x = g->x.data(), *lb = g->clb.data(), *ub = g->cub.data();
  const int *rbas = g->rbas.data();
  const double range = entering_range(g, q, dir);
  double tmax = range;
  // Pass 1: the largest step with every bound relaxed by the tolerance.
  for (int k = 0; k < col.count; k++) {
    const int p = col.ind[k];
    const double ap = a[p];
    if (std::fabs(ap) <= ptol) continue;
    const int j = rbas[p];
    const double delta = -dir * ap;
    double t;
    if (delta < 0) {
      if (lb[j] <= -inf) continue;
      t = (x[j] - lb[j] + tol) / -delta;
    } else {
      if (ub[j] >= inf) continue;
      t = (ub[j] - x[j] + tol) / delta;
    }
    if (t < tmax) tmax = t;
  }
  if (tmax >= inf) {
    *pivi = -2;
    *step = inf;
    return 0;
  }
  if (range < inf && range <= tmax) {
    *pivi = -1;
    *step = range;
    return 0;
  }
  // Pass 2: among the bounds reached within that step, the largest pivot.
  int best = -1;
  double bestAbs = 0.0, bestT = 0.0, bestVal = 0.0;
  for (int k = 0; k < col.count; k++) {
    const int p = col.ind[k];
    const double ap = a[p];
    const double aa = std::fabs(ap);
    if (aa <= ptol) continue;
    const int j = rbas[p];
    const double delta = -dir * ap;
    double t, v;
    if (delta < 0) {
      if (lb[j] <= -inf) continue;
      t = (x[j] - lb[j]) / -delta;
      v = lb[j];
    } else {
      if (ub[j] >= inf) continue;
      t = (ub[j] - x[j]) / delta;
      v = ub[j];
    }
    if (t <= tmax && (aa > bestAbs || (aa == bestAbs && t < bestT))) {
      best = p;
      bestAbs = aa;
      bestT = t;
      bestVal = v;
    }
  }
  if (best < 0) {  // only possible through rounding: treat as no block
    *pivi = -2;
    *step = inf;
    return 0;
  }
  *pivi = best;
  *step = bestT > 0 ? bestT : 0.0;
  *leaveVal = bestVal;
  return 0;
}

int ratio1(GLP *g, int q, int dir, int *pivi, double *step, double *leaveVal) {
  const SpxVec &col = g->pivcol;
  const double inf = g->infin, tol = g->reps, ptol = g->pvteps;
  const double *a = col.val.data();
  const double *x = g->x.data(), *lb = g->clb.data(), *ub = g->cub.data();
  const int *rbas = g->rbas.data();
  const double range = entering_range(g, q, dir);
  double thard = range;
  static thread_local std::vector<Soft> soft;
  soft.clear();
  for (int k = 0; k < col.count; k++) {
    const int p = col.ind[k];
    const double ap = a[p];
    if (std::fabs(ap) <= ptol) continue;
    const int j = rbas[p];
    const double delta = -dir * ap;
    const double xj = x[j];
    if (xj < lb[j] - tol) {  // below
      if (delta > 0) {
        soft.push_back({(lb[j] - xj) / delta, delta, p});
        if (ub[j] < inf) thard = std::min(thard, (ub[j] - xj + tol) / delta);
      }
    } else if (xj > ub[j] + tol) {  // above
      if (delta < 0) {
        soft.push_back({(xj - ub[j]) / -delta, -delta, p});
        if (lb[j] > -inf) thard = std::min(thard, (xj - lb[j] + tol) / -delta);
      }
    } else if (delta < 0) {
      if (lb[j] > -inf) thard = std::min(thard, (xj - lb[j] + tol) / -delta);
    } else {
      if (ub[j] < inf) thard = std::min(thard, (ub[j] - xj + tol) / delta);
    }
  }
  // Walk the breakpoints below the hard limit while the slope stays negative.
  std::sort(soft.begin(), soft.end(), [](const Soft &u, const Soft &v) { return u.t < v.t || (u.t == v.t && u.p < v.p); });
  double slope = -std::fabs(g->rdc[q]);
  int stop = -1;
  for (size_t s = 0; s < soft.size(); s++) {
    if (soft[s].t >= thard) break;
    slope += soft[s].gain;
    if (slope >= 0) {
      stop = static_cast<int>(s);
      break;
    }
  }
  if (stop < 0 && thard >= inf && !soft.empty()) stop = static_cast<int>(soft.size()) - 1;
  if (stop >= 0) {
    // Among the breakpoints that are within the tolerance of the stop, the
    // largest pivot leaves.
    const double ts = soft[stop].t;
    int best = stop;
    double bestAbs = 0.0;
    for (size_t s = 0; s < soft.size(); s++) {
      if (soft[s].t > ts) break;
      if (soft[s].t + tol / soft[s].gain < ts) continue;
      const double aa = std::fabs(a[soft[s].p]);
      if (aa > bestAbs) {
        bestAbs = aa;
        best = static_cast<int>(s);
      }
    }
    const int p = soft[best].p;
    const int j = rbas[p];
    *pivi = p;
    *step = std::max(soft[best].t, 0.0);
    *leaveVal = x[j] < lb[j] ? lb[j] : ub[j];
    return 0;
  }
  if (thard >= inf) {
    *pivi = -2;
    *step = inf;
    return 0;
  }
  if (range < inf && range <= thard) {
    *pivi = -1;
    *step = range;
    return 0;
  }
  // Harris pass 2 over the hard blocks.
  int best = -1;
  double bestAbs = 0.0, bestT = 0.0, bestVal = 0.0;
  for (int k = 0; k < col.count; k++) {
    const int p = col.ind[k];
    const double ap = a[p];
    const double aa = std::fabs(ap);
    if (aa <= ptol) continue;
    const int j = rbas[p];
    const double delta = -dir * ap;
    const double xj = x[j];
    double t, v;
    if (delta < 0) {
      if (lb[j] <= -inf || xj < lb[j] - tol) continue;
      t = (xj - lb[j]) / -delta;
      v = lb[j];
    } else {
      if (ub[j] >= inf || xj > ub[j] + tol) continue;
      t = (ub[j] - xj) / delta;
      v = ub[j];
    }
    if (t <= thard && (aa > bestAbs || (aa == bestAbs && t < bestT))) {
      best = p;
      bestAbs = aa;
      bestT = t;
      bestVal = v;
    }
  }
  if (best < 0) {
    *pivi = -2;
    *step = inf;
    return 0;
  }
  *pivi = best;
  *step = bestT > 0 ? bestT : 0.0;
  *leaveVal = bestVal;
  return 0;
}
