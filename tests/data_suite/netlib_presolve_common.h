// The netlib check of the LP presolve, shared by the regular and the large suite:
// solve with the default presolve by one method, compare with the manifest optimum,
// check the optimality conditions of the postsolved solution on the original model
// (sparse), the validity of its basis, and that a re-solve of the original from it
// with presolve off takes no iteration.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/kx.h"
#include "presolve/presolve.h"
#include "support/kx_test_util.h"

namespace netpre {

struct Entry {
  std::string name, set;
  double optimum = 0;
};

inline std::vector<Entry> manifest() {
  std::vector<Entry> out;
  std::ifstream in(kxtest::data_dir() + "/netlib/manifest.csv");
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    std::stringstream ss(line);
    std::string f[6];
    for (auto &x : f) std::getline(ss, x, ',');
    Entry e{f[0], f[1], f[5].empty() ? 0.0 : std::atof(f[5].c_str())};
    out.push_back(e);
  }
  return out;
}

// The slowest models, run by the data-large suite.
inline const std::set<std::string> &large_models() {
  static const std::set<std::string> s = {"dfl001", "qap12", "qap15", "pilot87", "fit2p",
                                          "stocfor3", "fit2d", "pilot", "truss", "pilot.ja",
                                          "d6cube", "d2q06c", "qap8", "maros-r7", "gosh",
                                          "perold", "greenbea"};
  return s;
}

inline bool have_netlib() {
  return std::filesystem::exists(kxtest::data_dir() + "/netlib/manifest.csv");
}

struct Kkt {
  double pinf = 0, dinf = 0, compl_ = 0;
  int basics = 0;
  int badNonbasic = 0;
};

// Scaled violations: primal by 1 + |bound|, dual by 1 + |cost| of the column (or 1
// for rows), complementarity as the smaller of the two sides of each pair.
inline Kkt kkt(const Model *m) {
  Kkt k;
  const Sol *s = m->sol;
  const int nr = m->nCons, nc = m->nVars;
  const double sense = m->objSense < 0 ? -1.0 : 1.0, inf = 1e30;
  std::vector<double> act(nr, 0.0);
  double cmax = 1.0;
  for (int j = 0; j < nc; ++j) cmax = std::max(cmax, std::fabs(m->cost[j]));
  auto pair = [&](double v, double lo, double up, double g, double dscale) {
    g /= dscale;
    if (lo > -inf) k.pinf = std::max(k.pinf, (lo - v) / (1 + std::fabs(lo)));
    if (up < inf) k.pinf = std::max(k.pinf, (v - up) / (1 + std::fabs(up)));
    if (up >= inf) k.dinf = std::max(k.dinf, -g);
    if (lo <= -inf) k.dinf = std::max(k.dinf, g);
    const double sc = 1 + std::fabs(v);
    if (g > 0 && lo > -inf) k.compl_ = std::max(k.compl_, std::min(g, (v - lo) / sc));
    if (g < 0 && up < inf) k.compl_ = std::max(k.compl_, std::min(-g, (up - v) / sc));
  };
  for (int j = 0; j < nc; ++j) {
    double d = sense * m->cost[j];
    for (int q = m->Abeg[j]; q < m->Abeg[j] + m->Alen[j]; ++q) {
      act[m->Arow[q]] += m->Acoef[q] * s->x[j];
      d -= m->Acoef[q] * sense * s->y[m->Arow[q]];
    }
    pair(s->x[j], m->lower[j], m->upper[j], d, cmax);
    const int st = s->colstat[j];
    if (st >= 0) k.basics++;
    else if (st == -1 && s->x[j] != m->lower[j]) k.badNonbasic++;
    else if (st == -2 && s->x[j] != m->upper[j]) k.badNonbasic++;
  }
  for (int i = 0; i < nr; ++i) {
    double lo = -inf, up = inf, b = m->rhs[i];
    double r = m->rangeVal ? m->rangeVal[i] : inf;
    bool rg = std::fabs(r) < inf;
    switch (m->conType[i]) {
      case 'L': up = b; if (rg) lo = b - std::fabs(r); break;
      case 'G': lo = b; if (rg) up = b + std::fabs(r); break;
      case 'E': lo = up = b; if (rg) (r > 0 ? up : lo) = b + r; break;
      default: break;
    }
    pair(act[i], lo, up, sense * s->y[i], cmax);
    const int st = s->rowstat[i];
    if (st >= 0) k.basics++;
    else if (st == -1 && std::fabs(act[i] - up) > 1e-7 * (1 + std::fabs(up))) k.badNonbasic++;
    else if (st == -2 && std::fabs(act[i] - lo) > 1e-7 * (1 + std::fabs(lo))) k.badNonbasic++;
  }
  return k;
}

inline void check_model(const Entry &e, int method) {
  kxtest::EnvModel em;
  const std::string path = kxtest::data_dir() + "/netlib/" + e.set + "/" + e.name + ".mps.gz";
  ASSERT_EQ(KXreadMPSFile(em.model, path.c_str(), KX_MPS_FIXED), 0) << e.name;
  Model *m = em.model;
  int status = 0;
  ASSERT_EQ(KXoptimize(m, method, &status), 0) << e.name;
  int usedMethod = 0;
  KXgetInfo(m, KX_IINFO_METHOD, &usedMethod);
  if (e.set != "feasible") {
    EXPECT_TRUE(status == KX_STATUS_INFEASIBLE || status == KX_STATUS_INFORUNB)
        << e.name << " status " << status << " method " << usedMethod;
    gen_free_presolve(m);
    return;
  }
  ASSERT_EQ(status, KX_STATUS_BASIC_OPTIMAL) << e.name << " method " << method;
  double obj = 0;
  KXgetObjective(m, &obj);
  obj -= m->objConst;
  EXPECT_LE(std::fabs(obj - e.optimum) / std::max(1.0, std::fabs(e.optimum)), 1e-6)
      << e.name << " objective " << obj << " against " << e.optimum;
  const Kkt k = kkt(m);
  EXPECT_LE(k.pinf, 1e-7) << e.name << " primal infeasibility";
  EXPECT_LE(k.dinf, 1e-7) << e.name << " dual infeasibility";
  EXPECT_LE(k.compl_, 1e-7) << e.name << " complementarity";
  EXPECT_EQ(k.basics, m->nCons) << e.name << " basic count";
  EXPECT_EQ(k.badNonbasic, 0) << e.name << " nonbasics off their bounds";
  gen_free_presolve(m);
  ASSERT_EQ(KXsetModelIntParameter(m, KX_IPARAM_LP_PRELEVEL, 0), 0);
  ASSERT_EQ(KXoptimize(m, method == 0 ? 2 : method, &status), 0) << e.name;
  EXPECT_EQ(status, KX_STATUS_BASIC_OPTIMAL) << e.name;
  int iters = -1;
  KXgetInfo(m, KX_IINFO_SIM_ITER, &iters);
  EXPECT_EQ(iters, 0) << e.name << " re-solve from the postsolved basis, method " << method;
}

}  // namespace netpre
