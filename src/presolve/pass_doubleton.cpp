// Elimination of doubleton equations a_rj x_j + a_rk x_k = b: x_k is substituted
// out, its bounds move onto x_j, its cost and its other entries onto column j.
#include <algorithm>
#include <cmath>

#include "presolve/genpre.h"

namespace {

constexpr double kMaxMultiplier = 1e3;  // largest |a_rj / a_rk| of a substitution

double tol_rel(double base, double v) { return base * (1.0 + std::fabs(v)); }

int eliminate_doubleton(GenPre &g, int r) {
  lpdata &lp = g.lp;
  LpEntry e1 = lp.row[r][0], e2 = lp.row[r][1];
  // Eliminate the column with fewer entries, unless its coefficient is too small.
  auto ok = [](const LpEntry &keep, const LpEntry &elim) {
    return std::fabs(keep.val) <= kMaxMultiplier * std::fabs(elim.val);
  };
  LpEntry keep = e1, elim = e2;
  const bool e2first = lp.col[e2.idx].size() < lp.col[e1.idx].size() ||
                       (lp.col[e2.idx].size() == lp.col[e1.idx].size() && e2.idx > e1.idx);
  if (!e2first) std::swap(keep, elim);
  if (!ok(keep, elim)) {
    std::swap(keep, elim);
    if (!ok(keep, elim)) return kPassNone;
  }
  const int j = keep.idx, k = elim.idx;
  const double aj = keep.val, ak = elim.val, b = lp.rl[r];
  const double lk = lp.lb[k], uk = lp.ub[k];
  // t = ak x_k lies in [tmin, tmax]; aj x_j = b - t.
  const bool lkInf = lk <= -kActInf, ukInf = uk >= kActInf;
  double tmin, tmax;
  bool tminInf, tmaxInf;
  if (ak > 0) {
    tminInf = lkInf; tmin = ak * lk;
    tmaxInf = ukInf; tmax = ak * uk;
  } else {
    tminInf = ukInf; tmin = ak * uk;
    tmaxInf = lkInf; tmax = ak * lk;
  }
  double lo = -kPreInf, up = kPreInf;  // implied on x_j
  if (aj > 0) {
    if (!tmaxInf) lo = (b - tmax) / aj;
    if (!tminInf) up = (b - tmin) / aj;
  } else {
    if (!tminInf) lo = (b - tmin) / aj;
    if (!tmaxInf) up = (b - tmax) / aj;
  }
  const double lOld = lp.lb[j], uOld = lp.ub[j];
  double nl = lOld, nu = uOld;
  if (lo > -kPreInf && (lOld <= -kPreInf || lo > lOld + tol_rel(g.eps, lOld))) nl = lo;
  if (up < kPreInf && (uOld >= kPreInf || up < uOld - tol_rel(g.eps, uOld))) nu = up;
  if (nl > nu) {
    if (nl > nu + tol_rel(g.feasTol, std::max(std::fabs(nl), std::fabs(nu))))
      return kPassInfeasible;
    if (nl != lOld) nl = nu;
    else nu = nl;
  }
  // Fill: entries of k in rows that don't hold j yet, against those removed.
  std::vector<LpEntry> others;
  others.reserve(lp.col[k].size());
  for (const LpEntry &f : lp.col[k])
    if (f.idx != r) others.push_back(f);
  long added = 0;
  for (const LpEntry &f : others)
    if (lpdata_find_in_row(lp, f.idx, j) < 0) added++;
  long net = added - static_cast<long>(others.size()) - 2;
  if (net > 0 && g.fillUsed + net > g.fill) return kPassNone;
  g.fillUsed += net > 0 ? net : 0;

  PostStack *ps = g.ps;
  get_post_stack_space(ps, others.size() + 8, others.size() + 12);
  ps_begin(ps);
  ps_int(ps, r);
  ps_int(ps, j);
  ps_int(ps, k);
  ps_real(ps, aj);
  ps_real(ps, ak);
  ps_real(ps, b);
  ps_real(ps, lp.cost[k]);
  ps_real(ps, lOld);
  ps_real(ps, uOld);
  ps_real(ps, lk);
  ps_real(ps, uk);
  ps_real(ps, nl);
  ps_real(ps, nu);
  for (const LpEntry &f : others) {
    ps_int(ps, f.idx);
    ps_real(ps, f.val);
  }
  ps_end(ps, kPsDoubleton);

  const double ratio = aj / ak;
  lp.cost[j] -= lp.cost[k] * ratio;
  lp.objOffset += lp.cost[k] * b / ak;
  gp_unlink_row(g, r);
  gp_unlink_col(g, k);
  for (const LpEntry &f : others) {
    lpdata_add_to_entry(lp, f.idx, j, -f.val * ratio, g.drop);
    double s = f.val * b / ak;
    if (!pre_inf(lp.rl[f.idx])) lp.rl[f.idx] -= s;
    if (!pre_inf(lp.ru[f.idx])) lp.ru[f.idx] -= s;
    gp_mark_row(g, f.idx);
  }
  lp.lb[j] = nl;
  lp.ub[j] = nu;
  gp_mark_col(g, j);
  for (const LpEntry &f : lp.col[j]) gp_mark_row(g, f.idx);
  return kPassChanged;
}

}  // namespace

int genpre_eliminator(GenPre &g) {
  lpdata &lp = g.lp;
  int changed = kPassNone;
  for (int r = 0; r < lp.m; ++r) {
    if (!lp.rowLive[r] || lp.row[r].size() != 2) continue;
    if (pre_inf(lp.rl[r]) || lp.rl[r] != lp.ru[r]) continue;
    int rc = eliminate_doubleton(g, r);
    if (rc == kPassInfeasible) return rc;
    if (rc == kPassChanged) changed = kPassChanged;
  }
  return changed;
}
