// qap15 by the primal simplex with presolve off: the longest test of `make test`
// (about ten minutes on one core).  Its own program, which ctest starts first, so
// the rest of the suite runs beside it on the other core.  The dual and the
// default presolve on qap15 take longer still and stay in data-huge.
#include "simplex/netlib_support.h"

namespace {

using kxtest::NetlibCase;

std::vector<NetlibCase> longest_cases() {
  return kxtest::netlib_cases([](const NetlibCase &c) { return kxtest::netlib_is_huge(c.name); });
}

class NetlibPrimalLongest : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibPrimalLongest, SolvesToTheManifestOptimum) {
  kxtest::solve_and_check(GetParam(), KX_METHOD_PSIMPLEX, 1);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibPrimalLongest, testing::ValuesIn(longest_cases()), kxtest::case_label);

}  // namespace
