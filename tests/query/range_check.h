// range_check.h - sensitivity ranges checked by solving again: a move of 0.9 of
// a reported range keeps the optimal basis, a move of 1.1 changes it or makes
// the model infeasible.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "korva.h"
#include "query/query_util.h"

namespace qtest {

enum RangeKind { kRhs = 0, kCost = 1, kBound = 2 };

struct BasisState {
  std::vector<int> cs, rs;
};

inline BasisState get_basis(pModel model, const Data &d) {
  BasisState b;
  b.cs.resize(d.n);
  b.rs.resize(d.m);
  KXgetBasis(model, b.cs.data(), b.rs.data());
  return b;
}

// The same basic variables, and the nonbasic ones at the same bounds.
inline bool same_basis(const BasisState &a, const BasisState &b) {
  auto same = [](int s, int t) { return s >= 0 ? t >= 0 : s == t; };
  for (size_t j = 0; j < a.cs.size(); j++)
    if (!same(a.cs[j], b.cs[j])) return false;
  for (size_t i = 0; i < a.rs.size(); i++)
    if (!same(a.rs[i], b.rs[i])) return false;
  return true;
}

// Solve from `start` after setting item k of `kind` to `value`; true when the
// optimal basis is that of `start` (false also for an infeasible end).
inline bool keeps_basis(pModel model, const Data &d, const BasisState &start, RangeKind kind, int k,
                        bool upperBound, double value, int method) {
  // A bound moved past the other one leaves no feasible point.
  if (kind == kBound && (upperBound ? value < d.l[k] : value > d.u[k])) return false;
  int rc = 0;
  if (kind == kRhs) rc = KXmodifyRHS(model, 1, &k, &value);
  else if (kind == kCost) rc = KXmodifyObjective(model, 1, &k, &value);
  else if (upperBound) rc = KXmodifyUpperBounds(model, 1, &k, &value);
  else rc = KXmodifyLowerBounds(model, 1, &k, &value);
  EXPECT_EQ(rc, 0);
  EXPECT_EQ(KXloadBasis(model, start.cs.data(), start.rs.data()), 0);
  int st = 0;
  rc = KXoptimize(model, method, &st);
  bool keep = false;
  if (rc == 0 && (st == KX_STATUS_BASIC_OPTIMAL || st == KX_STATUS_OPTIMAL)) keep = same_basis(start, get_basis(model, d));
  return keep;
}

// Check up to maxItems items that have a finite, nonzero range on each side.
// Returns the number of sides checked; the model is left as it was, solved.
inline int check_ranges(pModel model, RangeKind kind, int maxItems) {
  KXsetModelIntParameter(model, KX_IPARAM_LP_PRELEVEL, 0);
  int st = 0;
  EXPECT_EQ(KXoptimize(model, KX_METHOD_DSIMPLEX, &st), 0);
  const Data d = read_data(model);
  const BasisState start = get_basis(model, d);
  const int len = kind == kRhs ? d.m : d.n;
  std::vector<double> dec(len), inc(len);
  int rc = kind == kRhs ? KXgetConstraintRanges(model, dec.data(), inc.data())
           : kind == kCost ? KXgetObjectiveRanges(model, dec.data(), inc.data())
                           : KXgetBoundRanges(model, dec.data(), inc.data());
  EXPECT_EQ(rc, 0);
  if (rc) return 0;
  const int method = kind == kCost ? KX_METHOD_PSIMPLEX : KX_METHOD_DSIMPLEX;
  int checked = 0, items = 0;
  const int stride = std::max(1, len / std::max(1, maxItems));
  for (int k = 0; k < len && items < maxItems; k += stride) {
    // The value that moves and the direction of each side.
    double base;
    bool upper = false;
    double sgnDec = -1, sgnInc = 1;
    if (kind == kRhs) {
      base = d.b[k];
    } else if (kind == kCost) {
      base = d.c[k];
    } else {
      const int s = start.cs[k];
      if (s >= 0 || s == -3) {
        // Basic: the lower bound rises by up to dec, the upper falls by up to inc.
        if (d.l[k] > -KX_INFINITY && dec[k] < 1e29 && dec[k] > 1e-6) {
          const bool k09 = keeps_basis(model, d, start, kBound, k, false, d.l[k] + 0.9 * dec[k], method);
          const bool k11 = keeps_basis(model, d, start, kBound, k, false, d.l[k] + 1.1 * dec[k], method);
          EXPECT_TRUE(k09) << "lower of basic column " << k;
          EXPECT_FALSE(k11) << "lower of basic column " << k;
          KXmodifyLowerBounds(model, 1, &k, &d.l[k]);
          checked += 2;
        }
        if (d.u[k] < KX_INFINITY && inc[k] < 1e29 && inc[k] > 1e-6) {
          const bool k09 = keeps_basis(model, d, start, kBound, k, true, d.u[k] - 0.9 * inc[k], method);
          const bool k11 = keeps_basis(model, d, start, kBound, k, true, d.u[k] - 1.1 * inc[k], method);
          EXPECT_TRUE(k09) << "upper of basic column " << k;
          EXPECT_FALSE(k11) << "upper of basic column " << k;
          KXmodifyUpperBounds(model, 1, &k, &d.u[k]);
          checked += 2;
        }
        items++;
        continue;
      }
      upper = s == -2;
      base = upper ? d.u[k] : d.l[k];
    }
    bool any = false;
    for (int side = 0; side < 2; side++) {
      const double r = side == 0 ? dec[k] : inc[k];
      const double sg = side == 0 ? sgnDec : sgnInc;
      if (!(r > 1e-6 * (1 + std::fabs(base))) || r >= 1e29) continue;
      const bool k09 = keeps_basis(model, d, start, kind, k, upper, base + sg * 0.9 * r, method);
      const bool k11 = keeps_basis(model, d, start, kind, k, upper, base + sg * 1.1 * r, method);
      EXPECT_TRUE(k09) << "kind " << kind << " item " << k << " side " << side << " range " << r;
      EXPECT_FALSE(k11) << "kind " << kind << " item " << k << " side " << side << " range " << r;
      checked += 2;
      any = true;
    }
    // Restore the value.
    if (kind == kRhs) KXmodifyRHS(model, 1, &k, &base);
    else if (kind == kCost) KXmodifyObjective(model, 1, &k, &base);
    else if (upper) KXmodifyUpperBounds(model, 1, &k, &base);
    else KXmodifyLowerBounds(model, 1, &k, &base);
    if (any) items++;
  }
  KXloadBasis(model, start.cs.data(), start.rs.data());
  KXoptimize(model, KX_METHOD_DSIMPLEX, &st);
  return checked;
}

}  // namespace qtest
