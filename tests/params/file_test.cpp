// Parameter files: writing at both levels, reading back, the CSV twin, and the
// loader's treatment of odd lines, bad values, unknown names and missing files.
#include <climits>
#include <cmath>
#include <cstring>

#include "params/param_fixture.h"

namespace {

std::vector<std::string> lines_of(const std::string &text) {
  std::vector<std::string> out;
  std::stringstream ss(text);
  std::string line;
  while (std::getline(ss, line)) out.push_back(line);
  return out;
}

std::vector<std::string> split_csv(const std::string &line) {
  std::vector<std::string> out;
  std::stringstream ss(line);
  std::string item;
  while (std::getline(ss, item, ',')) out.push_back(item);
  return out;
}

bool close_enough(double a, double b) {
  if (a == b) return true;
  return std::fabs(a - b) <= 1e-5 * std::max(std::fabs(a), std::fabs(b));
}

struct LogSink {
  std::string text;
  static void env_log(pEnv, char *t, void *user) { static_cast<LogSink *>(user)->text += t; }
  static void model_log(pModel, char *t, void *user) { static_cast<LogSink *>(user)->text += t; }
};

std::string padded(const char *name, const std::string &value) {
  char buf[128];
  std::snprintf(buf, sizeof buf, "%-42s = %s", name, value.c_str());
  return buf;
}

TEST_F(ParamFixture, FreshEnvironmentFileHasItsForm) {
  std::string p = path("env.par");
  std::string csv = dir + "/env._param.csv";
  created.push_back(csv);
  // The last row is stochastic and unknown at this level: 2024 after writing all.
  EXPECT_EQ(KXwriteEnvParameter(env, p.c_str()), KXERR_PARAMETER_OUT_OF_RANGE);
  std::vector<std::string> lines = lines_of(slurp(p));
  ASSERT_GT(lines.size(), 200u);
  // 22 is an integer unknown at this level and left out; 23 is a double, written twice.
  EXPECT_EQ(lines[0], padded("KX_DPARAM_CALLBACKFREQ", "0.5"));
  EXPECT_EQ(lines[1], lines[0]);
  // 24 cannot be read here: the line before it comes once more.
  EXPECT_EQ(lines[2], lines[0]);
  EXPECT_EQ(lines[3], padded("KX_IPARAM_CHECK_FOR_ERRORS", "0"));
  // 322 does not read while 323 is off, so the 323 line stands twice.
  std::string use = padded("KX_IPARAM_MIP_USECUTOFFOBJ", "0");
  for (size_t i = 0; i + 2 < lines.size(); ++i) {
    if (lines[i] != use) continue;
    EXPECT_EQ(lines[i + 1], use);
    EXPECT_EQ(lines[i + 2], padded("KX_IPARAM_MIP_STRONGBRANCHLEVEL", "10"));
    break;
  }
  EXPECT_EQ(slurp(p).find("KX_IPARAM_STOC_"), std::string::npos);
  EXPECT_EQ(slurp(p).find("KX_IPARAM_OBJSENSE"), std::string::npos);

  // The CSV twin: names then values, the same count, only rows that were read.
  std::vector<std::string> csvLines = lines_of(slurp(csv));
  ASSERT_EQ(csvLines.size(), 2u);
  std::vector<std::string> names = split_csv(csvLines[0]), values = split_csv(csvLines[1]);
  EXPECT_EQ(names.size(), values.size());
  ASSERT_GT(names.size(), 200u);
  EXPECT_EQ(names[0], "KX_DPARAM_CALLBACKFREQ");
  EXPECT_EQ(values[0], "0.5");
  EXPECT_EQ(csvLines[0].back(), ',');
}

TEST_F(ParamFixture, ModelFileCoversEveryRow) {
  std::string p = path("model");  // no dot: the twin is "model_param.csv"
  std::string csv = dir + "/model_param.csv";
  created.push_back(csv);
  EXPECT_EQ(KXwriteModelParameter(model, p.c_str()), 0);
  std::vector<std::string> csvLines = lines_of(slurp(csv));
  ASSERT_EQ(csvLines.size(), 2u);
  std::vector<std::string> names = split_csv(csvLines[0]);
  ASSERT_EQ(names.size(), expected_rows().size());
  for (size_t i = 0; i < names.size(); ++i) EXPECT_EQ(names[i], expected_rows()[i].name);
  std::vector<std::string> lines = lines_of(slurp(p));
  EXPECT_EQ(lines[0], padded("KX_IPARAM_OBJSENSE", "1"));
  size_t doubles = 0;
  for (const ExpectedRow &r : expected_rows()) doubles += r.kind == 'D';
  EXPECT_EQ(lines.size(), expected_rows().size() + doubles);
}

// Every changed value survives a write and a read into a fresh record.
TEST_F(ParamFixture, RoundTripAtBothLevels) {
  const auto &rows = expected_rows();
  // Environment: change every row settable there.
  int changed = 0;
  for (const ExpectedRow &r : rows) {
    if (r.level != 'B' || !r.hasInside || r.id == KX_IPARAM_SOLVER_PRE_ELIM_FILL) continue;
    ASSERT_EQ(set_value(env, nullptr, r, r.inside), 0) << r.name;
    ++changed;
  }
  ASSERT_GT(changed, 180);
  std::string pe = path("all_env.par");
  created.push_back(dir + "/all_env._param.csv");
  ASSERT_EQ(KXwriteEnvParameter(env, pe.c_str()), KXERR_PARAMETER_OUT_OF_RANGE);
  int rc = -1;
  pEnv env2 = KXcreateEnv(&rc);
  ASSERT_EQ(rc, 0);
  // Model-only rows in the file (222, 550, ...) fail and are skipped; the last
  // row found (562) loads.
  EXPECT_EQ(KXreadEnvParameter(env2, pe.c_str()), 0);
  int differing = 0;
  for (const ExpectedRow &r : rows) {
    if (r.level != 'B') continue;
    SCOPED_TRACE(r.name);
    double a = 0, b = 0;
    int ra = get_value(env, nullptr, r, &a), rb = get_value(env2, nullptr, r, &b);
    EXPECT_EQ(ra, rb);
    if (r.id == KX_IPARAM_SOLVER_USECUTOFFVAL) {
      // Reading 59 at the environment stores its value into 58.
      EXPECT_EQ(b, 1000);
      continue;
    }
    if (ra == 0) {
      EXPECT_TRUE(close_enough(a, b)) << a << " vs " << b;
    }
    differing += b != r.def;
  }
  EXPECT_GT(differing, 150);
  KXdeleteEnv(&env2);

  // Model: every row, model-only and stochastic ones included.
  changed = 0;
  for (const ExpectedRow &r : rows) {
    if (!r.hasInside) continue;
    ASSERT_EQ(set_value(env, model, r, r.inside), 0) << r.name;
    ++changed;
  }
  ASSERT_GT(changed, 250);
  std::string pm = path("all_model.par");
  created.push_back(dir + "/all_model._param.csv");
  ASSERT_EQ(KXwriteModelParameter(model, pm.c_str()), 0);
  pModel m2 = new_model();
  ASSERT_EQ(KXreadModelParameter(m2, pm.c_str()), 0);
  differing = 0;
  for (const ExpectedRow &r : rows) {
    SCOPED_TRACE(r.name);
    double a = 0, b = 0;
    ASSERT_EQ(get_value(env, model, r, &a), 0);
    ASSERT_EQ(get_value(env, m2, r, &b), 0);
    EXPECT_TRUE(close_enough(a, b)) << a << " vs " << b;
    differing += b != r.def;
  }
  EXPECT_GT(differing, 230);
}

TEST_F(ParamFixture, LoaderLineRules) {
  std::string text =
      "# a comment line\n"
      "   KX_IPARAM_LP_SCALE2 = 1\n"
      "KX_IPARAM_LP_SCALE=2\n"
      "KX_IPARAM_LP_SCALE = 3\n"
      "KX_IPARAM_SPLEX_PPRICING = abc\n"
      "KX_IPARAM_SPLEX_PPRICING = 1 and more words\n"
      "KX_IPARAM_SPLEX_REFACFRQ 50\n"
      "KX_IPARAM_SPLEX_REFACFRQ =\n"
      "\tKX_DPARAM_SOLVER_FEASTOL\t=\t1e-6\n"
      "KX_IPARAM_OBJSENSE = -1\n"
      "KX_IPARAM_LP_PRINTLEVEL = 99999999999\n"
      "\x01\x02\xff garbage = 3\n"
      "kx_iparam_lp_prelevel = 5\n"
      "KX_IPARAM_MIP_NODESELRULE = 9\n";
  std::string p = write_text("rules.par", text);
  LogSink sink;
  ASSERT_EQ(KXsetEnvLogfunc(env, LogSink::env_log, &sink), 0);
  // The last row that was set is 304, refused: its code is the result.
  EXPECT_EQ(KXreadEnvParameter(env, p.c_str()), KXERR_PARAMETER_OUT_OF_RANGE);
  int iv = 0;
  double dv = 0;
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 2);  // not 1 (SCALE2), not 3 (second line)
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_SPLEX_PPRICING, &iv), 0);
  EXPECT_EQ(iv, 1);
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_SPLEX_REFACFRQ, &iv), 0);
  EXPECT_EQ(iv, 200);
  ASSERT_EQ(KXgetEnvDouParameter(env, KX_DPARAM_SOLVER_FEASTOL, &dv), 0);
  EXPECT_EQ(dv, 1e-6);
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_PRINTLEVEL, &iv), 0);
  EXPECT_EQ(iv, 0);
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_PRELEVEL, &iv), 0);
  EXPECT_EQ(iv, 126);
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_MIP_NODESELRULE, &iv), 0);
  EXPECT_EQ(iv, 4);
  EXPECT_EQ(sink.text.rfind("\nReading environment parameters from " + p + "\n", 0), 0u) << sink.text;
  EXPECT_NE(sink.text.find("\nUsing primal simplex pricing rule: 1"), std::string::npos);
  EXPECT_NE(sink.text.find("\nUsing LP feasibility tolerance: 1.0e-06"), std::string::npos);
  EXPECT_NE(sink.text.find("\nUsing MIP node selection rule: error=2024"), std::string::npos);
  EXPECT_EQ(sink.text.substr(sink.text.size() - 2), "\n\n");
}

TEST_F(ParamFixture, UnknownAtEnvironmentIsNotFatal) {
  std::string p = write_text("sense.par",
                             "KX_IPARAM_OBJSENSE = -1\nKX_IPARAM_LP_SCALE = 2\n"
                             "KX_IPARAM_STOC_RG_SEED = 5\nKX_DPARAM_MIP_OBJ_THRESHOLD = 3\n");
  // OBJSENSE fails with 2011, LP_SCALE loads; the last row set (the seed) fails.
  EXPECT_EQ(KXreadEnvParameter(env, p.c_str()), KXERR_PARAMETER_OUT_OF_RANGE);
  int iv = 0;
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 2);
  // At the model all four load.
  pModel m = new_model();
  LogSink sink;
  ASSERT_EQ(KXsetModelLogfunc(m, LogSink::model_log, &sink), 0);
  EXPECT_EQ(KXreadModelParameter(m, p.c_str()), 0);
  ASSERT_EQ(KXgetModelIntParameter(m, KX_IPARAM_OBJSENSE, &iv), 0);
  EXPECT_EQ(iv, -1);
  ASSERT_EQ(KXgetModelIntParameter(m, KX_IPARAM_STOC_RG_SEED, &iv), 0);
  EXPECT_EQ(iv, 5);
  double dv = 0;
  ASSERT_EQ(KXgetModelDouParameter(m, KX_DPARAM_MIP_OBJ_THRESHOLD, &dv), 0);
  EXPECT_EQ(dv, 3);
  EXPECT_NE(sink.text.find("\nReading model parameters from "), std::string::npos);
  EXPECT_NE(sink.text.find("\nUse mip obj threshold: 3.0e+00"), std::string::npos);
}

TEST_F(ParamFixture, MissingFileLoadsNothing) {
  std::string p = path("does_not_exist.par");
  LogSink sink;
  ASSERT_EQ(KXsetEnvLogfunc(env, LogSink::env_log, &sink), 0);
  EXPECT_EQ(KXreadEnvParameter(env, p.c_str()), 0);
  EXPECT_EQ(KXreadModelParameter(model, p.c_str()), 0);
  EXPECT_EQ(sink.text, "\nReading environment parameters from " + p + "\n");
  int iv = 0;
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 1);
}

TEST_F(ParamFixture, DefaultFileNameIsKorvaParInWorkingDirectory) {
  std::string p = write_text("korva.par", "KX_IPARAM_LP_SCALE = 3\n");
  char old[4096];
  ASSERT_NE(getcwd(old, sizeof old), nullptr);
  ASSERT_EQ(chdir(dir.c_str()), 0);
  int rc = KXloadEnvParameter(env, nullptr, NUMPARLIST(nullptr), parlist);
  int rc2 = KXloadModelParameter(model, nullptr, NUMPARLIST(nullptr), parlist);
  ASSERT_EQ(chdir(old), 0);
  EXPECT_EQ(rc, 0);
  EXPECT_EQ(rc2, 0);
  int iv = 0;
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 3);
  ASSERT_EQ(KXgetModelIntParameter(model, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 3);
}

TEST_F(ParamFixture, CallerTables) {
  std::string p = write_text("t.par", "MY_FIRST = 2\nKX_IPARAM_LP_SCALE = 0\nKX_DPARAM_CALLBACKFREQ = 4\n");
  // Only the first rows count; a row without a name is skipped.
  KXparamRow table[] = {{KX_IPARAM_LP_SCALE, "KX_IPARAM_LP_SCALE", nullptr, 4},
                        {KX_IPARAM_SPLEX_PPRICING, nullptr, nullptr, 4},
                        {KX_IPARAM_MIP_NODESELRULE, "MY_FIRST", nullptr, 4},
                        {KX_DPARAM_CALLBACKFREQ, "KX_DPARAM_CALLBACKFREQ", nullptr, 8},
                        {KX_IPARAM_LP_PRELEVEL, "KX_IPARAM_LP_PRELEVEL", nullptr, 2}};
  EXPECT_EQ(KXloadEnvParameter(env, p.c_str(), 3, table), 0);
  int iv = 0;
  double dv = 0;
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 0);
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_MIP_NODESELRULE, &iv), 0);
  EXPECT_EQ(iv, 2);
  ASSERT_EQ(KXgetEnvDouParameter(env, KX_DPARAM_CALLBACKFREQ, &dv), 0);
  EXPECT_EQ(dv, 0.5);
  // A width other than 4 or 8 stops the loader when it is reached.
  EXPECT_EQ(KXloadEnvParameter(env, p.c_str(), 5, table), KXERR_INDEX_OUT_OF_RANGE);
  ASSERT_EQ(KXgetEnvDouParameter(env, KX_DPARAM_CALLBACKFREQ, &dv), 0);
  EXPECT_EQ(dv, 4.0);
  EXPECT_EQ(KXloadModelParameter(model, p.c_str(), 0, nullptr), 0);
}

TEST_F(ParamFixture, UnwritablePathGives2002) {
  std::string p = dir.empty() ? path("x") : dir + "/x";
  std::string bad = path("no_such_dir") + "/file.par";
  EXPECT_EQ(KXwriteEnvParameter(env, bad.c_str()), KXERR_CANNOT_OPEN_FILE);
  EXPECT_EQ(KXwriteModelParameter(model, bad.c_str()), KXERR_CANNOT_OPEN_FILE);
  // The twin cannot be created: a directory stands where it would go.
  std::string twin = path("blocked._param.csv");
  ASSERT_EQ(mkdir(twin.c_str(), 0700), 0);
  std::string main = path("blocked.par");
  EXPECT_EQ(KXwriteModelParameter(model, main.c_str()), KXERR_CANNOT_OPEN_FILE);
  rmdir(twin.c_str());
  (void)p;
}

TEST_F(ParamFixture, GarbageFilesGiveCodesNotCrashes) {
  // Deterministic noise with NULs, very long lines and names cut by the line limit.
  std::string noise;
  unsigned s = 12345;
  for (int i = 0; i < 20000; ++i) {
    s = s * 1103515245u + 12345u;
    noise.push_back(static_cast<char>((s >> 16) & 0xff));
    if (i % 997 == 0) noise += "KX_IPARAM_LP_SCALE = ";
    if (i % 1499 == 0) noise += "\nKX_DPARAM_CALLBACKFREQ = 1e999999\n";
  }
  std::string p = write_text("noise.par", noise);
  int rc1 = KXreadEnvParameter(env, p.c_str());
  int rc2 = KXreadModelParameter(model, p.c_str());
  EXPECT_TRUE(rc1 == 0 || (rc1 >= 2001 && rc1 <= 2383));
  EXPECT_TRUE(rc2 == 0 || (rc2 >= 2001 && rc2 <= 2383));
  // A name that starts a new 256-byte piece of a long line is read as a line.
  std::string longLine(255, 'x');
  std::string p2 = write_text("long.par", longLine + "KX_IPARAM_LP_SCALE = 0\n");
  EXPECT_EQ(KXreadEnvParameter(env, p2.c_str()), 0);
  int iv = -1;
  ASSERT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 0);
  // An empty file and a directory in place of a file.
  EXPECT_EQ(KXreadEnvParameter(env, write_text("empty.par", "").c_str()), 0);
  EXPECT_EQ(KXreadEnvParameter(env, dir.c_str()), 0);
}

TEST_F(ParamFixture, FormattedValuesSortTheTable) {
  std::vector<KXparamRow> saved(parlist, parlist + NUMPARLIST(nullptr) + 1);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_DECOMPOSITION_TYPE, 3), 0);
  std::vector<char> names(8192), values(8192);
  EXPECT_EQ(KXI_get_param_byfmt(model, names.data(), 8192, values.data(), 8192), 0);
  std::string n(names.data()), v(values.data());
  EXPECT_EQ(n.rfind("KX_IPARAM_DECOMPOSITION_TYPE, KX_IPARAM_LP_SCALE, KX_IPARAM_SPLEX_PPRICING", 0), 0u) << n;
  EXPECT_EQ(v.rfind("3, 1, -1, 200", 0), 0u) << v;
  EXPECT_NE(n.back(), ' ');
  EXPECT_NE(v.back(), ',');
  EXPECT_EQ(std::count(n.begin(), n.end(), ','), 120);
  EXPECT_EQ(std::count(v.begin(), v.end(), ','), 120);
  EXPECT_NE(n.find("KX_DPARAM_LP_PIV_ZEROTOL"), std::string::npos);
  // Short buffers are cut, never overrun.
  char small[16];
  std::memset(small, 'z', sizeof small);
  KXI_get_param_byfmt(model, small, 10, nullptr, 0);
  EXPECT_EQ(std::strlen(small), 9u);
  EXPECT_EQ(small[15], 'z');
  // The table is now in id order, and so is any file written after.
  for (int i = 1; i < NUMPARLIST(nullptr); ++i) ASSERT_LT(parlist[i - 1].id, parlist[i].id);
  std::string p = path("sorted.par");
  created.push_back(dir + "/sorted._param.csv");
  ASSERT_EQ(KXwriteModelParameter(model, p.c_str()), 0);
  std::string text = slurp(p);
  EXPECT_LT(text.find("KX_DPARAM_IPM_TOL_INFEAS"), text.find("KX_DPARAM_LU_EPS_DIAG"));
  std::copy(saved.begin(), saved.end(), parlist);
}

}  // namespace
