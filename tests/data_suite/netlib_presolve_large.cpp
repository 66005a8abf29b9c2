// Netlib with the default LP presolve: the slowest models, by methods 0, 1 and 2.
#include "netlib_presolve_common.h"
#include "simplex/netlib_support.h"

namespace {

void run_large(int method) {
  if (!netpre::have_netlib()) {
    std::printf("netlib data absent under %s: skipped\n", kxtest::data_dir().c_str());
    GTEST_SKIP() << "netlib data absent";
  }
  for (const auto &e : netpre::manifest()) {
    if (!netpre::large_models().count(e.name)) continue;
    if (kxtest::netlib_is_huge(e.name)) continue;
    SCOPED_TRACE(e.name);
    netpre::check_model(e, method);
  }
}

TEST(NetlibPresolveLarge, FreeMethod) { run_large(0); }
TEST(NetlibPresolveLarge, PrimalSimplex) { run_large(1); }
TEST(NetlibPresolveLarge, DualSimplex) { run_large(2); }

}  // namespace
