// The dual simplex with methods 2 and 0 on the netlib models that take more
// than a few seconds.
#include "data_suite/netlib_dual_common.h"

namespace {

using kxtest::NetlibCase;

std::vector<NetlibCase> large_cases() {
  return kxtest::netlib_cases([](const NetlibCase &c) {
    return !kxtest::netlib_is_huge(c.name) &&
           (kxtest::netlib_is_large(c.name) || c.name == "gosh" || c.name == "ceria3d");
  });
}

class NetlibDualLarge : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibDualLarge, MethodsTwoAndZero) {
  if (!kxtest::have_data("netlib/manifest.csv")) GTEST_SKIP() << "netlib data absent";
  kxtest::dual_solve_and_check(GetParam(), KX_METHOD_DSIMPLEX, -2, -2);
  kxtest::dual_solve_and_check(GetParam(), KX_METHOD_FREE, -2, -2);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibDualLarge, testing::ValuesIn(large_cases()), kxtest::case_label);

}  // namespace
