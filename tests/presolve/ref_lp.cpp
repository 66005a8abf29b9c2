// Dense reference LP solver and optimality checker for the presolve tests.
#include "ref_lp.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace reflp {
namespace {

constexpr double kInf = 1e30;
bool finite(double v) { return std::fabs(v) < 1e15; }

double row_lo(const Model *m, int i) {
  double b = m->rhs[i], r = m->rangeVal ? m->rangeVal[i] : kInf;
  bool rg = std::fabs(r) < kInf;
  switch (m->conType[i]) {
    case 'L': return rg ? b - std::fabs(r) : -kInf;
    case 'G': return b;
    case 'E': return (rg && r < 0) ? b + r : b;
    default: return -kInf;
  }
}
double row_up(const Model *m, int i) {
  double b = m->rhs[i], r = m->rangeVal ? m->rangeVal[i] : kInf;
  bool rg = std::fabs(r) < kInf;
  switch (m->conType[i]) {
    case 'L': return b;
    case 'G': return rg ? b + std::fabs(r) : kInf;
    case 'E': return (rg && r > 0) ? b + r : b;
    default: return kInf;
  }
}

// Solve M z = b (M k x k by rows) with partial pivoting; false when singular.
bool gauss(std::vector<double> M, std::vector<double> &b, int k) {
  for (int p = 0; p < k; ++p) {
    int piv = p;
    for (int r = p + 1; r < k; ++r)
      if (std::fabs(M[r * k + p]) > std::fabs(M[piv * k + p])) piv = r;
    if (std::fabs(M[piv * k + p]) < 1e-9) return false;
    if (piv != p) {
      for (int c = 0; c < k; ++c) std::swap(M[p * k + c], M[piv * k + c]);
      std::swap(b[p], b[piv]);
    }
    for (int r = p + 1; r < k; ++r) {
      double f = M[r * k + p] / M[p * k + p];
      if (f == 0) continue;
      for (int c = p; c < k; ++c) M[r * k + c] -= f * M[p * k + c];
      b[r] -= f * b[p];
    }
  }
  for (int p = k - 1; p >= 0; --p) {
    double s = b[p];
    for (int c = p + 1; c < k; ++c) s -= M[p * k + c] * b[c];
    b[p] = s / M[p * k + p];
  }
  return true;
}

// Column q of [A -I]: entries by row.
double col_entry(const Dense &lp, int q, int i) {
  if (q < lp.n) return lp.a(i, q);
  return (q - lp.n == i) ? -1.0 : 0.0;
}

}  // namespace

Dense from_model(const Model *model) {
  Dense d;
  d.m = model->nCons;
  d.n = model->nVars;
  d.sense = model->objSense < 0 ? -1.0 : 1.0;
  d.objConst = model->objConst;
  d.A.assign(static_cast<size_t>(d.m) * d.n, 0.0);
  for (int j = 0; j < d.n; ++j) {
    for (int k = model->Abeg[j]; k < model->Abeg[j] + model->Alen[j]; ++k)
      d.A[static_cast<size_t>(model->Arow[k]) * d.n + j] += model->Acoef[k];
    d.c.push_back(d.sense * model->cost[j]);
    d.l.push_back(model->lower[j]);
    d.u.push_back(model->upper[j]);
  }
  for (int i = 0; i < d.m; ++i) {
    d.rl.push_back(row_lo(model, i));
    d.ru.push_back(row_up(model, i));
  }
  return d;
}

namespace {

// Try all bases; with zeroCost only primal feasibility matters.
bool enumerate(const Dense &lp, bool zeroCost, Solution &out) {
  const int m = lp.m, n = lp.n, N = m + n;
  std::vector<double> lo(N), up(N), cost(N, 0.0);
  for (int j = 0; j < n; ++j) {
    lo[j] = lp.l[j];
    up[j] = lp.u[j];
    if (!zeroCost) cost[j] = lp.c[j];
  }
  for (int i = 0; i < m; ++i) {
    lo[n + i] = lp.rl[i];
    up[n + i] = lp.ru[i];
  }
  std::vector<int> basic;
  std::vector<char> isB(N, 0);
  std::vector<double> z(N);
  std::vector<int> st(N);
  bool found = false;
  const double tol = 1e-9;
  std::vector<int> nb;
  std::function<bool(int)> choose_nb = [&](int t) -> bool {
    if (t == static_cast<int>(nb.size())) {
      // Basic values: B z_B = -N z_N.
      std::vector<double> M(static_cast<size_t>(m) * m), rhs(m, 0.0);
      for (int i = 0; i < m; ++i) {
        for (int p = 0; p < m; ++p) M[static_cast<size_t>(i) * m + p] = col_entry(lp, basic[p], i);
        double s = 0;
        for (int q : nb) s += col_entry(lp, q, i) * z[q];
        rhs[i] = -s;
      }
      if (!gauss(M, rhs, m)) return false;
      for (int p = 0; p < m; ++p) {
        int q = basic[p];
        double v = rhs[p];
        if (finite(lo[q]) && v < lo[q] - tol * (1 + std::fabs(lo[q]))) return false;
        if (finite(up[q]) && v > up[q] + tol * (1 + std::fabs(up[q]))) return false;
        z[q] = v;
      }
      // Duals: B' y = c_B.
      std::vector<double> Mt(static_cast<size_t>(m) * m), y(m);
      for (int p = 0; p < m; ++p) {
        for (int i = 0; i < m; ++i) Mt[static_cast<size_t>(p) * m + i] = col_entry(lp, basic[p], i);
        y[p] = cost[basic[p]];
      }
      if (!gauss(Mt, y, m)) return false;
      std::vector<double> d(N);
      for (int q = 0; q < N; ++q) {
        double s = cost[q];
        for (int i = 0; i < m; ++i) s -= col_entry(lp, q, i) * y[i];
        d[q] = s;
      }
      for (int q : nb) {
        if (finite(lo[q]) && finite(up[q]) && lo[q] == up[q]) continue;
        if (st[q] == -1 && d[q] < -tol) return false;
        if (st[q] == -2 && d[q] > tol) return false;
        if (st[q] == -3 && std::fabs(d[q]) > tol) return false;
      }
      out.status = kOptimal;
      out.x.assign(z.begin(), z.begin() + n);
      out.y = y;
      out.d.assign(d.begin(), d.begin() + n);
      out.cs.assign(n, 0);
      out.rs.assign(m, 0);
      for (int q : nb) {
        if (q < n) out.cs[q] = st[q];
        // A logical r_i = a_i x at its lower rl is the slack b - ax at its upper: -2.
        else out.rs[q - n] = st[q] == -1 ? -2 : st[q] == -2 ? -1 : -3;
      }
      double obj = lp.objConst;
      for (int j = 0; j < n; ++j) obj += lp.sense * lp.c[j] * z[j];
      out.obj = obj;
      return true;
    }
    const int q = nb[t];
    if (finite(lo[q])) {
      z[q] = lo[q];
      st[q] = -1;
      if (choose_nb(t + 1)) return true;
    }
    if (finite(up[q]) && !(finite(lo[q]) && lo[q] == up[q])) {
      z[q] = up[q];
      st[q] = -2;
      if (choose_nb(t + 1)) return true;
    }
    if (!finite(lo[q]) && !finite(up[q])) {
      z[q] = 0;
      st[q] = -3;
      if (choose_nb(t + 1)) return true;
    }
    return false;
  };
  std::function<bool(int, int)> choose_b = [&](int start, int left) -> bool {
    if (left == 0) {
      nb.clear();
      for (int q = 0; q < N; ++q)
        if (!isB[q]) nb.push_back(q);
      return choose_nb(0);
    }
    for (int q = start; q <= N - left; ++q) {
      isB[q] = 1;
      basic.push_back(q);
      if (choose_b(q + 1, left - 1)) return true;
      basic.pop_back();
      isB[q] = 0;
    }
    return false;
  };
  found = choose_b(0, m);
  return found;
}

}  // namespace

Solution solve(const Dense &lp) {
  Solution s;
  if (lp.n == 0 && lp.m == 0) {
    s.status = kOptimal;
    s.obj = lp.objConst;
    return s;
  }
  Solution feas;
  if (!enumerate(lp, true, feas)) {
    s.status = kInfeasible;
    return s;
  }
  if (!enumerate(lp, false, s)) s.status = kUnbounded;
  return s;
}

void install(Model *model, const Dense &lp, const Solution &s) {
  kxi_ensure_sol(model);
  Sol *so = model->sol;
  int pos = 0;
  for (int j = 0; j < lp.n; ++j) {
    so->x[j] = s.x[j];
    so->dj[j] = lp.sense * s.d[j];
    so->colstat[j] = s.cs[j] == 0 ? pos++ : s.cs[j];
  }
  for (int i = 0; i < lp.m; ++i) {
    double act = 0;
    for (int j = 0; j < lp.n; ++j) act += lp.a(i, j) * s.x[j];
    so->slack[i] = model->rhs[i] - act;
    so->y[i] = lp.sense * s.y[i];
    so->rowstat[i] = s.rs[i] == 0 ? pos++ : s.rs[i];
  }
  so->pobj = so->dobj = s.obj;
  so->model_status = so->primal_status = so->basic_status = KX_STATUS_BASIC_OPTIMAL;
  so->dual_status = KX_STATUS_OPTIMAL;
  so->method = 3;
}

Check check(const Model *model) {
  Check r;
  const Dense lp = from_model(model);
  const Sol *s = model->sol;
  const int m = lp.m, n = lp.n;
  std::vector<double> act(m, 0.0), d(n), y(m);
  for (int i = 0; i < m; ++i) y[i] = lp.sense * s->y[i];
  for (int j = 0; j < n; ++j) {
    double dj = lp.c[j];
    for (int i = 0; i < m; ++i) {
      act[i] += lp.a(i, j) * s->x[j];
      dj -= lp.a(i, j) * y[i];
    }
    d[j] = dj;
    // The reported reduced cost must be c - A'y.
    r.dinf = std::max(r.dinf, std::fabs(lp.sense * s->dj[j] - dj) / (1 + std::fabs(dj)));
  }
  auto side = [&](double v, double lo, double up, double g, double tolBase) {
    // Primal violation, dual feasibility and complementarity of one pair (value, dual).
    double sc = 1 + std::fabs(v);
    if (finite(lo)) r.pinf = std::max(r.pinf, (lo - v) / (1 + std::fabs(lo)));
    if (finite(up)) r.pinf = std::max(r.pinf, (v - up) / (1 + std::fabs(up)));
    if (!finite(up)) r.dinf = std::max(r.dinf, -g);  // g >= 0 needed
    if (!finite(lo)) r.dinf = std::max(r.dinf, g);   // g <= 0 needed
    if (g > 0 && finite(lo)) r.compl_ = std::max(r.compl_, std::min(g, (v - lo) / sc));
    if (g < 0 && finite(up)) r.compl_ = std::max(r.compl_, std::min(-g, (up - v) / sc));
    (void)tolBase;
  };
  for (int j = 0; j < n; ++j) side(s->x[j], lp.l[j], lp.u[j], d[j], 0);
  for (int i = 0; i < m; ++i) side(act[i], lp.rl[i], lp.ru[i], y[i], 0);

  // Basis.
  std::vector<int> basic;
  std::vector<int> seen(m, 0);
  const double bt = 1e-7;
  r.basisOk = true;
  auto fail = [&](const std::string &w) {
    if (r.basisOk) r.why = w;
    r.basisOk = false;
  };
  for (int j = 0; j < n; ++j) {
    int st = s->colstat[j];
    if (st >= 0) {
      basic.push_back(j);
      if (std::fabs(d[j]) > bt * (1 + std::fabs(lp.c[j]))) fail("basic column with reduced cost " + std::to_string(j));
    } else if (st == -1) {
      if (!finite(lp.l[j]) || std::fabs(s->x[j] - lp.l[j]) > bt) fail("column not at lower " + std::to_string(j));
    } else if (st == -2) {
      if (!finite(lp.u[j]) || std::fabs(s->x[j] - lp.u[j]) > bt) fail("column not at upper " + std::to_string(j));
    } else if (st == -3) {
      if (finite(lp.l[j]) || finite(lp.u[j]) || s->x[j] != 0.0) fail("free status misused " + std::to_string(j));
    } else {
      fail("bad column status");
    }
  }
  for (int i = 0; i < m; ++i) {
    int st = s->rowstat[i];
    if (st >= 0) {
      basic.push_back(n + i);
      if (std::fabs(y[i]) > bt) fail("basic row with dual " + std::to_string(i));
    } else if (st == -1) {
      if (!finite(lp.ru[i]) || std::fabs(act[i] - lp.ru[i]) > bt * (1 + std::fabs(lp.ru[i]))) fail("row not at top " + std::to_string(i));
    } else if (st == -2) {
      if (!finite(lp.rl[i]) || std::fabs(act[i] - lp.rl[i]) > bt * (1 + std::fabs(lp.rl[i]))) fail("row not at bottom " + std::to_string(i));
    } else {
      fail("bad row status");
    }
  }
  if (static_cast<int>(basic.size()) != m) {
    fail("basic count " + std::to_string(basic.size()) + " for " + std::to_string(m) + " rows");
  } else if (m > 0) {
    std::vector<double> M(static_cast<size_t>(m) * m), b(m, 1.0);
    for (int i = 0; i < m; ++i)
      for (int p = 0; p < m; ++p) M[static_cast<size_t>(i) * m + p] = col_entry(lp, basic[p], i);
    if (!gauss(M, b, m)) fail("singular basis");
  }
  return r;
}

}  // namespace reflp
