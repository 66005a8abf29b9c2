// Hand-written LP models: read, write with the LP and KORVA writers, read back,
// same data; solved, same optimum.  Also what the LP writer does with names.
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

// A dozen small models, with multi-line rows, comments and every section.
const char *const kModels[] = {
    // 1. the plain product mix
    "max\n obj: 2 x + 3 y\nst\n c1: x + y <= 4\n c2: x + 3 y <= 6\nbounds\n x <= 3\nend\n",
    // 2. rows over several lines, comments everywhere
    "\\ diet\nMinimize\n cost: 0.6 bread + 2.35 milk\n  + 1.5 cheese \\ per unit\n"
    "Subject To\n cal: 30 bread + 60 milk\n   + 110 cheese\n   >= 2000\n"
    " \\ protein\n prot: 5 bread + 4 milk + 8 cheese >= 55\nEnd\n",
    // 3. constants on either side, objective constant
    "min\n obj: x - y + 10\nst\n a: 3 + x >= 1 - y\n b: 2 <= x + y\n c: x - 4 <= 2 y\nend\n",
    // 4. ranged rows both ways and an equation
    "max\n z: x + y + w\nst\n r1: -2 <= x - y <= 3\n r2: 9 >= x + w >= 1\n e: x + y + w = 7\nend\n",
    // 5. every bound form
    "min\n o: a + b - c + d + e\nst\n k: a + b + c + d + e >= -100\nbounds\n a <= 4\n b >= -3\n"
    " -2 <= c <= 7\n d free\n e = 1.5\nend\n",
    // 6. generals and binaries
    "max\n o: 5 x + 4 y + 3 b\nst\n c: 2 x + 3 y + b <= 5\n d: 4 x + y + 2 b <= 11\nbounds\n x <= 10\n"
    "general\n x y\nbinary\n b\nend\n",
    // 7. semi-continuous columns
    "min\n o: x + 2 s\nst\n c: x + s >= 3\nbounds\n 1 <= s <= 5\nsemi-continuous\n s\nend\n",
    // 8. SOS sets of all kinds
    "max\n o: x1 + 2 x2 + 3 x3\nst\n c: x1 + x2 + x3 <= 2\nbounds\n x1 <= 1\n x2 <= 1\n x3 <= 1\n"
    "sos\n s1: S1:: x1:1 x2:2 x3:3\n s2: S2:: x1:1 x2:2 x3:3\n S3:: x1:1 x3:2\n k: C2:: x1:1 x2:2 x3:3\nend\n",
    // 9. a column that only the objective holds, with zero cost, and a free row
    "min\n o: x + 0 y + 0 z\nst\n c: x + z >= 1\n n: -inf <= x + z <= inf\nend\n",
    // 10. names with punctuation
    "min\n o: x.1 + y_2 + z{3} + #w\nst\n row.1: x.1 + y_2 >= 1\n R(2): z{3} + #w >= 2\nend\n",
    // 11. many terms on one row (wrapped on writing) and tiny and huge numbers
    "min\n o: 1e-12 a + 3.5e11 b + c + d + e + f + g + h + i + j + k + l + m + n + p + q + r + s\n"
    "st\n big: a + b + c + d + e + f + g + h + i + j + k + l + m + n + p + q + r + s >= 0.1\n"
    " rng: -1e-7 <= a - b + c - d + e - f + g - h + i - j + k - l + m - n + p - q + r - s <= 3\nend\n",
    // 12. sections in another order, keywords in other spellings
    "MAXIMIZE\n obj: x + y\nSUCH THAT\n c: x + y <= 5\nbinaries\n y\nbounds\n x <= 2.5\n"
    "integers\n x\nend\n",
};

TEST(LpWrite, HandWrittenModelsKeepTheirDataThroughBothWriters) {
  TempDir td;
  int k = 0;
  for (const char *text : kModels) {
    SCOPED_TRACE(std::string("model ") + std::to_string(++k));
    EnvModel a;
    ASSERT_EQ(KXreadLPStream(a.model, text, static_cast<int>(std::strlen(text))), 0);
    txt::Snap sa = txt::snap(a.model);
    const std::string lp = td.file("m.lp"), kvx = td.file("m.kvx");
    ASSERT_EQ(KXwriteLPFile(a.model, lp.c_str()), 0);
    EnvModel b;
    ASSERT_EQ(KXreadLPFile(b.model, lp.c_str()), 0) << txt::get_file(lp);
    txt::expect_same(sa, txt::snap(b.model), true, false);
    // The file written a second time is the same file.
    ASSERT_EQ(KXwriteLPFile(b.model, td.file("m2.lp").c_str()), 0);
    EXPECT_EQ(txt::get_file(td.file("m2.lp")).substr(txt::get_file(td.file("m2.lp")).find('\n')),
              txt::get_file(lp).substr(txt::get_file(lp).find('\n')));
    int rc = KXwriteKORVAFile(a.model, kvx.c_str());
    if (sa.nSets || !sa.scVars.empty()) {
      EXPECT_EQ(rc, KXERR_NOT_SUPPORTED);
      continue;
    }
    ASSERT_EQ(rc, 0);
    EnvModel c;
    ASSERT_EQ(KXreadKORVAFile(c.model, kvx.c_str()), 0) << txt::get_file(kvx);
    // Model 10 has a row name with ")", which KORVA text cannot hold.
    txt::expect_same(sa, txt::snap(c.model), k != 10, true);
  }
}

TEST(LpWrite, HandWrittenLinearModelsKeepTheirOptimum) {
  TempDir td;
  for (int k : {0, 1, 2, 3, 4, 8, 9, 10}) {
    SCOPED_TRACE(k + 1);
    EnvModel a;
    ASSERT_EQ(KXreadLPStream(a.model, kModels[k], static_cast<int>(std::strlen(kModels[k]))), 0);
    int st = 0;
    ASSERT_EQ(KXoptimize(a.model, KX_METHOD_FREE, &st), 0);
    double oa = 0;
    ASSERT_EQ(KXgetObjective(a.model, &oa), 0);
    ASSERT_EQ(KXwriteLPFile(a.model, td.file("m.lp").c_str()), 0);
    EnvModel b;
    ASSERT_EQ(KXreadLPFile(b.model, td.file("m.lp").c_str()), 0);
    ASSERT_EQ(KXoptimize(b.model, KX_METHOD_FREE, &st), 0);
    double ob = 0;
    ASSERT_EQ(KXgetObjective(b.model, &ob), 0);
    EXPECT_EQ(oa, ob);
  }
  // Known optima of the first two.
  EnvModel a;
  ASSERT_EQ(KXreadLPStream(a.model, kModels[0], static_cast<int>(std::strlen(kModels[0]))), 0);
  int st;
  ASSERT_EQ(KXoptimize(a.model, KX_METHOD_FREE, &st), 0);
  double o;
  KXgetObjective(a.model, &o);
  EXPECT_NEAR(o, 9.0, 1e-9);
}

TEST(LpWrite, WrittenTextHasTheSectionsInTheirOrder) {
  TempDir td;
  EnvModel a;
  const char *text = kModels[5];
  ASSERT_EQ(KXreadLPStream(a.model, text, static_cast<int>(std::strlen(text))), 0);
  ASSERT_EQ(KXwriteLPFile(a.model, td.file("m.lp").c_str()), 0);
  std::string out = txt::get_file(td.file("m.lp"));
  size_t p1 = out.find("Maximize\n o: 5 x + 4 y + 3 b\n");
  size_t p2 = out.find("Subject To\n c: 2 x + 3 y + b <= 5\n d: 4 x + y + 2 b <= 11\n");
  size_t p3 = out.find("Bounds\n x <= 10\n");
  size_t p4 = out.find("Generals\n  x y\n");
  size_t p5 = out.find("Binaries\n  b\n");
  size_t p6 = out.find("End\n");
  ASSERT_NE(p1, std::string::npos) << out;
  EXPECT_TRUE(p1 < p2 && p2 < p3 && p3 < p4 && p4 < p5 && p5 < p6) << out;
}

TEST(LpWrite, NamesTheFormatCannotHoldAreMadeFit) {
  TempDir td;
  EnvModel a;
  // Columns named with blanks, a digit first, a keyword and a clash after fitting.
  double c[4] = {1, 1, 1, 1}, b[1] = {1}, v[4] = {1, 1, 1, 1};
  int beg[5] = {0, 1, 2, 3, 4}, rows[4] = {0, 0, 0, 0};
  ASSERT_EQ(KXloadLPData(a.model, 1, 4, 1, 0, c, b, "G", 4, beg, nullptr, v, rows, nullptr, nullptr), 0);
  char n0[] = "a b", n1[] = "1x", n2[] = "end", n3[] = "a_b", r0[] = "st";
  char *cn[] = {n0, n1, n2, n3}, *rn[] = {r0};
  ASSERT_EQ(KXloadNameData(a.model, nullptr, nullptr, nullptr, nullptr, nullptr, rn, cn, nullptr), 0);
  ASSERT_EQ(KXwriteLPFile(a.model, td.file("m.lp").c_str()), 0);
  EnvModel r;
  ASSERT_EQ(KXreadLPFile(r.model, td.file("m.lp").c_str()), 0) << txt::get_file(td.file("m.lp"));
  txt::Snap s = txt::snap(r.model);
  EXPECT_EQ(s.colNames, (std::vector<std::string>{"a_b", "_1x", "C0000002", "C0000003"}));
  EXPECT_EQ(s.rowNames, (std::vector<std::string>{"R0000000"}));
}

}  // namespace
