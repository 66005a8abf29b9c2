// qap15 by the primal simplex with the default presolve: the longest test of
// `make test` (about twelve minutes on one core).  Its own program, which ctest
// starts first, so the rest of the suite runs beside it on the other core.
//
// The presolve finds nothing to remove from qap15 (asserted below), so the run is
// the primal simplex on the whole model, as with presolve off, and the same run
// also checks the postsolve path: optimality conditions on the original and a
// re-solve from the returned basis in no iteration.  The dual and the free method
// on qap15 take longer still and stay in data-huge.
#include "netlib_presolve_common.h"
#include "simplex/netlib_support.h"

namespace {

using kxtest::NetlibCase;

std::vector<NetlibCase> longest_cases() {
  return kxtest::netlib_cases([](const NetlibCase &c) { return kxtest::netlib_is_huge(c.name); });
}

class NetlibPrimalLongest : public testing::TestWithParam<NetlibCase> {};

TEST_P(NetlibPrimalLongest, DefaultPresolveLeavesItWholeAndThePrimalSolvesIt) {
  if (!netpre::have_netlib()) GTEST_SKIP() << "netlib data absent under " << kxtest::data_dir();
  const NetlibCase &c = GetParam();
  {
    kxtest::EnvModel em;
    ASSERT_TRUE(kxtest::read_netlib_file(em, c));
    int rows = -1, cols = -1, nonz = -1;
    ASSERT_EQ(KXgetReducedDim(em.model, &rows, &cols, &nonz), 0);
    EXPECT_EQ(rows, em.model->nCons);
    EXPECT_EQ(cols, em.model->nVars);
    EXPECT_EQ(nonz, em.model->nNonz);
  }
  for (const auto &e : netpre::manifest())
    if (e.name == c.name) netpre::check_model(e, KX_METHOD_PSIMPLEX);
}

INSTANTIATE_TEST_SUITE_P(Netlib, NetlibPrimalLongest, testing::ValuesIn(longest_cases()), kxtest::case_label);

}  // namespace
