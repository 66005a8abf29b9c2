// lp_check.h - checks of an LP solution against the optimality conditions, on
// the model's own data: primal feasibility, dual feasibility of the reduced
// costs recomputed from y, complementary slackness, and the objective.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "base/kx.h"

namespace kxtest {

struct LPCheck {
  double pinf = 0;     // largest bound or row violation
  double dinf = 0;     // largest sign violation of a reduced cost, relative to max(1, |c|max)
  double djErr = 0;    // largest |dj - (c - A'y)| relative to max(1, |c|max)
  double slackErr = 0; // largest |slack - (b - a x)|
  double objErr = 0;   // |pobj - (c'x + const)| / max(1, |pobj|)
  double obj = 0;
};

// Row bounds of row i on the activity a_i x.
inline void row_range(const Model *m, int i, double *lo, double *up) {
  const double inf = 1e30, b = m->rhs[i];
  const double r = m->rangeVal ? m->rangeVal[i] : inf;
  const bool ranged = std::fabs(r) < inf;
  *lo = -inf;
  *up = inf;
  switch (m->conType[i]) {
    case 'L': *up = b; if (ranged) *lo = b - std::fabs(r); break;
    case 'G': *lo = b; if (ranged) *up = b + std::fabs(r); break;
    case 'E':
      *lo = *up = b;
      if (ranged) { if (r > 0) *up = b + r; else *lo = b + r; }
      break;
    default: break;
  }
}

// Reads x, y, dj, slack and the objective through the public getters.
inline LPCheck check_lp_solution(pModel model) {
  const Model *m = model;
  LPCheck c;
  const int n = m->nVars, rows = m->nCons;
  std::vector<double> x(n), dj(n), y(rows), s(rows);
  KXgetPrimalSolution(model, x.data());
  KXgetReducedCosts(model, dj.data());
  KXgetDualSolution(model, y.data());
  KXgetSlacks(model, s.data());
  double pobj = 0;
  KXgetObjective(model, &pobj);
  const double inf = 1e30;
  const int sense = m->objSense == -1 ? -1 : 1;
  std::vector<double> act(rows, 0.0);
  double cmax = 0, obj = m->objConst;
  for (int j = 0; j < n; j++) {
    cmax = std::max(cmax, std::fabs(m->cost[j]));
    obj += m->cost[j] * x[j];
  }
  const double ds = std::max(1.0, cmax);
  auto sign_viol = [&](double v, double lo, double up, double d) {
    const double t = 1e-9 * (1 + std::fabs(v));
    if (lo > -inf && up < inf && up - lo <= 1e-9 * (1 + std::fabs(lo))) return 0.0;
    const double dm = sense * d;
    if (lo > -inf && v <= lo + t) return std::max(0.0, -dm);
    if (up < inf && v >= up - t) return std::max(0.0, dm);
    return std::fabs(dm);
  };
  for (int j = 0; j < n; j++) {
    double ya = 0;
    const int b = m->Abeg[j], l = m->Alen ? m->Alen[j] : m->Abeg[j + 1] - b;
    for (int k = b; k < b + l; k++) {
      act[m->Arow[k]] += m->Acoef[k] * x[j];
      ya += y[m->Arow[k]] * m->Acoef[k];
    }
    const double d = m->cost[j] - ya;
    c.djErr = std::max(c.djErr, std::fabs(d - dj[j]) / ds);
    const double lo = m->lower[j], up = m->upper[j];
    if (lo > -inf) c.pinf = std::max(c.pinf, lo - x[j]);
    if (up < inf) c.pinf = std::max(c.pinf, x[j] - up);
    c.dinf = std::max(c.dinf, sign_viol(x[j], lo, up, d) / ds);
  }
  for (int i = 0; i < rows; i++) {
    double lo, up;
    row_range(m, i, &lo, &up);
    if (lo > -inf) c.pinf = std::max(c.pinf, lo - act[i]);
    if (up < inf) c.pinf = std::max(c.pinf, act[i] - up);
    c.slackErr = std::max(c.slackErr, std::fabs(s[i] - (m->rhs[i] - act[i])));
    // The dual of the row against the activity: y >= 0 pushes a_i x down in a
    // minimisation, so y (min form) must be <= 0 at the top and >= 0 at the bottom.
    const double ym = sense * y[i];
    const double t = 1e-9 * (1 + std::fabs(act[i]));
    double e;
    if (lo > -inf && up < inf && up - lo <= 1e-9 * (1 + std::fabs(lo))) e = 0;
    else if (up < inf && act[i] >= up - t) e = std::max(0.0, ym);
    else if (lo > -inf && act[i] <= lo + t) e = std::max(0.0, -ym);
    else e = std::fabs(ym);
    c.dinf = std::max(c.dinf, e / ds);
  }
  c.obj = obj;
  c.objErr = std::fabs(pobj - obj) / std::max(1.0, std::fabs(pobj));
  return c;
}

}  // namespace kxtest
