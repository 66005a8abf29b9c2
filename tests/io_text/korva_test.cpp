// The KORVA text reader and writer, and the explicit dual writer.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

#include "io_text/text_util.h"
#include "korva.h"
#include "support/kx_test_util.h"

namespace {

using kxtest::EnvModel;
using kxtest::TempDir;

int read_text(pModel m, const std::string &t) {
  return KXreadKORVAStream(m, t.data(), static_cast<int>(t.size()));
}

TEST(KorvaRead, StatementsAfterEnd) {
  EnvModel em;
  const std::string t =
      "! a comment\n"
      "TITLE  my model  \n"
      "MAX 2 x + 3 y - z + 4 b\n"
      "SUBJECT TO\n"
      "c1) x + y + z + b < 4\n"
      "c2) x + 3 y <= 6 ! trailing comment\n"
      ") 2 <= x - z\n"
      "END\n"
      "SUB x 3\n"
      "SLB z -2\n"
      "FREE y\n"
      "GIN z\n"
      "INT b\n"
      "RANGE c1 1.5\n";
  ASSERT_EQ(read_text(em.model, t), 0);
  txt::Snap s = txt::snap(em.model);
  const double inf = KX_INFINITY;
  EXPECT_EQ(s.sense, -1);
  EXPECT_EQ(s.u, (std::vector<double>{3, inf, inf, 1}));
  EXPECT_EQ(s.l, (std::vector<double>{0, -inf, -2, 0}));
  EXPECT_EQ(s.vt, "CCIB");
  EXPECT_EQ(s.rowNames, (std::vector<std::string>{"c1", "c2", "R0000002"}));
  EXPECT_EQ(s.types, "LLG");
  EXPECT_EQ(s.r[0], 1.5);
  char title[256];
  KXgetNameData(em.model, title, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                nullptr, nullptr, nullptr);
  EXPECT_STREQ(title, "my model");
}

TEST(KorvaRead, WholeModelOnOneLineAndKeywordForms) {
  EnvModel em;
  ASSERT_EQ(read_text(em.model, "min x + y st r1) x + y > 2 r2) x - y < 1 end"), 0);
  EXPECT_EQ(txt::info(em.model, KX_IINFO_NUM_CONS), 2);
  EnvModel em2;
  ASSERT_EQ(read_text(em2.model, "MINIMIZE x\nS.T.\nr) x >= 1\nEND\n"), 0);
  EnvModel em3;
  ASSERT_EQ(read_text(em3.model, "max<\nx\nst\nx<3\nend\n"), KXERR_ERROR_IN_INPUT);
}

TEST(KorvaRead, UnknownNamesAreSkippedAndTheModelLoads) {
  EnvModel em;
  std::vector<std::string> logs;
  KXsetModelLogfunc(
      em.model, [](pModel, char *t, void *u) { static_cast<std::vector<std::string> *>(u)->push_back(t); },
      &logs);
  ASSERT_EQ(read_text(em.model, "min x\nst\nx > 1\nend\nFREE nosuch\nSUB other 4\nINT x\n"), 0);
  bool free = false, sub = false;
  for (auto &l : logs) {
    free = free || l.find("FREE: Ignoring unknown variable at line 5.") != std::string::npos;
    sub = sub || l.find("SUB: Ignoring unknown variable at line 6.") != std::string::npos;
  }
  EXPECT_TRUE(free);
  EXPECT_TRUE(sub);
  EXPECT_EQ(txt::info(em.model, KX_IINFO_NUM_VARS), 1);
}

TEST(KorvaRead, MissingEndAndBadStatements) {
  EnvModel em;
  EXPECT_EQ(read_text(em.model, "min x\nst\nx > 1\n"), KXERR_ERROR_IN_INPUT);
  int line = 0;
  char text[1024];
  KXgetFileError(em.env, &line, text);
  EXPECT_EQ(line, 3);
  EnvModel em2;
  EXPECT_EQ(read_text(em2.model, "min x\nst\nx > 1\nend\nBOUND x 3\n"), KXERR_ERROR_IN_INPUT);
  KXgetFileError(em2.env, &line, text);
  EXPECT_EQ(line, 5);
  EXPECT_STREQ(text, "BOUND x 3");
  EnvModel em3;
  EXPECT_EQ(KXreadKORVAStream(em3.model, "mi", 2), KXERR_ERROR_IN_INPUT);
  TempDir td;
  EXPECT_EQ(KXreadKORVAFile(em3.model, td.file("no.kvx").c_str()), KXERR_CANNOT_OPEN_FILE);
}

TEST(KorvaWrite, TheWrittenFormAndItsReadBack) {
  TempDir td;
  EnvModel em;
  const std::string t =
      "TITLE w\nMAX 2 x + 0.1 y - 5\nST\nc1) x + y < 4\nc2) 1e-20 x + 3 y > -6\nc3) x - y = 0.3\nEND\n"
      "SUB x 3\nSLB y -1e30\nRANGE c1 2\n";
  ASSERT_EQ(read_text(em.model, t), 0);
  ASSERT_EQ(KXwriteKORVAFile(em.model, td.file("a.kvx").c_str()), 0);
  std::string out = txt::get_file(td.file("a.kvx"));
  auto lines = txt::lines_of(out);
  ASSERT_GE(lines.size(), 10u);
  EXPECT_EQ(lines[0], "TITLE w");
  EXPECT_EQ(lines[1], "MAXIMIZE");
  EXPECT_EQ(lines[2], "   +2.0000000000000000 x");
  EXPECT_EQ(lines[3], "   +0.1000000000000000 y");
  EXPECT_EQ(lines[4], "   -5.0000000000000000");
  EXPECT_EQ(lines[5], "");
  EXPECT_EQ(lines[6], "SUBJECT TO");
  EXPECT_EQ(lines[7], "c1)");
  EXPECT_NE(out.find("   +1e-20 x\n"), std::string::npos);  // "%+.16f" would lose it
  EXPECT_NE(out.find("   < +4.0000000000000000 \n"), std::string::npos);
  EXPECT_NE(out.find("\nEND\n"), std::string::npos);
  EXPECT_NE(out.find("SUB   x +3.0000000000000000\n"), std::string::npos);
  EXPECT_NE(out.find("FREE        y\n"), std::string::npos);
  EXPECT_NE(out.find("RANGE c1 +2.0000000000000000\n"), std::string::npos);
  EnvModel back;
  ASSERT_EQ(KXreadKORVAFile(back.model, td.file("a.kvx").c_str()), 0);
  txt::expect_same(txt::snap(em.model), txt::snap(back.model), true, true);
}

TEST(KorvaWrite, RefusesWhatTheFormCannotHoldAndUnloadedModels) {
  TempDir td;
  EnvModel em;
  EXPECT_EQ(KXwriteKORVAFile(em.model, td.file("a.kvx").c_str()), KXERR_NO_MODEL_LOADED);
  EXPECT_EQ(KXwriteLPFile(em.model, td.file("a.lp").c_str()), KXERR_NO_MODEL_LOADED);
  EXPECT_EQ(KXwriteKORVAFile(nullptr, "x"), KXERR_ILLEGAL_NULL_POINTER);
  const std::string sos = "min\n x + y\nst\n c: x + y >= 1\nsos\n S1:: x:1 y:2\nend\n";
  ASSERT_EQ(KXreadLPStream(em.model, sos.data(), static_cast<int>(sos.size())), 0);
  EXPECT_EQ(KXwriteKORVAFile(em.model, td.file("a.kvx").c_str()), KXERR_NOT_SUPPORTED);
  EXPECT_EQ(KXwriteLPFile(em.model, td.file("no/such/dir.lp").c_str()), KXERR_CANNOT_OPEN_FILE);
}

TEST(KorvaWrite, DualOfASmallLpSolvesToThePrimalOptimum) {
  TempDir td;
  // Bounds of every kind: at 0, nonzero, free, fixed, ranged rows, a max sense.
  const char *models[] = {
      "max\n obj: 2 x + 3 y\nst\n c1: x + y <= 4\n c2: x + 3 y <= 6\nbounds\n x <= 3\nend\n",
      "min\n obj: x + 2 y - z + 3\nst\n a: x + y + z >= 2\n b: -1 <= x - y <= 4\n c: y + z = 3\n"
      "bounds\n -2 <= x <= 5\n y >= 1\n z free\nend\n",
      "max\n obj: - x - y\nst\n a: x + y >= -3\n b: x - y <= 1\nbounds\n -5 <= x <= 0\n y <= 0\n"
      " y >= -inf\nend\n",
  };
  for (const char *text : models) {
    SCOPED_TRACE(text);
    EnvModel p;
    ASSERT_EQ(KXreadLPStream(p.model, text, static_cast<int>(std::strlen(text))), 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(p.model, KX_METHOD_FREE, &st), 0);
    double op = 0;
    ASSERT_EQ(KXgetObjective(p.model, &op), 0);
    ASSERT_EQ(KXwriteDualKORVAFile(p.model, td.file("d.kvx").c_str()), 0);
    EnvModel d;
    ASSERT_EQ(KXreadKORVAFile(d.model, td.file("d.kvx").c_str()), 0);
    ASSERT_EQ(KXoptimize(d.model, KX_METHOD_PSIMPLEX, &st), 0);
    EXPECT_TRUE(st == KX_STATUS_OPTIMAL || st == KX_STATUS_BASIC_OPTIMAL);
    double od = 0;
    ASSERT_EQ(KXgetObjective(d.model, &od), 0);
    EXPECT_NEAR(od, op, 1e-9 * (1 + std::fabs(op)));
  }
}

}  // namespace
