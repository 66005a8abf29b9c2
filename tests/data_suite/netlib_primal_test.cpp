// The primal simplex on every netlib model that solves in seconds: optimum
// against the manifest, feasibility and optimality conditions on the original
// data; infeasible models must end infeasible.  Scaling modes on a selection,
// by both methods.
#include "simplex/netlib_support.h"

namespace {

using kxtest::NetlibCase;

std::vector<NetlibCase> small_cases() {
  return kxtest::netlib_cases([](const NetlibCase &c) { return !kxtest::netlib_is_large(c.name); });
}

class NetlibPrimal : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibPrimal, SolvesToTheManifestOptimum) {
  kxtest::solve_and_check(GetParam(), KX_METHOD_PSIMPLEX, 1);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibPrimal, testing::ValuesIn(small_cases()), kxtest::case_label);

// Scaling modes 0 to 3 on models whose scaling matters.  pilot.we's costs
// reach 2e5: without scaling its reduced costs keep an absolute tolerance near
// 0.02, and boxed columns of spans in the thousands at such costs once ended
// "optimal" 4e-4 off the optimum.
std::vector<NetlibCase> scaling_cases() {
  return kxtest::netlib_named(
      {"boeing1", "capri", "etamacro", "perold", "pilot4", "scfxm2", "tuff", "forplan", "pilot.we"});
}

class NetlibScaling : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibScaling, EveryScalingModeReachesTheOptimum) {
  for (int scale = 0; scale <= 3; scale++) {
    SCOPED_TRACE("scale " + std::to_string(scale));
    kxtest::solve_and_check(GetParam(), KX_METHOD_PSIMPLEX, scale);
    kxtest::solve_and_check(GetParam(), KX_METHOD_DSIMPLEX, scale);
  }
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibScaling, testing::ValuesIn(scaling_cases()), kxtest::case_label);

}  // namespace
