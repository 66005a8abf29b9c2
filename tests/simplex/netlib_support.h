// netlib_support.h - the netlib manifest and one solve of a netlib model with
// the checks a user would trust: status, objective against the manifest,
// primal and dual feasibility and complementary slackness on the original data.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <initializer_list>
#include <string>
#include <vector>

#include "simplex/lp_check.h"
#include "support/kx_test_util.h"

namespace kxtest {

struct NetlibCase {
  std::string name, set;
  double optimum = 0;
};

inline std::vector<NetlibCase> netlib_manifest() {
  std::vector<NetlibCase> out;
  std::ifstream in(data_dir() + "/netlib/manifest.csv");
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line)) {
    std::vector<std::string> f;
    std::string cur;
    for (char c : line) {
      if (c == ',') {
        f.push_back(cur);
        cur.clear();
      } else {
        cur += c;
      }
    }
    f.push_back(cur);
    if (f.size() < 6) continue;
    NetlibCase c;
    c.name = f[0];
    c.set = f[1];
    c.optimum = f[5].empty() ? 0.0 : std::stod(f[5]);
    out.push_back(c);
  }
  return out;
}

// The manifest's models for which keep(case) holds; with none (no data), one
// stand-in named "absent", whose test reports the skip.
template <class Keep>
std::vector<NetlibCase> netlib_cases(Keep keep) {
  std::vector<NetlibCase> out;
  for (const NetlibCase &c : netlib_manifest())
    if (keep(c)) out.push_back(c);
  if (out.empty()) out.push_back(NetlibCase{"absent", "feasible", 0});
  return out;
}

// The feasible models of the names given, in the manifest's order.
inline std::vector<NetlibCase> netlib_named(std::initializer_list<const char *> names) {
  return netlib_cases([&](const NetlibCase &c) {
    if (c.set != "feasible") return false;
    for (const char *n : names)
      if (c.name == n) return true;
    return false;
  });
}

inline std::string case_label(const testing::TestParamInfo<NetlibCase> &info) {
  std::string s = info.param.set + "_" + info.param.name;
  for (char &c : s)
    if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
  return s;
}

// Read a netlib model into em's model, fixed MPS first, then free; its parameters
// are left at their defaults.  False (with a failed expectation) when it cannot be read.
inline bool read_netlib_file(EnvModel &em, const NetlibCase &c) {
  const std::string path = data_dir() + "/netlib/" + c.set + "/" + c.name + ".mps.gz";
  int rc = KXreadMPSFile(em.model, path.c_str(), KX_MPS_FIXED);
  if (rc == KXERR_BAD_MPS_FILE) {
    KXclearModel(em.model);
    rc = KXreadMPSFile(em.model, path.c_str(), KX_MPS_FREE);
  }
  EXPECT_EQ(rc, 0) << path;
  return rc == 0;
}

// Solve one model with a method and a scaling mode, and check the answer.
inline void solve_and_check(const NetlibCase &c, int method, int scale) {
  if (!have_data("netlib/manifest.csv")) GTEST_SKIP() << "netlib data absent under " << data_dir();
  EnvModel em;
  ASSERT_TRUE(read_netlib_file(em, c));
  KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
  KXsetModelIntParameter(em.model, KX_IPARAM_LP_SCALE, scale);
  int status = 0;
  ASSERT_EQ(KXoptimize(em.model, method, &status), 0) << c.name;
  if (c.set == "infeasible") {
    EXPECT_TRUE(status == KX_STATUS_INFEASIBLE || status == KX_STATUS_INFORUNB) << c.name << " " << status;
    return;
  }
  ASSERT_EQ(status, KX_STATUS_BASIC_OPTIMAL) << c.name;
  const LPCheck k = check_lp_solution(em.model);
  // The manifest's optima leave the objective constant out.
  const double obj = k.obj - em.model->objConst;
  EXPECT_LE(std::fabs(obj - c.optimum) / std::max(1.0, std::fabs(c.optimum)), 1e-6)
      << c.name << " objective " << obj << " reference " << c.optimum;
  EXPECT_LE(k.pinf, 1e-7) << c.name;
  EXPECT_LE(k.dinf, 1e-7) << c.name;
  EXPECT_LE(k.djErr, 1e-7) << c.name;
  EXPECT_LE(k.objErr, 1e-9) << c.name;
}

// Models that take many minutes with either simplex method: label data-huge, run
// by hand.  qap12 (about a minute by the dual, two by the primal) and dfl001 run
// with the large ones.
inline bool netlib_is_huge(const std::string &name) { return name == "qap15"; }

// Models that take more than a few seconds with the primal simplex (the huge
// ones included; the large suites leave those out).
inline bool netlib_is_large(const std::string &name) {
  static const char *big[] = {"d2q06c",   "d6cube",  "dfl001", "fit2d", "fit2p", "greenbea",
                              "greenbeb", "maros-r7", "pilot", "pilot.ja", "pilot87", "qap8",
                              "qap12",    "qap15",   "stocfor3", "truss"};
  for (const char *b : big)
    if (name == b) return true;
  return false;
}

}  // namespace kxtest
