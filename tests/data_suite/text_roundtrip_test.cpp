// Text formats on the netlib set: MPS to KORVA text and to LP text and back
// gives the same data and the same optimum; the basis written in each form and
// read into a fresh load re-solves in 0 iterations.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "io/textio.h"
#include "io_text/text_util.h"
#include "korva.h"
#include "support/kx_test_util.h"

namespace fs = std::filesystem;

namespace {

using kxtest::TempDir;

std::vector<fs::path> netlib_files(const char *sub) {
  std::vector<fs::path> v;
  fs::path dir = fs::path(kxtest::data_dir()) / "netlib" / sub;
  if (!fs::is_directory(dir)) return v;
  for (auto &e : fs::directory_iterator(dir))
    if (e.path().extension() == ".gz") v.push_back(e.path());
  std::sort(v.begin(), v.end());
  return v;
}

std::string stem(const fs::path &p) {
  std::string s = p.filename().string();
  return s.substr(0, s.find(".mps"));
}

struct EnvH {
  pEnv env;
  EnvH() {
    int rc;
    env = KXcreateEnv(&rc);
  }
  ~EnvH() { KXdeleteEnv(&env); }
};

struct ModelH {
  pModel m;
  explicit ModelH(pEnv e) {
    int rc;
    m = KXcreateModel(e, &rc);
  }
  ~ModelH() { KXdeleteModel(&m); }
};

int read_mps(pModel m, const fs::path &f) {
  int rc = KXreadMPSFile(m, f.c_str(), KX_MPS_FIXED);
  if (rc == KXERR_BAD_MPS_FILE) {
    KXclearModel(m);
    rc = KXreadMPSFile(m, f.c_str(), KX_MPS_FREE);
  }
  return rc;
}

// The names a text writer gives the columns and rows of a model.
void writer_names(pModel m, const kxi::NameRules &r, txt::Snap &s) {
  kxi::text_names(m, r, s.colNames, s.rowNames);
}

#define SKIP_WITHOUT_NETLIB()                                                             \
  do {                                                                                    \
    if (!kxtest::have_data("netlib/feasible")) {                                          \
      std::printf("netlib data absent under %s: skipped\n", kxtest::data_dir().c_str()); \
      GTEST_SKIP() << "netlib data absent";                                               \
    }                                                                                     \
  } while (0)

// Read each netlib model, write it in a text form, read it back, compare.
void data_round_trip(bool lp) {
  EnvH env;
  TempDir td;
  int done = 0;
  for (const char *sub : {"feasible", "infeasible"}) {
    for (auto &f : netlib_files(sub)) {
      SCOPED_TRACE(stem(f));
      ModelH a(env.env), b(env.env);
      ASSERT_EQ(read_mps(a.m, f), 0);
      txt::Snap sa = txt::snap(a.m);
      writer_names(a.m, lp ? kxi::kLpRules : kxi::kKorvaRules, sa);
      std::string path = td.file(stem(f) + (lp ? ".lp" : ".kvx"));
      ASSERT_EQ(lp ? KXwriteLPFile(a.m, path.c_str()) : KXwriteKORVAFile(a.m, path.c_str()), 0);
      int rc = lp ? KXreadLPFile(b.m, path.c_str()) : KXreadKORVAFile(b.m, path.c_str());
      if (rc) {
        int line = 0;
        char text[1024];
        KXgetFileError(env.env, &line, text);
        ADD_FAILURE() << "line " << line << ": " << text;
        continue;
      }
      txt::Snap sb = txt::snap(b.m);
      txt::expect_same(sa, sb, true, !lp);
      ++done;
    }
  }
  std::printf("%d netlib models through %s text\n", done, lp ? "LP" : "KORVA");
}

TEST(TextRoundTrip, NetlibThroughKorvaTextKeepsTheData) {
  SKIP_WITHOUT_NETLIB();
  data_round_trip(false);
}

TEST(TextRoundTrip, NetlibThroughLpTextKeepsTheData) {
  SKIP_WITHOUT_NETLIB();
  data_round_trip(true);
}

bool rel_close(double a, double b, double tol) {
  return std::fabs(a - b) <= tol * std::max(1.0, std::fabs(b));
}

// Solve with a time limit; true when optimal.
bool solve(pModel m, double limit, double *obj, int *iters, int method = KX_METHOD_FREE) {
  KXsetModelDouParameter(m, KX_DPARAM_SOLVER_TIMLMT, limit);
  int st = 0;
  int rc = KXoptimize(m, method, &st);
  if (rc || (st != KX_STATUS_OPTIMAL && st != KX_STATUS_BASIC_OPTIMAL)) return false;
  KXgetObjective(m, obj);
  KXgetInfo(m, KX_IINFO_SIM_ITER, iters);
  return true;
}

TEST(TextRoundTrip, NetlibOptimaAgreeThroughBothTextForms) {
  SKIP_WITHOUT_NETLIB();
  EnvH env;
  TempDir td;
  int compared = 0;
  for (auto &f : netlib_files("feasible")) {
    const std::string name = stem(f);
    SCOPED_TRACE(name);
    ModelH a(env.env);
    ASSERT_EQ(read_mps(a.m, f), 0);
    if (txt::info(a.m, KX_IINFO_NUM_NONZ) > 20000) continue;  // keep the suite quick
    double oa = 0;
    int it = 0;
    if (!solve(a.m, 5.0, &oa, &it)) continue;
    for (bool lp : {false, true}) {
      std::string path = td.file(name + (lp ? ".lp" : ".kvx"));
      ASSERT_EQ(lp ? KXwriteLPFile(a.m, path.c_str()) : KXwriteKORVAFile(a.m, path.c_str()), 0);
      ModelH b(env.env);
      ASSERT_EQ(lp ? KXreadLPFile(b.m, path.c_str()) : KXreadKORVAFile(b.m, path.c_str()), 0);
      double ob = 0;
      ASSERT_TRUE(solve(b.m, 20.0, &ob, &it)) << (lp ? "LP" : "KORVA");
      EXPECT_TRUE(rel_close(ob, oa, 1e-8)) << ob << " vs " << oa << (lp ? " LP" : " KORVA");
    }
    ++compared;
  }
  std::printf("%d netlib optima compared through KORVA and LP text\n", compared);
  EXPECT_GT(compared, 30);
}

TEST(TextRoundTrip, NetlibDualKorvaFileHasThePrimalOptimum) {
  SKIP_WITHOUT_NETLIB();
  EnvH env;
  TempDir td;
  int compared = 0;
  for (auto &f : netlib_files("feasible")) {
    const std::string name = stem(f);
    SCOPED_TRACE(name);
    ModelH a(env.env);
    ASSERT_EQ(read_mps(a.m, f), 0);
    if (txt::info(a.m, KX_IINFO_NUM_NONZ) > 5000) continue;
    double oa = 0;
    int it = 0;
    if (!solve(a.m, 2.0, &oa, &it)) continue;
    std::string path = td.file(name + "_dual.kvx");
    ASSERT_EQ(KXwriteDualKORVAFile(a.m, path.c_str()), 0);
    ModelH d(env.env);
    ASSERT_EQ(KXreadKORVAFile(d.m, path.c_str()), 0);
    double od = 0;
    // The dual is solved by the primal simplex when the default choice fails.
    if (!solve(d.m, 5.0, &od, &it) && !solve(d.m, 5.0, &od, &it, KX_METHOD_PSIMPLEX)) {
      ADD_FAILURE() << "dual not solved";
      continue;
    }
    EXPECT_TRUE(rel_close(od, oa, 1e-6)) << od << " vs " << oa;
    ++compared;
  }
  std::printf("%d netlib duals compared\n", compared);
  EXPECT_GT(compared, 20);
}

// Solve, write the basis, load the model afresh, read the basis, re-solve.
TEST(TextRoundTrip, NetlibBasisInEachReadableFormResolvesInZeroIterations) {
  SKIP_WITHOUT_NETLIB();
  EnvH env;
  TempDir td;
  int models = 0;
  for (auto &f : netlib_files("feasible")) {
    const std::string name = stem(f);
    SCOPED_TRACE(name);
    ModelH a(env.env);
    ASSERT_EQ(read_mps(a.m, f), 0);
    KXsetModelIntParameter(a.m, KX_IPARAM_LP_PRELEVEL, 0);
    auto t0 = std::chrono::steady_clock::now();
    double oa = 0;
    int it = 0;
    if (!solve(a.m, 1.0, &oa, &it)) continue;
    if (std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count() > 1.0) continue;
    const std::string bin = td.file(name + ".bas"), text = td.file(name + ".txt"),
                      mps = td.file(name + "_bas.mps");
    ASSERT_EQ(KXwriteBasis(a.m, bin.c_str(), KX_BASFILE_BIN), 0);
    ASSERT_EQ(KXwriteBasis(a.m, text.c_str(), KX_BASFILE_TXT), 0);
    ASSERT_EQ(KXwriteBasis(a.m, mps.c_str(), KX_BASFILE_MPS), 0);
    std::vector<int> cs(txt::info(a.m, KX_IINFO_NUM_VARS)), rs(txt::info(a.m, KX_IINFO_NUM_CONS));
    ASSERT_EQ(KXgetBasis(a.m, cs.data(), rs.data()), 0);
    for (int form : {1, 3}) {
      ModelH b(env.env);
      ASSERT_EQ(read_mps(b.m, f), 0);
      KXsetModelIntParameter(b.m, KX_IPARAM_LP_PRELEVEL, 0);
      if (form == 1)
        ASSERT_EQ(KXreadBasis(b.m, bin.c_str(), 1), 0);
      else
        ASSERT_EQ(KXreadVarStartPoint(b.m, text.c_str()), 0);
      double ob = 0;
      int itb = -1;
      ASSERT_TRUE(solve(b.m, 5.0, &ob, &itb)) << "form " << form;
      EXPECT_EQ(itb, 0) << "form " << form;
      EXPECT_TRUE(rel_close(ob, oa, 1e-9)) << ob << " vs " << oa;
    }
    // The MPS form holds the basic columns and an artificial per basic logical.
    ModelH c(env.env);
    ASSERT_EQ(KXreadMPSFile(c.m, mps.c_str(), KX_MPS_FIXED), 0);
    int basics = 0;
    for (int s : cs) basics += s >= 0;
    for (int s : rs) basics += s >= 0;
    EXPECT_EQ(txt::info(c.m, KX_IINFO_NUM_VARS), basics);
    EXPECT_EQ(txt::info(c.m, KX_IINFO_NUM_CONS), static_cast<int>(rs.size()));
    ++models;
  }
  std::printf("%d netlib bases round-tripped\n", models);
  EXPECT_GT(models, 30);
}

}  // namespace
