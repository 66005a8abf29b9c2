// Callbacks: what a progress callback reads of a running primal or dual
// simplex, stopping from it, and the MIP and global callback registration.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "base/kx.h"
#include "support/kx_test_util.h"
#include "query/query_util.h"

namespace {

struct Seen {
  int calls = 0;
  std::vector<int> iters;
  std::vector<double> objs;
  std::vector<int> locations;
  int infoRc = 0;      // first failing KXgetCallbackInfo code
  int stopAfter = -1;  // stop on this call
};

int record(pModel model, int loc, void *data) {
  Seen *s = static_cast<Seen *>(data);
  s->calls++;
  s->locations.push_back(loc);
  if (loc == KX_CALLBACK_PRIMAL || loc == KX_CALLBACK_DUAL) {
    int it = -1;
    double obj = 0;
    int rc = KXgetCallbackInfo(model, loc, KX_IINFO_CUR_ITER, &it);
    if (rc == 0) rc = KXgetCallbackInfo(model, loc, KX_DINFO_CUR_OBJ, &obj);
    if (rc && !s->infoRc) s->infoRc = rc;
    if (rc == 0) {
      s->iters.push_back(it);
      s->objs.push_back(obj);
    }
    // The short form agrees inside the callback.
    int it2 = -2;
    if (KXgetProgressInfo(model, KX_IINFO_CUR_ITER, &it2) != 0 || it2 != it) s->infoRc = -1;
    // An id the simplex doesn't publish.
    int v = 0;
    if (KXgetCallbackInfo(model, loc, KX_IINFO_CUR_BRANCH_COUNT, &v) != KXERR_INFO_NOT_AVAILABLE) s->infoRc = -2;
  }
  return s->calls == s->stopAfter ? 1 : 0;
}

class Progress : public testing::TestWithParam<int> {};

TEST_P(Progress, CallbackSeesRisingIterationsAndTheObjective) {
  const int method = GetParam();
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 40, 60, 17), 0);
  ASSERT_EQ(KXsetModelDouParameter(em.model, KX_DPARAM_CALLBACKFREQ, 0.0), 0);
  ASSERT_EQ(KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0), 0);
  Seen seen;
  ASSERT_EQ(KXsetCallback(em.model, record, &seen), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, method, &st), 0);
  ASSERT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
  EXPECT_EQ(seen.infoRc, 0);
  ASSERT_GE(seen.iters.size(), 3u);
  const int loc = method == KX_METHOD_PSIMPLEX ? KX_CALLBACK_PRIMAL : KX_CALLBACK_DUAL;
  EXPECT_EQ(seen.locations.front(), loc);
  EXPECT_EQ(seen.locations.back(), KX_CALLBACK_END);
  for (size_t k = 1; k < seen.iters.size(); k++) EXPECT_GE(seen.iters[k], seen.iters[k - 1]);
  EXPECT_GT(seen.iters.back(), seen.iters.front());
  // The objective moves during the run and ends at the optimum.
  double obj = 0;
  KXgetObjective(em.model, &obj);
  EXPECT_NEAR(seen.objs.back(), obj, 1e-7 * (1 + std::fabs(obj)));
  bool moved = false;
  for (double o : seen.objs) moved |= std::fabs(o - obj) > 1e-6 * (1 + std::fabs(obj));
  EXPECT_TRUE(moved);
  int it = 0;
  KXgetInfo(em.model, KX_IINFO_SIM_ITER, &it);
  EXPECT_EQ(seen.iters.back(), it);
}

TEST_P(Progress, StoppingFromTheCallbackGives2023AndTheNextSolveGoesOn) {
  const int method = GetParam();
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 40, 60, 23), 0);
  ASSERT_EQ(KXsetModelDouParameter(em.model, KX_DPARAM_CALLBACKFREQ, 0.0), 0);
  ASSERT_EQ(KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0), 0);
  Seen seen;
  seen.stopAfter = 3;
  ASSERT_EQ(KXsetCallback(em.model, record, &seen), 0);
  int st = 0;
  EXPECT_EQ(KXoptimize(em.model, method, &st), KXERR_USER_INTERRUPT);
  EXPECT_GE(seen.calls, 3);  // the run may report its end once more
  EXPECT_LE(seen.calls, 4);
  int err = 0;
  KXgetInfo(em.model, KX_IINFO_ERR_OPTIM, &err);
  EXPECT_EQ(err, KXERR_USER_INTERRUPT);
  ASSERT_EQ(KXsetCallback(em.model, nullptr, nullptr), 0);
  EXPECT_EQ(KXoptimize(em.model, method, &st), 0);
  EXPECT_EQ(st, KX_STATUS_BASIC_OPTIMAL);
}

INSTANTIATE_TEST_SUITE_P(Methods, Progress, testing::Values(KX_METHOD_PSIMPLEX, KX_METHOD_DSIMPLEX));

TEST(Progress, ThroughThePresolveTheCallerStillReadsTheRun) {
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 40, 60, 29), 0);
  ASSERT_EQ(KXsetModelDouParameter(em.model, KX_DPARAM_CALLBACKFREQ, 0.0), 0);
  Seen seen;
  ASSERT_EQ(KXsetCallback(em.model, record, &seen), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  EXPECT_EQ(seen.infoRc, 0);
  EXPECT_FALSE(seen.iters.empty());
}

TEST(Progress, OutsideACallbackOnlyTheShortFormAnswers) {
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 20, 30, 31), 0);
  int it = 0;
  EXPECT_EQ(KXgetCallbackInfo(em.model, KX_CALLBACK_PRIMAL, KX_IINFO_CUR_ITER, &it), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetProgressInfo(em.model, KX_IINFO_CUR_ITER, &it), KXERR_INFO_NOT_AVAILABLE);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  EXPECT_EQ(KXgetCallbackInfo(em.model, KX_CALLBACK_PRIMAL, KX_IINFO_CUR_ITER, &it), KXERR_INFO_NOT_AVAILABLE);
  ASSERT_EQ(KXgetProgressInfo(em.model, KX_IINFO_CUR_ITER, &it), 0);
  int simIt = -1;
  KXgetInfo(em.model, KX_IINFO_SIM_ITER, &simIt);
  EXPECT_EQ(it, simIt);
  double obj = 0, pobj = 1;
  ASSERT_EQ(KXgetProgressInfo(em.model, KX_DINFO_CUR_OBJ, &obj), 0);
  KXgetObjective(em.model, &pobj);
  EXPECT_EQ(obj, pobj);
}

int mip_cb(pModel, void *, double, double *) { return 0; }

TEST(Callbacks, MipAndGlobalCallbacksAreKeptAndRemoved) {
  kxtest::EnvModel em;
  int data = 0;
  ASSERT_EQ(KXsetMIPCallback(em.model, mip_cb, &data), 0);
  ASSERT_EQ(KXsetGOPCallback(em.model, mip_cb, &data), 0);
  const Model *m = em.model;
  EXPECT_EQ(m->mipCbFunc, reinterpret_cast<void *>(mip_cb));
  EXPECT_EQ(m->mipCbData, &data);
  EXPECT_EQ(m->gopCbFunc, reinterpret_cast<void *>(mip_cb));
  EXPECT_EQ(m->gopCbData, &data);
  ASSERT_EQ(KXsetMIPCallback(em.model, nullptr, nullptr), 0);
  ASSERT_EQ(KXsetGOPCallback(em.model, nullptr, nullptr), 0);
  EXPECT_EQ(m->mipCbFunc, nullptr);
  EXPECT_EQ(m->gopCbFunc, nullptr);
  EXPECT_EQ(KXsetMIPCallback(nullptr, mip_cb, nullptr), KXERR_ILLEGAL_NULL_POINTER);
}

}  // namespace
