// Basis files in their three forms, the start point file and the priority file.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "io_text/text_util.h"
#include "korva.h"
#include "support/kx_test_util.h"

namespace {

using kxtest::EnvModel;
using kxtest::TempDir;

// 3 columns, 4 rows: L, G, E and a ranged L row.
const char kModel[] =
    "max\n obj: 2 x + 3 y + z\nst\n c1: x + y + z <= 4\n c2: x + 3 y >= 1\n c3: x - z = 0\n"
    " c4: -2 <= x - y <= 5\nbounds\n x <= 3\n z free\nend\n";

void load(pModel m) { ASSERT_EQ(KXreadLPStream(m, kModel, static_cast<int>(sizeof kModel - 1)), 0); }

// A hand-planted basis: y, z, c1, c4 basic; x at upper; c2 at upper (a G row);
// c3 at lower.
const int kCols[3] = {-2, 0, 1};
const int kRows[4] = {2, -2, -1, 3};

std::vector<int> basis_of_file(const std::string &path, int n, int m) {
  std::vector<int> v(static_cast<size_t>(n + m));
  FILE *f = std::fopen(path.c_str(), "rb");
  if (!f) return {};
  size_t got = std::fread(v.data(), sizeof(int), v.size(), f);
  std::fclose(f);
  if (got != v.size()) return {};
  return v;
}

TEST(BasisFile, AtUpperRowStatusLoadsForRowsWithAFiniteUpperLogical) {
  EnvModel em;
  load(em.model);
  int cs[3] = {-1, 0, 1};
  // c1 is an unranged L row: its logical has no upper bound.
  int bad[4] = {-2, 2, -1, 3};
  EXPECT_EQ(KXloadBasis(em.model, cs, bad), KXERR_BASIS_ROW_STATUS);
  int g[4] = {2, -2, -1, 3};  // a G row at upper
  EXPECT_EQ(KXloadBasis(em.model, cs, g), 0);
  int e[4] = {2, 3, -2, -1};  // an E row at upper
  EXPECT_EQ(KXloadBasis(em.model, cs, e), 0);
  int r[4] = {2, 3, -1, -2};  // a ranged L row at upper
  EXPECT_EQ(KXloadBasis(em.model, cs, r), 0);
}

TEST(BasisFile, BinaryFormWritesAndReadsThePlantedBasis) {
  TempDir td;
  EnvModel em;
  load(em.model);
  ASSERT_EQ(KXloadBasis(em.model, kCols, kRows), 0);
  const std::string p = td.file("b.bas");
  ASSERT_EQ(KXwriteBasis(em.model, p.c_str(), KX_BASFILE_BIN), 0);
  std::vector<int> v = basis_of_file(p, 3, 4);
  ASSERT_EQ(v.size(), 7u);
  EXPECT_EQ(v[0], -2);
  EXPECT_EQ(v[4], -2);
  EXPECT_EQ(v[5], -1);
  EXPECT_GE(v[1], 0);
  EXPECT_GE(v[6], 0);
  // Read into a fresh load, with the sign of the form ignored.
  for (int form : {1, -1}) {
    EnvModel b;
    load(b.model);
    ASSERT_EQ(KXreadBasis(b.model, p.c_str(), form), 0);
    const std::string q = td.file("c.bas");
    ASSERT_EQ(KXwriteBasis(b.model, q.c_str(), KX_BASFILE_BIN), 0);
    EXPECT_EQ(basis_of_file(q, 3, 4), v);
  }
  // Text and MPS forms are not read back by KXreadBasis; a short file is 2015.
  EnvModel c;
  load(c.model);
  EXPECT_EQ(KXreadBasis(c.model, p.c_str(), 3), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXreadBasis(c.model, p.c_str(), 2), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXreadBasis(c.model, td.file("none").c_str(), 1), KXERR_CANNOT_OPEN_FILE);
  txt::put_file(td.file("short.bas"), std::string(12, '\0'));
  EXPECT_EQ(KXreadBasis(c.model, td.file("short.bas").c_str(), 1), KXERR_INTERNAL_ERROR);
  EXPECT_EQ(KXwriteBasis(c.model, p.c_str(), 4), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXwriteBasis(c.model, p.c_str(), 0), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXwriteBasis(nullptr, p.c_str(), 1), KXERR_ILLEGAL_NULL_POINTER);
}

TEST(BasisFile, TextFormLinesAndTheirReadBackThroughTheStartPointReader) {
  TempDir td;
  EnvModel em;
  load(em.model);
  ASSERT_EQ(KXloadBasis(em.model, kCols, kRows), 0);
  const std::string p = td.file("b.txt");
  ASSERT_EQ(KXwriteBasis(em.model, p.c_str(), KX_BASFILE_TXT), 0);
  auto lines = txt::lines_of(txt::get_file(p));
  ASSERT_EQ(lines.size(), 7u);
  // Two blanks, the name in 13 (8 + 5), four blanks, the word right-justified in 22.
  auto line = [](const char *name, const char *word) {
    char b[128];
    std::snprintf(b, sizeof b, "  %-13s    %22s", name, word);
    return std::string(b);
  };
  EXPECT_EQ(lines[0], line("x", "KX_BASTYPE_ATUP"));
  EXPECT_EQ(lines[1], line("y", "KX_BASTYPE_BAS "));
  EXPECT_EQ(lines[4], line("c2", "KX_BASTYPE_ATUP"));
  EXPECT_EQ(lines[5], line("c3", "KX_BASTYPE_ATLO"));
  EXPECT_EQ(lines[0].size(), 41u);
  EnvModel b;
  load(b.model);
  ASSERT_EQ(KXreadVarStartPoint(b.model, p.c_str()), 0);
  ASSERT_EQ(KXwriteBasis(b.model, td.file("c.txt").c_str(), KX_BASFILE_TXT), 0);
  EXPECT_EQ(txt::get_file(td.file("c.txt")), txt::get_file(p));
}

TEST(BasisFile, TextFormOfUnnamedRowsAndColumns) {
  TempDir td;
  EnvModel em;
  kxtest::SmallLP lp = kxtest::tiny_lp();
  ASSERT_EQ(lp.load(em.model), 0);
  int cs[2] = {-1, -1}, rs[2] = {0, 1};
  ASSERT_EQ(KXloadBasis(em.model, cs, rs), 0);
  ASSERT_EQ(KXwriteBasis(em.model, td.file("b.txt").c_str(), KX_BASFILE_TXT), 0);
  auto lines = txt::lines_of(txt::get_file(td.file("b.txt")));
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0].substr(0, 10), "  C1      ");
  EXPECT_EQ(lines[2].substr(0, 10), "  R2      ");
  EXPECT_EQ(lines[3].substr(0, 10), "  R3      ");
}

TEST(BasisFile, MpsFormHoldsTheBasisMatrix) {
  TempDir td;
  EnvModel em;
  load(em.model);
  ASSERT_EQ(KXloadBasis(em.model, kCols, kRows), 0);
  const std::string p = td.file("b.mps");
  ASSERT_EQ(KXwriteBasis(em.model, p.c_str(), KX_BASFILE_MPS), 0);
  std::string out = txt::get_file(p);
  EXPECT_NE(out.find(" E        c2\n"), std::string::npos) << out;  // every row an equation
  EXPECT_NE(out.find(" FR BND1      y\n"), std::string::npos);
  EXPECT_NE(out.find(" FR BND1      A0000000\n"), std::string::npos);  // c1's logical
  EXPECT_NE(out.find(" FR BND1      A0000003\n"), std::string::npos);
  EXPECT_EQ(out.find(" FR BND1      x\n"), std::string::npos);  // nonbasic
  EnvModel b;
  ASSERT_EQ(KXreadMPSFile(b.model, p.c_str(), KX_MPS_FIXED), 0);
  EXPECT_EQ(txt::info(b.model, KX_IINFO_NUM_VARS), 4);
  EXPECT_EQ(txt::info(b.model, KX_IINFO_NUM_CONS), 4);
}

TEST(BasisFile, StartPointFileGivesValuesAndABasis) {
  TempDir td;
  EnvModel em;
  load(em.model);
  std::vector<std::string> logs;
  KXsetModelLogfunc(
      em.model, [](pModel, char *t, void *u) { static_cast<std::vector<std::string> *>(u)->push_back(t); },
      &logs);
  txt::put_file(td.file("s.sol"),
                "* a comment\n  ! another\n"
                "x 3 - ATUP\n"
                "nosuch 9\n"
                "y 0.5 - KX_BASTYPE_BAS\n"
                "z 2.5 - BAS\n"
                "c1 0 - BAS\n"
                "c2 0 - ATUP\n"
                "c3 0 - ATLO\n"
                "c4 0 - BAS\n"
                "lonely\n");
  ASSERT_EQ(KXreadVarStartPoint(em.model, td.file("s.sol").c_str()), 0);
  double x[3];
  ASSERT_EQ(KXgetVarStartPoint(em.model, x), 0);
  EXPECT_EQ(x[0], 3.0);
  EXPECT_EQ(x[1], 0.5);
  EXPECT_EQ(x[2], 2.5);
  bool skipped = false;
  for (auto &l : logs) skipped = skipped || l == "\nSkipping unknown token nosuch";
  EXPECT_TRUE(skipped);
  ASSERT_EQ(KXwriteBasis(em.model, td.file("b.bas").c_str(), KX_BASFILE_BIN), 0);
  std::vector<int> v = basis_of_file(td.file("b.bas"), 3, 4);
  ASSERT_EQ(v.size(), 7u);
  EXPECT_EQ(v[0], -2);
  EXPECT_GE(v[1], 0);
  EXPECT_EQ(v[4], -2);
  EXPECT_EQ(v[5], -1);
  EXPECT_EQ(KXreadVarStartPoint(em.model, td.file("none").c_str()), KXERR_CANNOT_OPEN_FILE);
  EXPECT_EQ(KXreadVarStartPoint(em.model, nullptr), KXERR_ILLEGAL_NULL_POINTER);
}

TEST(BasisFile, ConstraintLineBeforeAllVariablesIsTakenForAVariable) {
  TempDir td;
  EnvModel em;
  load(em.model);
  txt::put_file(td.file("s.sol"), "x 1\nc1 5\ny 2\nz 3\n");
  ASSERT_EQ(KXreadVarStartPoint(em.model, td.file("s.sol").c_str()), 0);
  double x[3];
  ASSERT_EQ(KXgetVarStartPoint(em.model, x), 0);
  EXPECT_EQ(x[0], 1.0);
  EXPECT_EQ(x[1], 2.0);
  EXPECT_EQ(x[2], 3.0);
}

TEST(BasisFile, PriorityFile) {
  TempDir td;
  EnvModel em;
  load(em.model);
  txt::put_file(td.file("p.txt"), "x 5\n  y   -3 \nnot a line\nz 0\n");
  ASSERT_EQ(KXreadVarPriorities(em.model, td.file("p.txt").c_str()), 0);
  int p[3];
  ASSERT_EQ(KXgetVarPriorities(em.model, p), 0);
  EXPECT_EQ(p[0], 5);
  EXPECT_EQ(p[1], 0);
  EXPECT_EQ(p[2], 0);
  txt::put_file(td.file("q.txt"), "z 7\nnosuch 3\ny 2\n");
  EXPECT_EQ(KXreadVarPriorities(em.model, td.file("q.txt").c_str()), KXERR_COL_TOKEN_NOT_FOUND);
  ASSERT_EQ(KXgetVarPriorities(em.model, p), 0);
  EXPECT_EQ(p[2], 7);
  EXPECT_EQ(p[1], 0);  // after the unknown name nothing is read
  EXPECT_EQ(KXreadVarPriorities(em.model, td.file("none").c_str()), KXERR_CANNOT_OPEN_FILE);
}

TEST(BasisFile, SolvedBasisReloadsAndResolvesInZeroIterations) {
  TempDir td;
  EnvModel em;
  load(em.model);
  KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
  int st = 0;
  ASSERT_EQ(KXoptimize(em.model, KX_METHOD_FREE, &st), 0);
  double o1;
  KXgetObjective(em.model, &o1);
  ASSERT_EQ(KXwriteBasis(em.model, td.file("b.bas").c_str(), KX_BASFILE_BIN), 0);
  ASSERT_EQ(KXwriteBasis(em.model, td.file("b.txt").c_str(), KX_BASFILE_TXT), 0);
  for (int form : {1, 3}) {
    EnvModel b;
    load(b.model);
    KXsetModelIntParameter(b.model, KX_IPARAM_LP_PRELEVEL, 0);
    if (form == 1)
      ASSERT_EQ(KXreadBasis(b.model, td.file("b.bas").c_str(), 1), 0);
    else
      ASSERT_EQ(KXreadVarStartPoint(b.model, td.file("b.txt").c_str()), 0);
    ASSERT_EQ(KXoptimize(b.model, KX_METHOD_FREE, &st), 0);
    int it = -1;
    KXgetInfo(b.model, KX_IINFO_SIM_ITER, &it);
    EXPECT_EQ(it, 0) << "form " << form;
    double o2;
    KXgetObjective(b.model, &o2);
    EXPECT_EQ(o1, o2);
  }
}

}  // namespace
