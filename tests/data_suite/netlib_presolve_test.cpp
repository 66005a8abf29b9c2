// Netlib with the default LP presolve by methods 0, 1 and 2 (the slowest models are
// in netlib_presolve_large.cpp).
#include "netlib_presolve_common.h"

namespace {

void run_all(int method) {
  if (!netpre::have_netlib()) {
    std::printf("netlib data absent under %s: skipped\n", kxtest::data_dir().c_str());
    GTEST_SKIP() << "netlib data absent";
  }
  for (const auto &e : netpre::manifest()) {
    if (netpre::large_models().count(e.name)) continue;
    SCOPED_TRACE(e.name);
    netpre::check_model(e, method);
  }
}

TEST(NetlibPresolve, FreeMethod) { run_all(0); }
TEST(NetlibPresolve, PrimalSimplex) { run_all(1); }
TEST(NetlibPresolve, DualSimplex) { run_all(2); }

}  // namespace
