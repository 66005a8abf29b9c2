// The compact solution file and the full report, checked line by line against
// the solver's own getters.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "io_text/text_util.h"
#include "korva.h"
#include "support/kx_test_util.h"

namespace {

using kxtest::EnvModel;
using kxtest::TempDir;

const char kModel[] =
    "max\n obj: 2 x + 3 y + z + 1\nst\n c1: x + y + z <= 4\n c2: x + 3 y >= 1\n"
    " a_long_row_name_here: x - z = 0\nbounds\n x <= 3\n a_column_named_long <= 0.5\n"
    "end\n";

void load_and_solve(pModel m) {
  // The long column must stand in a row to exist.
  std::string t = kModel;
  t.replace(t.find(" c2: x + 3 y >= 1"), 17, " c2: x + 3 y + a_column_named_long >= 1");
  ASSERT_EQ(KXreadLPStream(m, t.data(), static_cast<int>(t.size())), 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(m, KX_METHOD_FREE, &st), 0);
  ASSERT_TRUE(st == KX_STATUS_OPTIMAL || st == KX_STATUS_BASIC_OPTIMAL);
}

TEST(SolutionFile, CompactFileLinesInOrder) {
  TempDir td;
  EnvModel em;
  load_and_solve(em.model);
  ASSERT_EQ(KXsetModelIntParameter(em.model, KX_IPARAM_SOL_REPORT_STYLE, KX_SOLREPORT_COMPACT), 0);
  const std::string p = td.file("s.sol");
  ASSERT_EQ(KXwriteSolution(em.model, p.c_str()), 0);
  auto lines = txt::lines_of(txt::get_file(p));
  int n = txt::info(em.model, KX_IINFO_NUM_VARS);
  ASSERT_EQ(static_cast<int>(lines.size()), 6 + n);
  EXPECT_EQ(lines[0], "SOLUTION LP (OPTIMAL)");
  EXPECT_EQ(lines[1].substr(0, 20), "PROBLEM NAME        ");
  double obj;
  ASSERT_EQ(KXgetObjective(em.model, &obj), 0);
  char buf[128];
  std::snprintf(buf, sizeof buf, "OBJECTIVE VALUE     %16.10e", obj);
  EXPECT_EQ(lines[2], buf);
  EXPECT_EQ(lines[3], "");
  EXPECT_EQ(lines[4], "");
  EXPECT_EQ(lines[5], "NUMBER  ......COLUMNS...... AT ...ACTIVITY...");
  std::vector<double> x(n);
  ASSERT_EQ(KXgetPrimalSolution(em.model, x.data()), 0);
  for (int j = 0; j < n; ++j) {
    const std::string &l = lines[6 + j];
    unsigned num;
    char name[64], at[8];
    double v;
    ASSERT_EQ(std::sscanf(l.c_str(), "%u %63s %7s %lf", &num, name, at, &v), 4) << l;
    EXPECT_EQ(num, static_cast<unsigned>(j + 1));
    EXPECT_NEAR(v, x[j], 1e-9 * (1 + std::fabs(x[j])));
    EXPECT_EQ(l.size(), 6u + 2 + 20 + 2 + 3 + 16 + (std::signbit(x[j]) ? 1 : 0));
  }
  // The name cut at 12 characters.
  EXPECT_NE(txt::get_file(p).find("  a_column_nam        "), std::string::npos);
  EXPECT_EQ(txt::get_file(p).find("a_column_name"), std::string::npos);
  // x sits at its upper bound 3: "UL"; the 0.5-bounded column at lower 0 or upper.
  EXPECT_EQ(lines[6].substr(28, 2), x[0] == 3.0 ? "UL" : (x[0] == 0.0 ? "LL" : "BS"));
}

TEST(SolutionFile, CompactFileOfAnIntegerModelSaysMipAndEq) {
  TempDir td;
  EnvModel em;
  const std::string t = "max\n o: x + y\nst\n c: x + y <= 3.5\ngeneral\n x\nend\n";
  ASSERT_EQ(KXreadLPStream(em.model, t.data(), static_cast<int>(t.size())), 0);
  int st;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_FREE, &st), 0);
  KXsetModelIntParameter(em.model, KX_IPARAM_SOL_REPORT_STYLE, KX_SOLREPORT_COMPACT);
  ASSERT_EQ(KXwriteSolutionOfType(em.model, td.file("s.sol").c_str(), KX_SOLTYPE_BASIC), 0);
  auto lines = txt::lines_of(txt::get_file(td.file("s.sol")));
  EXPECT_EQ(lines[0], "SOLUTION MIP (OPTIMAL)");
  EXPECT_EQ(lines[6].substr(28, 2), "EQ");
  EXPECT_EQ(KXwriteSolutionOfType(em.model, td.file("s.sol").c_str(), 9),
            KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXwriteSolutionOfType(em.model, td.file("s.sol").c_str(), KX_SOLTYPE_MIP),
            KXERR_INFO_NOT_AVAILABLE);
}

TEST(SolutionFile, NoSolutionNoFile) {
  TempDir td;
  EnvModel em;
  EXPECT_EQ(KXwriteSolution(em.model, td.file("s.sol").c_str()), KXERR_NO_MODEL_LOADED);
  const std::string t = "min\n x\nst\n c: x >= 1\nend\n";
  ASSERT_EQ(KXreadLPStream(em.model, t.data(), static_cast<int>(t.size())), 0);
  EXPECT_EQ(KXwriteSolution(em.model, td.file("s.sol").c_str()), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXwriteSolution(nullptr, "x"), KXERR_ILLEGAL_NULL_POINTER);
}

TEST(SolutionFile, ReportHoldsItsPartsInOrderWithTheSolversNumbers) {
  TempDir td;
  EnvModel em;
  load_and_solve(em.model);
  const std::string p = td.file("r.txt");
  ASSERT_EQ(KXwriteSolution(em.model, p.c_str()), 0);  // style 0: the full report
  const std::string out = txt::get_file(p);
  auto lines = txt::lines_of(out);
  const char *dashes = "* -----------------------------------------------------------------";
  ASSERT_GE(lines.size(), 20u);
  EXPECT_EQ(lines[0], dashes);
  EXPECT_EQ(lines[1], "*                    SOLUTION REPORT");
  EXPECT_EQ(lines[2].rfind("* KORVA API Version 6.1.1.627 built on ", 0), 0u);
  // The parts in their order.
  const char *parts[] = {"* PROBLEM NAME     stream_",
                         "*   LP GLOBAL OPTIMUM FOUND\n* \n",
                         "*   ITERATIONS BY SIMPLEX METHOD = ",
                         "*   ITERATIONS BY BARRIER METHOD = ",
                         "*   ITERATIONS BY NLP METHOD     = ",
                         "*   TIME ELAPSED (s)             = ",
                         "*   OBJECTIVE FUNCTION VALUE\n* \n*    1)      ",
                         "VARIABLES",
                         "CONSTRAINTS",
                         "\n* END OF REPORT\n"};
  size_t at = 0;
  for (const char *part : parts) {
    size_t q = out.find(part, at);
    ASSERT_NE(q, std::string::npos) << part;
    at = q;
  }
  EXPECT_EQ(out.substr(out.size() - 17), "\n* END OF REPORT\n");
  // Numbers against the getters.
  const int n = txt::info(em.model, KX_IINFO_NUM_VARS), m = txt::info(em.model, KX_IINFO_NUM_CONS);
  std::vector<double> x(n), dj(n), s(m), y(m);
  KXgetPrimalSolution(em.model, x.data());
  KXgetReducedCosts(em.model, dj.data());
  KXgetSlacks(em.model, s.data());
  KXgetDualSolution(em.model, y.data());
  std::vector<int> cs(n), rs(m);
  KXgetBasis(em.model, cs.data(), rs.data());
  int iters = 0;
  KXgetInfo(em.model, KX_IINFO_SIM_ITER, &iters);
  char buf[128];
  std::snprintf(buf, sizeof buf, "*   ITERATIONS BY SIMPLEX METHOD = %11d\n", iters);
  EXPECT_NE(out.find(buf), std::string::npos);
  double obj;
  KXgetObjective(em.model, &obj);
  size_t q = out.find("*    1)      ");
  EXPECT_NEAR(std::strtod(out.c_str() + q + 13, nullptr), obj, 1e-9);
  auto row_after = [&](const std::string &name, size_t from) {
    for (size_t k = 0; k < lines.size(); ++k)
      if (lines[k].rfind("    " + name + " ", 0) == 0 && k >= from) return k;
    return lines.size();
  };
  size_t varHead = 0, conHead = 0;
  for (size_t k = 0; k < lines.size(); ++k) {
    if (lines[k].find("VARIABLES") != std::string::npos) varHead = k;
    if (lines[k].find("CONSTRAINTS") != std::string::npos) conHead = k;
  }
  ASSERT_LT(varHead, conHead);
  EXPECT_NE(lines[varHead].find("BASIS STATUS"), std::string::npos);
  const char *colNames[] = {"x", "y", "z", "a_column_named_long"};
  const char *words[] = {"BAS", "ATLO", "ATUP", "FNUL", "SBAS"};
  auto word = [&](int st) { return st >= 0 ? words[0] : words[-st]; };
  for (int j = 0; j < n; ++j) {
    size_t k = row_after(colNames[j], varHead);
    ASSERT_LT(k, conHead) << colNames[j];
    std::istringstream ls(lines[k]);
    std::string nm, w;
    double v, d;
    ls >> nm >> v >> d >> w;
    EXPECT_NEAR(v, x[j], 1e-9);
    EXPECT_NEAR(d, dj[j], 1e-9);
    EXPECT_EQ(w, word(cs[j]));
  }
  const char *rowNames[] = {"c1", "c2", "a_long_row_name_here"};
  for (int i = 0; i < m; ++i) {
    size_t k = row_after(rowNames[i], conHead);
    ASSERT_LT(k, lines.size()) << rowNames[i];
    std::istringstream ls(lines[k]);
    std::string nm, w;
    double v, d;
    ls >> nm >> v >> d >> w;
    EXPECT_NEAR(v, s[i], 1e-9);
    EXPECT_NEAR(d, y[i], 1e-9);
    EXPECT_EQ(w, word(rs[i]));
  }
}

TEST(SolutionFile, ReportWithRangesNamesThemAndUnknownStatus) {
  TempDir td;
  EnvModel em;
  load_and_solve(em.model);
  ASSERT_EQ(KXsetModelIntParameter(em.model, KX_IPARAM_SOL_REPORT_STYLE, KX_SOLREPORT_RANGES), 0);
  ASSERT_EQ(KXwriteSolution(em.model, td.file("r.txt").c_str()), 0);
  const std::string out = txt::get_file(td.file("r.txt"));
  size_t a = out.find("* OBJECTIVE COEFFICIENT RANGES ("), b = out.find("* RIGHTHAND SIDE RANGES (");
  ASSERT_NE(a, std::string::npos);
  ASSERT_NE(b, std::string::npos);
  EXPECT_LT(a, b);
  EXPECT_LT(b, out.find("* END OF REPORT"));
  // An infeasible model reports so.
  EnvModel inf;
  const std::string t = "min\n x\nst\n c: x >= 2\n d: x <= 1\nend\n";
  ASSERT_EQ(KXreadLPStream(inf.model, t.data(), static_cast<int>(t.size())), 0);
  int st;
  KXoptimize(inf.model, KX_METHOD_FREE, &st);
  ASSERT_EQ(st, KX_STATUS_INFEASIBLE);
  ASSERT_EQ(KXwriteSolution(inf.model, td.file("i.txt").c_str()), 0);
  EXPECT_NE(txt::get_file(td.file("i.txt")).find("*   LP SOLUTION INFEASIBLE\n* \n"), std::string::npos);
  KXsetModelIntParameter(inf.model, KX_IPARAM_SOL_REPORT_STYLE, KX_SOLREPORT_COMPACT);
  ASSERT_EQ(KXwriteSolution(inf.model, td.file("i.sol").c_str()), 0);
  EXPECT_EQ(txt::lines_of(txt::get_file(td.file("i.sol")))[0], "SOLUTION  LP (INFEASIBLE)");
}

}  // namespace
