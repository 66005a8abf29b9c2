// query_util.h - helpers of the query tests: generated LPs, the basis matrix
// of a solved model from its public data, and the ray conditions.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "korva.h"

namespace qtest {

// A model's data through the public getters (matrix compacted).
struct Data {
  int m = 0, n = 0, sense = 1;
  double c0 = 0;
  std::vector<double> c, b, l, u, a;
  std::vector<char> t;
  std::vector<int> beg, len, row;
  std::vector<double> range;  // KX_INFINITY: none
};

inline Data read_data(pModel model) {
  Data d;
  KXgetInfo(model, KX_IINFO_NUM_CONS, &d.m);
  KXgetInfo(model, KX_IINFO_NUM_VARS, &d.n);
  int nz = 0;
  KXgetInfo(model, KX_IINFO_NUM_NONZ, &nz);
  d.c.resize(d.n);
  d.b.resize(d.m);
  d.l.resize(d.n);
  d.u.resize(d.n);
  d.t.resize(d.m + 1);
  d.beg.resize(d.n + 1);
  d.len.resize(d.n);
  d.a.resize(nz + 1);
  d.row.resize(nz + 1);
  d.range.assign(d.m, KX_INFINITY);
  KXgetLPData(model, &d.sense, &d.c0, d.c.data(), d.b.data(), d.t.data(), d.beg.data(), d.len.data(),
              d.a.data(), d.row.data(), d.l.data(), d.u.data());
  if (d.m > 0) KXgetConstraintRangeValues(model, d.range.data());
  return d;
}

// Activity bounds [lo, hi] of row i.
inline void span(const Data &d, int i, double *lo, double *hi) {
  const double inf = KX_INFINITY, b = d.b[i], r = d.range[i];
  const bool ranged = std::fabs(r) < inf;
  *lo = -inf;
  *hi = inf;
  switch (d.t[i]) {
    case 'L': *hi = b; if (ranged) *lo = b - std::fabs(r); break;
    case 'G': *lo = b; if (ranged) *hi = b + std::fabs(r); break;
    case 'E':
      *lo = *hi = b;
      if (ranged) { if (r > 0) *hi = b + r; else *lo = b + r; }
      break;
    default: break;
  }
}

// A x.
inline std::vector<double> times(const Data &d, const std::vector<double> &x) {
  std::vector<double> r(d.m, 0.0);
  for (int j = 0; j < d.n; j++)
    for (int k = d.beg[j]; k < d.beg[j] + d.len[j]; k++) r[d.row[k]] += d.a[k] * x[j];
  return r;
}

// Dense column of basis position p: a_j for a basic column j, e_i for a basic logical.
struct Basis {
  std::vector<int> head;  // n+i for the logical of row i
};

inline Basis basis_of(pModel model, const Data &d) {
  std::vector<int> cs(d.n), rs(d.m);
  KXgetBasis(model, cs.data(), rs.data());
  Basis b;
  b.head.assign(d.m, -1);
  for (int j = 0; j < d.n; j++)
    if (cs[j] >= 0 && cs[j] < d.m) b.head[cs[j]] = j;
  for (int i = 0; i < d.m; i++)
    if (rs[i] >= 0 && rs[i] < d.m) b.head[rs[i]] = d.n + i;
  return b;
}

// B x for x by position, in rows.
inline std::vector<double> basis_times(const Data &d, const Basis &b, const std::vector<double> &x) {
  std::vector<double> r(d.m, 0.0);
  for (int p = 0; p < d.m; p++) {
    const int j = b.head[p];
    if (j >= d.n) {
      r[j - d.n] += x[p];
      continue;
    }
    for (int k = d.beg[j]; k < d.beg[j] + d.len[j]; k++) r[d.row[k]] += d.a[k] * x[p];
  }
  return r;
}

// B' y for y by row, by position.
inline std::vector<double> basis_ttimes(const Data &d, const Basis &b, const std::vector<double> &y) {
  std::vector<double> r(d.m, 0.0);
  for (int p = 0; p < d.m; p++) {
    const int j = b.head[p];
    if (j >= d.n) {
      r[p] = y[j - d.n];
      continue;
    }
    double s = 0;
    for (int k = d.beg[j]; k < d.beg[j] + d.len[j]; k++) s += d.a[k] * y[d.row[k]];
    r[p] = s;
  }
  return r;
}

// A feasible, bounded LP: min c x with c < 0, A x <= b (A >= 0, b > 0), 0 <= x <= u,
// plus a few >= rows that hold at x = small values; deterministic by seed.
inline int load_random_lp(pModel model, int m, int n, uint32_t seed, int sense = 1) {
  uint32_t s = seed;
  auto rnd = [&]() {
    s = s * 1664525u + 1013904223u;
    return (s >> 8) / 16777216.0;
  };
  std::vector<int> beg(n + 1, 0), row;
  std::vector<double> a, c(n), l(n, 0.0), u(n), b(m);
  std::vector<char> t(m, 'L');
  for (int j = 0; j < n; j++) {
    for (int i = 0; i < m; i++)
      if (i == m - 1 || rnd() < 0.3) {  // the last row bounds every column
        row.push_back(i);
        a.push_back(1.0 + std::floor(9 * rnd()));
      }
    beg[j + 1] = static_cast<int>(row.size());
    c[j] = sense * -(1.0 + std::floor(20 * rnd()));
    u[j] = rnd() < 0.3 ? 2.0 + std::floor(5 * rnd()) : KX_INFINITY;
  }
  for (int i = 0; i < m; i++) b[i] = 20.0 + std::floor(80 * rnd());
  b[m - 1] = 10.0 * n;
  // Every fifth row a lower limit of 1 on its activity.
  for (int i = 0; i < m - 1; i += 5) {
    t[i] = 'G';
    b[i] = 1.0;
  }
  return KXloadLPData(model, m, n, sense, 0.0, c.data(), b.data(), t.data(), static_cast<int>(a.size()),
                      beg.data(), nullptr, a.data(), row.data(), l.data(), u.data());
}

}  // namespace qtest
