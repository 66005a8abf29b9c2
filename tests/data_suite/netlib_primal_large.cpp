// The primal simplex on the netlib models that take more than a few seconds.
#include "simplex/netlib_support.h"

namespace {

using kxtest::NetlibCase;

std::vector<NetlibCase> large_cases() {
  return kxtest::netlib_cases(
      [](const NetlibCase &c) { return kxtest::netlib_is_large(c.name) && !kxtest::netlib_is_huge(c.name); });
}

class NetlibPrimalLarge : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibPrimalLarge, SolvesToTheManifestOptimum) {
  kxtest::solve_and_check(GetParam(), KX_METHOD_PSIMPLEX, 1);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibPrimalLarge, testing::ValuesIn(large_cases()), kxtest::case_label);

}  // namespace
