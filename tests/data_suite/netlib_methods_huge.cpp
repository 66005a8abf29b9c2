// The netlib model that takes many minutes (qap15): the dual and the free method,
// with presolve off and with the default presolve.  Label data-huge: `make
// test-huge` runs it; it is kept out of `make test`.  The primal with the default
// presolve, which leaves qap15 whole, runs in `make test`
// (netlib_primal_longest.cpp).
#include "data_suite/netlib_dual_common.h"
#include "netlib_presolve_common.h"

namespace {

using kxtest::NetlibCase;

std::vector<NetlibCase> huge_cases() {
  return kxtest::netlib_cases([](const NetlibCase &c) { return kxtest::netlib_is_huge(c.name); });
}

class NetlibHuge : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibHuge, DualAndFreePresolveOff) {
  if (!kxtest::have_data("netlib/manifest.csv")) GTEST_SKIP() << "netlib data absent";
  kxtest::dual_solve_and_check(GetParam(), KX_METHOD_DSIMPLEX, -2, -2);
  kxtest::dual_solve_and_check(GetParam(), KX_METHOD_FREE, -2, -2);
}

TEST_P(NetlibHuge, DefaultPresolveByTheDualAndTheFreeMethod) {
  if (!netpre::have_netlib()) GTEST_SKIP() << "netlib data absent";
  for (const auto &e : netpre::manifest()) {
    if (e.name != GetParam().name) continue;
    for (int method : {KX_METHOD_FREE, KX_METHOD_DSIMPLEX}) {
      SCOPED_TRACE(e.name + " method " + std::to_string(method));
      netpre::check_model(e, method);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibHuge, testing::ValuesIn(huge_cases()), kxtest::case_label);

}  // namespace
