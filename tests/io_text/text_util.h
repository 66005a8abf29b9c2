// Helpers of the text-file tests: a snapshot of a model's data through the
// public getters, compared field by field, and small file helpers.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "korva.h"

namespace txt {

inline int info(pModel m, int id) {
  int v = -1;
  KXgetInfo(m, id, &v);
  return v;
}

// Row activity bounds [lo, hi] of a row from its type, right-hand side and range.
inline void row_span(char t, double b, double r, double *lo, double *hi) {
  const double inf = KX_INFINITY;
  const bool ranged = std::fabs(r) < inf;
  switch (t) {
    case 'L': *hi = b; *lo = ranged ? b - std::fabs(r) : -inf; break;
    case 'G': *lo = b; *hi = ranged ? b + std::fabs(r) : inf; break;
    case 'E':
      *lo = *hi = b;
      if (ranged) (r > 0 ? *hi : *lo) = b + r;
      break;
    default: *lo = -inf; *hi = inf; break;
  }
}

struct Snap {
  int m = 0, n = 0, nz = 0, sense = 0;
  double c0 = 0;
  std::vector<double> c, b, a, l, u, r;
  std::vector<int> beg, rows;
  std::string types, vt;
  std::vector<std::string> colNames, rowNames;
  // Sets and semi-continuous data.
  int nSets = 0;
  std::string setTypes;
  std::vector<int> setBeg, setCols, setCard;
  std::vector<int> scVars;
  std::vector<double> scL, scU;
};

inline Snap snap(pModel model) {
  Snap s;
  s.m = info(model, KX_IINFO_NUM_CONS);
  s.n = info(model, KX_IINFO_NUM_VARS);
  s.nz = info(model, KX_IINFO_NUM_NONZ);
  s.c.resize(s.n);
  s.l.resize(s.n);
  s.u.resize(s.n);
  s.b.resize(s.m);
  s.r.resize(s.m);
  s.a.resize(s.nz);
  s.rows.resize(s.nz);
  s.beg.resize(s.n + 1);
  s.types.resize(s.m);
  s.vt.resize(s.n);
  EXPECT_EQ(KXgetLPData(model, &s.sense, &s.c0, s.c.data(), s.b.data(), s.types.data(),
                        s.beg.data(), nullptr, s.a.data(), s.rows.data(), s.l.data(), s.u.data()),
            0);
  // Entries of a column by ascending row: the order within a column is no data.
  for (int j = 0; j < s.n; ++j) {
    std::vector<std::pair<int, double>> e;
    for (int k = s.beg[j]; k < s.beg[j + 1]; ++k) e.push_back({s.rows[k], s.a[k]});
    std::sort(e.begin(), e.end());
    for (int k = s.beg[j]; k < s.beg[j + 1]; ++k) {
      s.rows[k] = e[k - s.beg[j]].first;
      s.a[k] = e[k - s.beg[j]].second;
    }
  }
  if (KXgetConstraintRangeValues(model, s.r.data()) != 0) s.r.assign(s.m, KX_INFINITY);
  KXgetVarType(model, s.vt.data());
  std::vector<char> buf(4096);
  for (int j = 0; j < s.n; ++j) {
    buf[0] = 0;
    KXgetVariableNamej(model, j, buf.data());
    s.colNames.push_back(buf.data());
  }
  for (int i = 0; i < s.m; ++i) {
    buf[0] = 0;
    KXgetConstraintNamei(model, i, buf.data());
    s.rowNames.push_back(buf.data());
  }
  int nnz = 0;
  if (KXgetSETSData(model, &s.nSets, &nnz, nullptr, nullptr, nullptr, nullptr) == 0 && s.nSets > 0) {
    s.setTypes.resize(s.nSets);
    s.setBeg.resize(s.nSets + 1);
    s.setCols.resize(nnz);
    s.setCard.resize(s.nSets);
    KXgetSETSData(model, &s.nSets, &nnz, s.setTypes.data(), s.setCard.data(), s.setBeg.data(),
                  s.setCols.data());
  } else {
    s.nSets = 0;
  }
  int nsc = 0;
  if (KXgetSemiContData(model, &nsc, nullptr, nullptr, nullptr) == 0 && nsc > 0) {
    s.scVars.resize(nsc);
    s.scL.resize(nsc);
    s.scU.resize(nsc);
    KXgetSemiContData(model, &nsc, s.scVars.data(), s.scL.data(), s.scU.data());
  }
  return s;
}

// Compare two snapshots.  Ranged rows compare by their activity bounds (the
// text may state them by their two sides); names compare when asked.
inline void expect_same(const Snap &x, const Snap &y, bool names, bool exactRanges) {
  ASSERT_EQ(x.m, y.m);
  ASSERT_EQ(x.n, y.n);
  ASSERT_EQ(x.nz, y.nz);
  EXPECT_EQ(x.sense, y.sense);
  EXPECT_EQ(x.c0, y.c0);
  EXPECT_EQ(x.c, y.c);
  EXPECT_EQ(x.l, y.l);
  EXPECT_EQ(x.u, y.u);
  EXPECT_EQ(x.beg, y.beg);
  EXPECT_EQ(x.rows, y.rows);
  EXPECT_EQ(x.a, y.a);
  EXPECT_EQ(x.vt, y.vt);
  for (int i = 0; i < x.m; ++i) {
    const bool rx = std::fabs(x.r[i]) < KX_INFINITY, ry = std::fabs(y.r[i]) < KX_INFINITY;
    if (!exactRanges && (rx || ry)) {
      double lx, hx, ly, hy;
      row_span(x.types[i], x.b[i], x.r[i], &lx, &hx);
      row_span(y.types[i], y.b[i], y.r[i], &ly, &hy);
      EXPECT_NEAR(lx, ly, 1e-12 * (1 + std::fabs(lx))) << "row " << i;
      EXPECT_NEAR(hx, hy, 1e-12 * (1 + std::fabs(hx))) << "row " << i;
    } else {
      EXPECT_EQ(x.types[i], y.types[i]) << "row " << i;
      EXPECT_EQ(x.b[i], y.b[i]) << "row " << i;
      EXPECT_EQ(x.r[i], y.r[i]) << "row " << i;
    }
  }
  if (names) {
    EXPECT_EQ(x.colNames, y.colNames);
    EXPECT_EQ(x.rowNames, y.rowNames);
  }
  EXPECT_EQ(x.nSets, y.nSets);
  EXPECT_EQ(x.setTypes, y.setTypes);
  EXPECT_EQ(x.setBeg, y.setBeg);
  EXPECT_EQ(x.setCols, y.setCols);
  EXPECT_EQ(x.scVars, y.scVars);
  EXPECT_EQ(x.scL, y.scL);
  EXPECT_EQ(x.scU, y.scU);
}

inline void put_file(const std::string &path, const std::string &text) {
  std::ofstream f(path, std::ios::binary);
  f << text;
}

inline std::string get_file(const std::string &path) {
  std::ifstream f(path, std::ios::binary);
  std::stringstream ss;
  ss << f.rdbuf();
  return ss.str();
}

inline std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> v;
  std::stringstream ss(text);
  std::string l;
  while (std::getline(ss, l)) v.push_back(l);
  return v;
}

}  // namespace txt
