// KXgetInfo over the whole table of ids on unloaded, loaded and solved models,
// the formatted form, and the environment queries.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "base/query.h"
#include "support/kx_test_util.h"
#include "query/query_util.h"

namespace {

// Writes exactly the bytes of its type: the rest of the buffer keeps its fill.
void expect_typed_answer(pModel model, const KXinfoRow &row, const char *stage) {
  unsigned char buf[300];
  std::memset(buf, 0xAB, sizeof buf);
  const int rc = KXgetInfo(model, row.id, buf);
  SCOPED_TRACE(std::string(stage) + " " + row.name);
  ASSERT_TRUE(rc == 0 || rc == KXERR_INFO_NOT_AVAILABLE) << rc;
  size_t width = row.type == 'I' ? sizeof(int) : row.type == 'D' ? sizeof(double) : 0;
  if (rc != 0) width = 0;
  if (row.type == 'S' && rc == 0) width = std::strlen(reinterpret_cast<char *>(buf)) + 1;
  for (size_t k = width; k < sizeof buf; k++) ASSERT_EQ(buf[k], 0xAB) << "byte " << k;
  if (rc == 0 && row.type == 'D') {
    double v;
    std::memcpy(&v, buf, sizeof v);
    EXPECT_FALSE(std::isnan(v));
  }
}

void sweep(pModel model, const char *stage) {
  int count = 0;
  const KXinfoRow *rows = kxi_info_rows(&count);
  for (int k = 0; k < count; k++) expect_typed_answer(model, rows[k], stage);
}

TEST(Info, TableHoldsEveryIdOfTheHeaderOnceWithItsType) {
  std::string path = __FILE__;
  path = path.substr(0, path.rfind("/tests/")) + "/include/korva.h";
  std::ifstream in(path);
  if (!in) GTEST_SKIP() << "header not found at " << path;
  int seen = 0;
  std::set<int> ids;
  std::string line;
  while (std::getline(in, line)) {
    // "#define KX_<I|D|S>INFO_<NAME> <id>"
    std::istringstream ls(line);
    std::string def, name;
    int id = -1;
    if (!(ls >> def >> name >> id) || def != "#define" || name.size() < 9 || name.compare(0, 3, "KX_") != 0 ||
        name.compare(4, 5, "INFO_") != 0)
      continue;
    const KXinfoRow *row = kxi_info_find(id);
    ASSERT_NE(row, nullptr) << name;
    EXPECT_EQ(std::string(row->name), name);
    EXPECT_EQ(row->type, name[3]);
    EXPECT_TRUE(ids.insert(id).second) << "id used twice: " << id;
    seen++;
  }
  int count = 0;
  kxi_info_rows(&count);
  EXPECT_EQ(seen, count);
  EXPECT_EQ(kxi_info_find(1199), nullptr);
}

TEST(Info, EveryIdAnswersWithItsTypeOnUnloadedLoadedAndSolvedModels) {
  kxtest::EnvModel em;
  sweep(em.model, "unloaded");
  int v = -1;
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_CONS, &v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(em.model, 1199, &v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_VER_MAJOR, &v), 0);
  EXPECT_EQ(v, 6);
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_VER_MINOR, &v), 0);
  EXPECT_EQ(v, 1);

  ASSERT_EQ(qtest::load_random_lp(em.model, 12, 20, 7), 0);
  sweep(em.model, "loaded");
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_CONS, &v), 0);
  EXPECT_EQ(v, 12);
  double dv = 0;
  EXPECT_EQ(KXgetInfo(em.model, KX_DINFO_POBJ, &dv), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_MIP_STATUS, &v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(em.model, KX_DINFO_GOP_OBJ, &dv), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(em.model, KX_DINFO_STOC_EVPI, &dv), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_IIS_ROWS, &v), KXERR_INFO_NOT_AVAILABLE);

  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  sweep(em.model, "solved");
  double obj = 0;
  ASSERT_EQ(KXgetObjective(em.model, &obj), 0);
  EXPECT_EQ(KXgetInfo(em.model, KX_DINFO_POBJ, &dv), 0);
  EXPECT_EQ(dv, obj);
  EXPECT_EQ(KXgetInfo(em.model, KX_DINFO_CUR_OBJ, &dv), 0);
  EXPECT_EQ(dv, obj);
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_MODEL_STATUS, &v), 0);
  EXPECT_EQ(v, st);
  int it = 0;
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_SIM_ITER, &it), 0);
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_CUR_ITER, &v), 0);
  EXPECT_EQ(v, it);

  ASSERT_EQ(KXclearModel(em.model), 0);
  sweep(em.model, "cleared");
  EXPECT_EQ(KXgetInfo(em.model, KX_DINFO_POBJ, &dv), KXERR_INFO_NOT_AVAILABLE);
}

TEST(Info, CoefficientExtremesNameTheirEntries) {
  kxtest::EnvModel em;
  kxtest::SmallLP lp = kxtest::tiny_lp();
  lp.coef = {1.0, -0.25, 7.0, 3.0};  // column 0: rows 0, 1; column 1: rows 0, 1
  ASSERT_EQ(lp.load(em.model), 0);
  double lo = 0, hi = 0;
  int j = -1, i = -1;
  ASSERT_EQ(KXgetInfo(em.model, KX_DINFO_INST_VAL_MIN_COEF, &lo), 0);
  ASSERT_EQ(KXgetInfo(em.model, KX_DINFO_INST_VAL_MAX_COEF, &hi), 0);
  EXPECT_EQ(lo, 0.25);
  EXPECT_EQ(hi, 7.0);
  KXgetInfo(em.model, KX_IINFO_INST_VARNDX_MIN_COEF, &j);
  KXgetInfo(em.model, KX_IINFO_INST_CONNDX_MIN_COEF, &i);
  EXPECT_EQ(j, 0);
  EXPECT_EQ(i, 1);
  KXgetInfo(em.model, KX_IINFO_INST_VARNDX_MAX_COEF, &j);
  KXgetInfo(em.model, KX_IINFO_INST_CONNDX_MAX_COEF, &i);
  EXPECT_EQ(j, 1);
  EXPECT_EQ(i, 0);
}

TEST(Info, ReducedCountsComeFromThePresolve) {
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 12, 20, 3), 0);
  int v = 0;
  EXPECT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_RDCONS, &v), KXERR_INFO_NOT_AVAILABLE);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_DSIMPLEX, &st), 0);  // presolve on by default
  int r = -1, c = -1, z = -1;
  ASSERT_EQ(KXgetReducedDim(em.model, &r, &c, &z), 0);
  if (KXgetInfo(em.model, KX_IINFO_NUM_RDCONS, &v) == 0) {
    EXPECT_EQ(v, r);
    ASSERT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_RDVARS, &v), 0);
    EXPECT_EQ(v, c);
    ASSERT_EQ(KXgetInfo(em.model, KX_IINFO_NUM_RDNONZ, &v), 0);
    EXPECT_EQ(v, z);
  }
}

TEST(Info, FormattedInfoPrintsTheValueByTheTableFormat) {
  kxtest::EnvModel em;
  ASSERT_EQ(qtest::load_random_lp(em.model, 10, 15, 11), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_PSIMPLEX, &st), 0);
  char key[64], text[256];
  ASSERT_EQ(KXgetFormattedInfo(em.model, KX_DINFO_POBJ, key, text), 0);
  EXPECT_STREQ(key, "POBJ");
  double obj = 0;
  KXgetObjective(em.model, &obj);
  const double back = std::strtod(text, nullptr);
  EXPECT_NEAR(back, obj, 1e-5 * (1 + std::fabs(obj)));
  EXPECT_EQ(text[std::strlen(text) - 1], ',');
  ASSERT_EQ(KXgetFormattedInfo(em.model, KX_IINFO_NUM_CONS, nullptr, text), 0);
  EXPECT_EQ(std::atoi(text), 10);
  EXPECT_EQ(KXgetFormattedInfo(em.model, KX_IINFO_MIP_STATUS, key, text), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetFormattedInfo(em.model, 5, key, text), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetFormattedInfo(em.model, KX_DINFO_POBJ, key, nullptr), KXERR_ILLEGAL_NULL_POINTER);
}

TEST(EnvQueries, CountAndListFollowCreationAndDeletion) {
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  int count = -1;
  ASSERT_EQ(KXgetEnvModelCount(env, &count), 0);
  EXPECT_EQ(count, 0);
  pModel a = KXcreateModel(env, &err), b = KXcreateModel(env, &err), c = KXcreateModel(env, &err);
  ASSERT_EQ(KXgetEnvModelCount(env, &count), 0);
  EXPECT_EQ(count, 3);
  pModel list[3] = {nullptr, nullptr, nullptr};
  EXPECT_EQ(KXgetEnvModelList(env, 2, list), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(list[0], nullptr);
  ASSERT_EQ(KXgetEnvModelList(env, 3, list), 0);
  std::set<pModel> got(list, list + 3);
  EXPECT_EQ(got, (std::set<pModel>{a, b, c}));
  KXdeleteModel(&b);
  ASSERT_EQ(KXgetEnvModelCount(env, &count), 0);
  EXPECT_EQ(count, 2);
  ASSERT_EQ(KXgetEnvModelList(env, 3, list), 0);
  EXPECT_TRUE((list[0] == a && list[1] == c) || (list[0] == c && list[1] == a));
  pEnv owner = nullptr;
  ASSERT_EQ(KXgetModelEnv(a, &owner), 0);
  EXPECT_EQ(owner, env);
  EXPECT_EQ(KXgetModelEnv(a, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXgetEnvModelCount(nullptr, &count), KXERR_ILLEGAL_NULL_POINTER);
  KXdeleteEnv(&env);
}

TEST(EnvQueries, VersionStringsCarryMajorAndMinor) {
  char ver[64], date[64];
  ASSERT_EQ(KXgetVersionInfo(ver, date), 0);
  EXPECT_EQ(std::string(ver).rfind("6.1.", 0), 0u) << ver;
  EXPECT_GT(std::strlen(date), 6u);
  EXPECT_EQ(KXgetVersionInfo(nullptr, nullptr), 0);
}

TEST(CompareModels, FindsEachKindOfDifference) {
  kxtest::EnvModel e1, e2;
  const kxtest::SmallLP lp = kxtest::tiny_lp();
  ASSERT_EQ(lp.load(e1.model), 0);
  ASSERT_EQ(lp.load(e2.model), 0);
  int d = -1;
  ASSERT_EQ(KXcompareModels(e1.model, e2.model, &d), 0);
  EXPECT_EQ(d, 0);
  int idx = 1;
  double v = 5.0;
  ASSERT_EQ(KXmodifyObjective(e2.model, 1, &idx, &v), 0);
  ASSERT_EQ(KXcompareModels(e1.model, e2.model, &d), 0);
  EXPECT_EQ(d, KX_COMPARE_COSTS);
  ASSERT_EQ(KXmodifyRHS(e2.model, 1, &idx, &v), 0);
  ASSERT_EQ(KXmodifyAij(e2.model, 0, 1, 2.5), 0);
  ASSERT_EQ(KXmodifyUpperBounds(e2.model, 1, &idx, &v), 0);
  ASSERT_EQ(KXcompareModels(e1.model, e2.model, &d), 0);
  EXPECT_EQ(d, KX_COMPARE_COSTS | KX_COMPARE_RHS | KX_COMPARE_MATRIX | KX_COMPARE_BOUNDS);
  const char types[] = "CI";
  ASSERT_EQ(KXloadVarType(e2.model, types), 0);
  ASSERT_EQ(KXcompareModels(e1.model, e2.model, &d), 0);
  EXPECT_TRUE(d & KX_COMPARE_VARTYPES);
  kxtest::EnvModel e3;
  ASSERT_EQ(KXcompareModels(e1.model, e3.model, &d), 0);
  EXPECT_TRUE(d & KX_COMPARE_DIMENSIONS);
  EXPECT_EQ(KXcompareModels(e1.model, nullptr, &d), KXERR_ILLEGAL_NULL_POINTER);
}

}  // namespace
