// Environment and model lifetimes, parameter inheritance, logging, and the
// time/callback/interrupt checkpoint.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/kx.h"
#include "support/kx_test_util.h"

TEST(Lifecycle, NullHandles) {
  EXPECT_EQ(KXdeleteEnv(nullptr), KXERR_ILLEGAL_NULL_POINTER);
  pEnv none = nullptr;
  EXPECT_EQ(KXdeleteEnv(&none), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXdeleteModel(nullptr), 0);
  pModel nm = nullptr;
  EXPECT_EQ(KXdeleteModel(&nm), 0);
  int err = 0;
  EXPECT_EQ(KXcreateModel(nullptr, &err), nullptr);
  EXPECT_EQ(err, KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXclearModel(nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXfreeSolverMemory(nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXfreeSolutionMemory(nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXfreeMIPSolutionMemory(nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXfreeGOPSolutionMemory(nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXfreeHashMemory(nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXsetEnvLogfunc(nullptr, nullptr, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXsetModelLogfunc(nullptr, nullptr, nullptr), KXERR_ILLEGAL_NULL_POINTER);
}

TEST(Lifecycle, ModelsAreListedAndDeletedWithTheirEnv) {
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  std::vector<pModel> models;
  for (int i = 0; i < 5; ++i) {
    models.push_back(KXcreateModel(env, &err));
    ASSERT_EQ(err, 0);
    ASSERT_EQ(kxtest::tiny_lp().load(models.back()), 0);
  }
  int count = 0;
  for (ModelListNode *n = env->modelList; n; n = n->next) ++count;
  EXPECT_EQ(count, 5);
  // Delete one from the middle; the others stay listed.
  ASSERT_EQ(KXdeleteModel(&models[2]), 0);
  EXPECT_EQ(models[2], nullptr);
  count = 0;
  for (ModelListNode *n = env->modelList; n; n = n->next) {
    EXPECT_NE(n->model, models[2]);
    ++count;
  }
  EXPECT_EQ(count, 4);
  // A model of another environment is not found in this one's list: 2015, nothing freed.
  pEnv other = KXcreateEnv(&err);
  pModel stranger = models[0];
  Env *owner = stranger->env;
  stranger->env = other;
  pModel p = stranger;
  EXPECT_EQ(KXdeleteModel(&p), KXERR_INTERNAL_ERROR);
  EXPECT_EQ(p, stranger);
  stranger->env = owner;
  KXdeleteEnv(&other);
  // Deleting the env deletes the rest (LeakSanitizer checks the memory).
  ASSERT_EQ(KXdeleteEnv(&env), 0);
  EXPECT_EQ(env, nullptr);
}

TEST(Lifecycle, ModelKeepsTheParametersItWasCreatedWith) {
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  pModel before = KXcreateModel(env, &err);
  env->splexPam->lpPrintLevel = 3;
  env->splexPam->feasTol = 1e-9;
  env->solverPam->timeLimit = 10.0;
  pModel after = KXcreateModel(env, &err);
  EXPECT_EQ(before->splexPam->lpPrintLevel, 0);
  EXPECT_EQ(before->splexPam->feasTol, 1e-7);
  EXPECT_EQ(before->solverPam->timeLimit, -1.0);
  EXPECT_EQ(after->splexPam->lpPrintLevel, 3);
  EXPECT_EQ(after->solverPam->timeLimit, 10.0);
  // A change on one model reaches nothing else.
  after->splexPam->lpPrintLevel = 7;
  EXPECT_EQ(env->splexPam->lpPrintLevel, 3);
  EXPECT_NE(before->splexPam, env->splexPam);
  KXdeleteEnv(&env);
}

TEST(Lifecycle, ManyCreateLoadDeleteCycles) {
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  const kxtest::SmallLP lp = kxtest::tiny_lp();
  for (int i = 0; i < 10000; ++i) {
    pModel m = KXcreateModel(env, &err);
    ASSERT_NE(m, nullptr);
    ASSERT_EQ(lp.load(m), 0);
    if (i % 3 == 0) {
      ASSERT_EQ(kxi_ensure_sol(m), 0);
    }
    if (i % 5 == 0) {
      ASSERT_EQ(KXclearModel(m), 0);
      ASSERT_EQ(lp.load(m), 0);
    }
    ASSERT_EQ(KXdeleteModel(&m), 0);
  }
  EXPECT_EQ(env->modelList, nullptr);
  KXdeleteEnv(&env);
}

namespace {
struct LogSink {
  std::vector<std::string> lines;
  int inCallbackSeen = -1;
};
void model_log(pModel model, char *text, void *data) {
  auto *sink = static_cast<LogSink *>(data);
  sink->lines.emplace_back(text);
  sink->inCallbackSeen = model->inCallback;
}
}  // namespace

TEST(Logging, ModelLogGoesThroughTheTrampoline) {
  kxtest::EnvModel em;
  LogSink sink;
  kxi_log(em.model, "not sent %d\n", 1);  // no sink yet
  ASSERT_EQ(KXsetModelLogfunc(em.model, model_log, &sink), 0);
  EXPECT_EQ(em.model->logFunc, &internal_LOG);
  em.model->cbLevel = 2;
  kxi_log(em.model, "value %d\n", 42);
  ASSERT_EQ(sink.lines.size(), 1u);
  EXPECT_EQ(sink.lines[0], "value 42\n");
  EXPECT_EQ(sink.inCallbackSeen, 2);
  EXPECT_EQ(em.model->inCallback, 0);
  ASSERT_EQ(KXsetModelLogfunc(em.model, nullptr, nullptr), 0);
  EXPECT_EQ(em.model->logFunc, nullptr);
  kxi_log(em.model, "dropped\n");
  EXPECT_EQ(sink.lines.size(), 1u);
}

namespace {
int stop_callback(pModel, int location, void *data) {
  auto *seen = static_cast<std::vector<int> *>(data);
  seen->push_back(location);
  return seen->size() >= 2 ? 1 : 0;
}
}  // namespace

TEST(Checkpoint, LimitCallbackAndInterrupt) {
  kxtest::EnvModel em;
  Model *m = em.model;
  KXtime start = kx_now();
  EXPECT_EQ(timelapsed(m, start, KX_CALLBACK_PRIMAL, 0, -1.0), 0);
  EXPECT_GT(timelapsed(m, start, KX_CALLBACK_PRIMAL, 0, 0.0), 0);  // a zero limit is reached at once

  std::vector<int> seen;
  m->cbFunc = stop_callback;
  m->cbData = &seen;
  EXPECT_EQ(timelapsed(m, start, KX_CALLBACK_DUAL, 1, -1.0), 0);
  EXPECT_LT(timelapsed(m, start, KX_CALLBACK_PRIMAL, 1, -1.0), 0);
  EXPECT_EQ(seen, (std::vector<int>{KX_CALLBACK_DUAL, KX_CALLBACK_PRIMAL}));
  // Not forced and within the callback frequency: no call.
  m->splexPam->callbackFreq = 1e9;
  EXPECT_EQ(timelapsed(m, start, KX_CALLBACK_PRIMAL, 0, -1.0), 0);
  EXPECT_EQ(seen.size(), 2u);
  m->cbFunc = nullptr;

  ASSERT_EQ(KXresetctrlc(), 0);
  kxi_raise_interrupt();
  m->splexPam->allowCtrlBreak = 0;
  EXPECT_EQ(timelapsed(m, start, KX_CALLBACK_PRIMAL, 0, -1.0), 0);  // not polled
  m->splexPam->allowCtrlBreak = 1;
  EXPECT_LT(timelapsed(m, start, KX_CALLBACK_PRIMAL, 0, -1.0), 0);
  EXPECT_EQ(kxi_interrupt_raised(), 0);  // the flag is reset once seen
  EXPECT_EQ(timelapsed(m, start, KX_CALLBACK_PRIMAL, 0, -1.0), 0);
}

TEST(Quiet, LibraryPrintsNothing) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  {
    int err = 0;
    pEnv env = KXcreateEnv(&err);
    pModel model = KXcreateModel(env, &err);
    kxtest::tiny_lp().load(model);
    kxtest::tiny_lp().load(model);  // refused
    char buf[1024];
    KXgetErrorMessage(env, 99999, buf);
    KXgetErrorMessage(nullptr, 2001, buf);
    double x[2];
    KXgetPrimalSolution(model, x);
    int beg[1] = {0};
    KXloadLPData(model, -1, 0, 1, 0, nullptr, nullptr, nullptr, 0, beg, nullptr, nullptr, nullptr,
                 nullptr, nullptr);
    KXdeleteModel(&model);
    KXdeleteEnv(&env);
  }
  std::string out = testing::internal::GetCapturedStdout();
  std::string errs = testing::internal::GetCapturedStderr();
  EXPECT_EQ(out, "");
  EXPECT_EQ(errs, "");
}
