// The LP format reader: sections, row forms, names, numbers, and its errors.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "io_text/text_util.h"
#include "korva.h"
#include "support/kx_test_util.h"

namespace {

using kxtest::EnvModel;
using kxtest::TempDir;

int read_text(pModel m, const std::string &text) {
  return KXreadLPStream(m, text.data(), static_cast<int>(text.size()));
}

struct Row {
  char type;
  double b;
  double r;
  std::vector<std::pair<int, double>> terms;
};

Row row_of(pModel m, int i) {
  Row r{};
  int n = txt::info(m, KX_IINFO_NUM_VARS);
  std::vector<int> idx(n);
  std::vector<double> val(n);
  int nnz = 0;
  EXPECT_EQ(KXgetLPConstraintDatai(m, i, &r.type, &r.b, &nnz, idx.data(), val.data()), 0);
  for (int k = 0; k < nnz; ++k) r.terms.push_back({idx[k], val[k]});
  std::sort(r.terms.begin(), r.terms.end());
  std::vector<double> rg(txt::info(m, KX_IINFO_NUM_CONS));
  KXgetConstraintRangeValues(m, rg.data());
  r.r = rg[i];
  return r;
}

int col(pModel m, const char *name) {
  int j = -1;
  EXPECT_EQ(KXgetVariableIndex(m, name, &j), 0) << name;
  return j;
}

TEST(LpRead, ObjectiveAndRowsOverSeveralLinesWithComments) {
  EnvModel em;
  const std::string text =
      "\\ a model in LP form\n"
      "Maximize\n"
      " profit: 3 x + 2 y\n"
      "   - 1.5 z \\ a comment after a term\n"
      "   + 7\n"
      "Subject To\n"
      " \\ a comment line between rows\n"
      " cap: x + y\n"
      "      + z\n"
      "   <= 10\n"
      " low: - x + 3 y >= -2\n"
      "End\n";
  ASSERT_EQ(read_text(em.model, text), 0);
  txt::Snap s = txt::snap(em.model);
  EXPECT_EQ(s.sense, -1);
  EXPECT_EQ(s.n, 3);
  EXPECT_EQ(s.m, 2);
  EXPECT_EQ(s.c, (std::vector<double>{3, 2, -1.5}));
  EXPECT_EQ(s.c0, 7.0);
  EXPECT_EQ(s.colNames, (std::vector<std::string>{"x", "y", "z"}));
  EXPECT_EQ(s.rowNames, (std::vector<std::string>{"cap", "low"}));
  Row r0 = row_of(em.model, 0);
  EXPECT_EQ(r0.type, 'L');
  EXPECT_EQ(r0.b, 10.0);
  EXPECT_EQ(r0.terms.size(), 3u);
  Row r1 = row_of(em.model, 1);
  EXPECT_EQ(r1.type, 'G');
  EXPECT_EQ(r1.b, -2.0);
  EXPECT_EQ(r1.terms, (std::vector<std::pair<int, double>>{{0, -1.0}, {1, 3.0}}));
  char title[256] = "";
  KXgetNameData(em.model, title, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                nullptr, nullptr, nullptr);
  EXPECT_EQ(std::strncmp(title, "stream_", 7), 0);
  char obj[256] = "";
  KXgetNameData(em.model, nullptr, obj, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                nullptr, nullptr, nullptr);
  EXPECT_STREQ(obj, "profit");
}

TEST(LpRead, ConstantsAndTermsOnEitherSide) {
  EnvModel em;
  const std::string text =
      "min\n x + y\n"
      "st\n"
      " a: 2 <= x\n"            // constant left: x >= 2
      " b: x + 3 <= 10 - y\n"   // x + y <= 7
      " c: 4 x = 2 y + 1\n"     // 4x - 2y = 1
      " d: x + x + y - y >= 1\n"  // equal columns summed; a zero sum drops the entry
      "end\n";
  ASSERT_EQ(read_text(em.model, text), 0);
  Row a = row_of(em.model, 0);
  EXPECT_EQ(a.type, 'G');
  EXPECT_EQ(a.b, 2.0);
  EXPECT_EQ(a.terms, (std::vector<std::pair<int, double>>{{0, 1.0}}));
  Row b = row_of(em.model, 1);
  EXPECT_EQ(b.type, 'L');
  EXPECT_EQ(b.b, 7.0);
  EXPECT_EQ(b.terms, (std::vector<std::pair<int, double>>{{0, 1.0}, {1, 1.0}}));
  Row c = row_of(em.model, 2);
  EXPECT_EQ(c.type, 'E');
  EXPECT_EQ(c.b, 1.0);
  EXPECT_EQ(c.terms, (std::vector<std::pair<int, double>>{{0, 4.0}, {1, -2.0}}));
  Row d = row_of(em.model, 3);
  EXPECT_EQ(d.terms, (std::vector<std::pair<int, double>>{{0, 2.0}}));
}

TEST(LpRead, RangedRowsAndRelationSpellings) {
  EnvModel em;
  const std::string text =
      "minimize\n obj: x + y\n"
      "subject to\n"
      " r1: -5 <= x + y <= 8\n"
      " r2: 9 >= x - y >= 1\n"
      " r3: x =< 4\n"
      " r4: y => 1\n"
      " r5: x + y < 20\n"
      " r6: 3 <= x + y <= 3\n"
      " r7: -inf <= x - y <= +inf\n"
      "end\n";
  ASSERT_EQ(read_text(em.model, text), 0);
  Row r1 = row_of(em.model, 0);
  EXPECT_EQ(r1.type, 'L');
  EXPECT_EQ(r1.b, 8.0);
  EXPECT_EQ(r1.r, 13.0);
  Row r2 = row_of(em.model, 1);
  EXPECT_EQ(r2.type, 'G');
  EXPECT_EQ(r2.b, 1.0);
  EXPECT_EQ(r2.r, 8.0);
  EXPECT_EQ(row_of(em.model, 2).type, 'L');
  EXPECT_EQ(row_of(em.model, 3).type, 'G');
  EXPECT_EQ(row_of(em.model, 4).type, 'L');
  Row r6 = row_of(em.model, 5);
  EXPECT_EQ(r6.type, 'E');
  EXPECT_EQ(r6.b, 3.0);
  EXPECT_EQ(row_of(em.model, 6).type, 'N');
}

TEST(LpRead, BoundsInEveryForm) {
  EnvModel em;
  const std::string text =
      "min\n a + b + c + d + e + f + g + h\n"
      "st\n c1: a + b + c + d + e + f + g + h >= 1\n"
      "bounds\n"
      " a <= 4\n"
      " b >= -3\n"
      " -2 <= c <= 7\n"
      " d free\n"
      " e = 5\n"
      " -inf <= f\n"
      " g >= -infinity\n"
      " 6 >= h\n"
      " unknown <= 3\n"
      "end\n";
  ASSERT_EQ(read_text(em.model, text), 0);
  txt::Snap s = txt::snap(em.model);
  const double inf = KX_INFINITY;
  EXPECT_EQ(s.l, (std::vector<double>{0, -3, -2, -inf, 5, -inf, -inf, 0}));
  EXPECT_EQ(s.u, (std::vector<double>{4, inf, 7, inf, 5, inf, inf, 6}));
  EXPECT_EQ(s.n, 8);  // the unknown name made no column
}

TEST(LpRead, IntegerBinarySemiContinuousAndSos) {
  EnvModel em;
  const std::string text =
      "max\n obj: x1 + x2 + x3 + b1 + b2 + s + y1 + y2 + y3\n"
      "st\n c: x1 + x2 + x3 + b1 + b2 + s + y1 + y2 + y3 <= 40\n"
      "bounds\n x1 <= 10\n 2 <= s <= 9\n"
      "general\n x1 x2\n  x3\n"
      "binary\n b1\n b2 nosuch\n"
      "semi-continuous\n s\n"
      "sos\n"
      " set1: S1:: y1:1 y2:2\n"
      "   y3:3\n"
      " S2:: y3:5 y1:1 y2:2\n"
      " card: C2:: y1:1 y2:2 y3:3\n"
      "end\n";
  ASSERT_EQ(read_text(em.model, text), 0);
  txt::Snap s = txt::snap(em.model);
  EXPECT_EQ(s.vt, "IIIBBCCCC");
  EXPECT_EQ(s.u[col(em.model, "b1")], 1.0);
  ASSERT_EQ(s.scVars.size(), 1u);
  EXPECT_EQ(s.scVars[0], col(em.model, "s"));
  EXPECT_EQ(s.scL[0], 2.0);
  EXPECT_EQ(s.scU[0], 9.0);
  EXPECT_EQ(s.l[col(em.model, "s")], 0.0);
  ASSERT_EQ(s.nSets, 3);
  EXPECT_EQ(s.setTypes[0], 1);
  EXPECT_EQ(s.setTypes[1], 2);
  EXPECT_EQ(s.setTypes[2], 4);
  EXPECT_EQ(s.setCard[2], 2);
  int y1 = col(em.model, "y1"), y2 = col(em.model, "y2"), y3 = col(em.model, "y3");
  // Members in the order of their weights.
  EXPECT_EQ(s.setCols, (std::vector<int>{y1, y2, y3, y1, y2, y3, y1, y2, y3}));
  EXPECT_EQ(s.setBeg, (std::vector<int>{0, 3, 6, 9}));
}

TEST(LpRead, KeywordsByTheirPatterns) {
  // Spellings of the sense and the start of the constraints.
  for (const char *head : {"MAXIMIZE", "Max", "max", "maxi", "maximum", "Maximise"}) {
    EnvModel em;
    std::string t = std::string(head) + "\n x\nst\n c: x <= 1\nend\n";
    ASSERT_EQ(read_text(em.model, t), 0) << head;
    EXPECT_EQ(txt::snap(em.model).sense, -1) << head;
  }
  for (const char *st : {"s.t.", "subject   to", "Subject To", "st", "such that", "ST."}) {
    EnvModel em;
    std::string t = std::string("min\n x\n") + st + "\n c: x >= 1\nend\n";
    ASSERT_EQ(read_text(em.model, t), 0) << st;
    EXPECT_EQ(txt::info(em.model, KX_IINFO_NUM_CONS), 1) << st;
  }
  EnvModel em;
  EXPECT_EQ(read_text(em.model, "maxx\n x\nst\n c: x <= 1\nend\n"), KXERR_ERROR_IN_INPUT);
  EnvModel em2;
  ASSERT_EQ(read_text(em2.model, "max<\nend\n"), KXERR_ERROR_IN_INPUT);
  int line = 0;
  char buf[1024];
  KXgetFileError(em2.env, &line, buf);
  EXPECT_EQ(line, 1);  // "max<" is the keyword and "<" a stray token
}

TEST(LpRead, NamesWithPunctuation) {
  EnvModel em;
  const std::string text =
      "min\n obj: x.1 + y_2 + z(3) + #w + a[b] + q'r\n"
      "st\n row.1: x.1 + y_2 >= 1\n R{2}: z(3) + #w + a[b] + q'r <= 4\nend\n";
  ASSERT_EQ(read_text(em.model, text), 0);
  txt::Snap s = txt::snap(em.model);
  EXPECT_EQ(s.colNames, (std::vector<std::string>{"x.1", "y_2", "z(3)", "#w", "a[b]", "q'r"}));
  EXPECT_EQ(s.rowNames, (std::vector<std::string>{"row.1", "R{2}"}));
}

TEST(LpRead, NumbersInTheirForms) {
  EnvModel em;
  const std::string text =
      "min\n obj: 1.5e2 x + .25 y + 3. z + 2E-3 w\nst\n c: 1e+1 x + 4 y >= 1.25e-1\nend\n";
  ASSERT_EQ(read_text(em.model, text), 0);
  txt::Snap s = txt::snap(em.model);
  EXPECT_EQ(s.c, (std::vector<double>{150, 0.25, 3, 0.002}));
  EXPECT_EQ(s.b[0], 0.125);
}

TEST(LpRead, UnnamedRowTakesThePattern) {
  EnvModel em;
  ASSERT_EQ(read_text(em.model, "min\n x\nst\n x >= 1\n c: x <= 3\n : x <= 5\nend\n"), 0);
  txt::Snap s = txt::snap(em.model);
  EXPECT_EQ(s.rowNames, (std::vector<std::string>{"R0000000", "c", "R0000002"}));
}

TEST(LpRead, SyntaxErrorsNameTheirLine) {
  struct Case {
    const char *text;
    int line;
  } cases[] = {
      {"min\n x + y\nst\n c1: x + y >= 1\n c2: x + * y <= 4\nend\n", 5},
      {"min\n x\nst\n c1: x + y\nend\n", 5},               // no relation before End
      {"x + y\nst\n c: x >= 1\nend\n", 1},                 // no sense
      {"min\n x\nst\n c: x >= 1\n c: x <= 3\nend\n", 5},   // duplicate row name
      {"min\n x\nst\n c: x >= 1\nbounds\n x <= \nend\n", 7},
      {"min\n x\nst\n c: 5 <= x >= 1\nend\n", 4},          // relations differ
      {"min\n x\nst\n c: x >= 1\nsos\n s1: S1:: x\nend\n", 6},
      {"min\n x\nst\n c: x >= 1\nfoo\n", 5},
  };
  for (const auto &c : cases) {
    EnvModel em;
    EXPECT_EQ(read_text(em.model, c.text), KXERR_ERROR_IN_INPUT) << c.text;
    int line = 0;
    char buf[1024] = "";
    ASSERT_EQ(KXgetFileError(em.env, &line, buf), 0);
    EXPECT_EQ(line, c.line) << c.text;
    // The model is left unloaded and can take a good file.
    EXPECT_EQ(read_text(em.model, "min\n x\nst\n c: x >= 1\nend\n"), 0);
  }
}

TEST(LpRead, FilesStreamsAndArguments) {
  TempDir td;
  EnvModel em;
  EXPECT_EQ(KXreadLPFile(em.model, td.file("none.lp").c_str()), KXERR_CANNOT_OPEN_FILE);
  EXPECT_EQ(KXreadLPFile(nullptr, "x"), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXreadLPFile(em.model, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXreadLPStream(em.model, "mi", 2), KXERR_ERROR_IN_INPUT);
  EXPECT_EQ(KXreadLPStream(em.model, "min", -1), KXERR_PARAMETER_OUT_OF_RANGE);
  txt::put_file(td.file("a.lp"), "min\r\n x\r\nst\r\n c: x >= 1\r\nend");  // CR LF, no last line end
  ASSERT_EQ(KXreadLPFile(em.model, td.file("a.lp").c_str()), 0);
  char title[512] = "";
  KXgetNameData(em.model, title, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                nullptr, nullptr, nullptr);
  EXPECT_EQ(std::string(title), td.file("a.lp"));
  EXPECT_EQ(KXreadLPFile(em.model, td.file("a.lp").c_str()), KXERR_ALREADY_LOADED);
  // A stream needs no terminator: only the given length is read.
  EnvModel em2;
  std::string t = "min\n x\nst\n c: x >= 1\nend\nGARBAGE";
  ASSERT_EQ(KXreadLPStream(em2.model, t.data(), static_cast<int>(t.size()) - 7), 0);
}

TEST(LpRead, EndIsOptionalAndTextAfterItIsIgnored) {
  EnvModel em;
  ASSERT_EQ(read_text(em.model, "min\n x\nst\n c: x >= 1\n"), 0);
  EnvModel em2;
  ASSERT_EQ(read_text(em2.model, "min\n x\nst\n c: x >= 1\nend\n!!! anything\n"), 0);
}

}  // namespace
