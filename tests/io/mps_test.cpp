// MPS reader and writer on small hand-written files.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "base/kx.h"
#include "io/hashtab.h"
#include "io/mps.h"

namespace {

struct Fixture : ::testing::Test {
  pEnv env = nullptr;
  pModel model = nullptr;
  std::vector<std::string> files;
  void SetUp() override {
    int rc = 0;
    env = KXcreateEnv(&rc);
    ASSERT_EQ(rc, 0);
    model = KXcreateModel(env, &rc);
    ASSERT_EQ(rc, 0);
  }
  void TearDown() override {
    KXdeleteModel(&model);
    KXdeleteEnv(&env);
    for (auto &f : files) std::remove(f.c_str());
  }
  std::string path(const char *suffix) {
    char buf[256];
    std::snprintf(buf, sizeof buf, "/tmp/korva_mps_%d_%zu%s", static_cast<int>(getpid()),
                  files.size(), suffix);
    files.push_back(buf);
    return buf;
  }
  std::string write(const std::string &text, const char *suffix = ".mps") {
    std::string p = path(suffix);
    FILE *f = std::fopen(p.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), f);
    std::fclose(f);
    return p;
  }
  int read(const std::string &text, int format = KX_MPS_FREE) {
    return KXreadMPSFile(model, write(text).c_str(), format);
  }
  pModel fresh() {
    int rc;
    KXdeleteModel(&model);
    model = KXcreateModel(env, &rc);
    return model;
  }
};

const char *kSmall =
    "* a comment line\n"
    "NAME          SMALL\n"
    "OBJSENSE\n"
    "    MAX\n"
    "ROWS\n"
    " N  obj\n"
    " L  lim1\n"
    " G  lim2\n"
    " E  myeqn\n"
    " N  spare\n"
    "COLUMNS\n"
    "    x1  obj  1  lim1  1\n"
    "    x1  lim2 1  spare 99\n"
    "\n"
    "    MARKER  'MARKER'  'INTORG'\n"
    "    x2  obj  2  lim1  1 $ comment after the pair\n"
    "    x2  myeqn  -1\n"
    "    MARKER  'MARKER'  'INTEND'\n"
    "    x3  obj  -1.5d0  myeqn  1\n"
    "    x4  obj  1\n"
    "RHS\n"
    "    rhs  obj  -2.5  lim1  4\n"
    "    rhs  lim2  1  myeqn  7\n"
    "    other  lim1  99\n"
    "RANGES\n"
    "    rng  lim1  2.5  myeqn  -3\n"
    "BOUNDS\n"
    " UP bnd  x1  4\n"
    " MI bnd  x3\n"
    " BV bnd  x4\n"
    " LI bnd  x2  2\n"
    " UI bnd  x2  8.0000000000000001\n"
    "ENDATA\n";

TEST_F(Fixture, ReadsEverySectionOfASmallModel) {
  ASSERT_EQ(read(kSmall), 0);
  int sense;
  double c0, c[4], b[3], l[4], u[4], a[6];
  char types[4];
  int beg[5], len[4], rows[6];
  ASSERT_EQ(KXgetLPData(model, &sense, &c0, c, b, types, beg, len, a, rows, l, u), 0);
  EXPECT_EQ(sense, -1);
  EXPECT_DOUBLE_EQ(c0, 2.5);  // the objective row's RHS is the negated constant
  EXPECT_EQ(std::string(types, 3), "LGE");
  EXPECT_DOUBLE_EQ(c[0], 1);
  EXPECT_DOUBLE_EQ(c[1], 2);
  EXPECT_DOUBLE_EQ(c[2], -1.5);
  EXPECT_DOUBLE_EQ(b[0], 4);  // the second RHS set is ignored
  EXPECT_DOUBLE_EQ(b[2], 7);
  EXPECT_EQ(beg[4], 5);  // the spare N row's entry vanished
  EXPECT_EQ(len[0], 2);
  EXPECT_EQ(len[3], 0);
  EXPECT_DOUBLE_EQ(u[0], 4);
  EXPECT_DOUBLE_EQ(l[1], 2);
  EXPECT_DOUBLE_EQ(u[1], 8);
  EXPECT_EQ(l[2], -KX_INFINITY);
  EXPECT_EQ(u[2], KX_INFINITY);  // MI leaves the upper bound
  EXPECT_DOUBLE_EQ(u[3], 1);
  double r[3];
  ASSERT_EQ(KXgetConstraintRangeValues(model, r), 0);
  EXPECT_DOUBLE_EQ(r[0], 2.5);
  EXPECT_EQ(r[1], KX_INFINITY);
  EXPECT_DOUBLE_EQ(r[2], -3);
  int nR = 0, nBin = 0, nInt = 0;
  KXgetInfo(model, KX_IINFO_NUM_CONS_R, &nR);
  KXgetInfo(model, KX_IINFO_NUM_BIN, &nBin);
  KXgetInfo(model, KX_IINFO_NUM_INT, &nInt);
  EXPECT_EQ(nR, 2);
  EXPECT_EQ(nBin, 1);
  EXPECT_EQ(nInt, 1);
  char vt[4];
  ASSERT_EQ(KXgetVarType(model, vt), 0);
  EXPECT_EQ(std::string(vt, 4), "CICB");
  char name[64];
  ASSERT_EQ(KXgetConstraintNamei(model, 2, name), 0);
  EXPECT_STREQ(name, "myeqn");
  int idx = -1;
  ASSERT_EQ(KXgetVariableIndex(model, "x3", &idx), 0);
  EXPECT_EQ(idx, 2);
  EXPECT_EQ(KXgetVariableIndex(model, "X3", &idx), KXERR_COL_TOKEN_NOT_FOUND);
  EXPECT_EQ(KXgetConstraintIndex(model, "spare", &idx), KXERR_ROW_TOKEN_NOT_FOUND);
  char title[64], obj[64], rhs[64], rng[64], bnd[64];
  ASSERT_EQ(KXgetNameData(model, title, obj, rhs, rng, bnd, nullptr, nullptr, nullptr, nullptr,
                          nullptr, nullptr),
            0);
  EXPECT_STREQ(title, "SMALL");
  EXPECT_STREQ(obj, "obj");
  EXPECT_STREQ(rhs, "rhs");
  EXPECT_STREQ(bnd, "bnd");
  // Single getters.
  char ct;
  double v;
  int nnz, cols[4];
  double coef[4];
  ASSERT_EQ(KXgetLPConstraintDatai(model, 0, &ct, &v, &nnz, cols, coef), 0);
  EXPECT_EQ(ct, 'L');
  EXPECT_EQ(nnz, 2);
  EXPECT_EQ(cols[1], 1);
  ASSERT_EQ(KXgetLPVariableDataj(model, 1, &ct, &v, nullptr, nullptr, &nnz, cols, coef), 0);
  EXPECT_EQ(ct, 'I');
  EXPECT_EQ(nnz, 2);
  EXPECT_DOUBLE_EQ(coef[1], -1);
  EXPECT_EQ(KXgetObjectivej(model, 4, &v), KXERR_INDEX_OUT_OF_RANGE);
  ASSERT_EQ(KXgetUpperBoundj(model, 0, &v), 0);
  EXPECT_DOUBLE_EQ(v, 4);
  ASSERT_EQ(KXgetLowerBoundj(model, 2, &v), 0);
  EXPECT_EQ(v, -KX_INFINITY);
}

// A data line of the fixed layout: fields at columns 2, 5, 15, 25, 40 and 50.
std::string fixed_line(std::vector<std::string> f) {
  static const size_t at[6] = {1, 4, 14, 24, 39, 49};
  std::string s;
  for (size_t k = 0; k < f.size(); ++k) {
    if (f[k].empty()) continue;
    s.resize(at[k], ' ');
    s += f[k];
  }
  return s + "\r\n";
}

TEST_F(Fixture, FixedLayoutKeepsBlanksInNamesAndCrlfLinesRead) {
  std::string text = "NAME          FIXED    extra words\r\n"
                     "ROWS\r\n" +
                     fixed_line({"N", "COST"}) + fixed_line({"L", "ROW 1"}) +
                     fixed_line({"E", "ROW 2"}) + "COLUMNS\r\n" +
                     fixed_line({"", "X 1", "COST", "1.", "ROW 1", ".5"}) +
                     fixed_line({"", "X 1", "ROW 2", "-1.5d3"}) +
                     "    LONGCOLUMNNAME  COST   1\r\n" + "RHS\r\n" +
                     fixed_line({"", "", "ROW 1", "10."}) + "BOUNDS\r\n" +
                     fixed_line({"UP", "", "X 1", "4."}) +
                     "ENDATA";  // no line end at the end of the file
  ASSERT_EQ(read(text, KX_MPS_FIXED), 0);
  char title[64], name[64];
  KXgetNameData(model, title, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                nullptr, nullptr, nullptr);
  EXPECT_STREQ(title, "FIXED");
  KXgetConstraintNamei(model, 0, name);
  EXPECT_STREQ(name, "ROW 1");
  KXgetVariableNamej(model, 1, name);
  EXPECT_STREQ(name, "LONGCOLUMNNAME");  // a line off the columns is split at blanks
  double b, u, a[2];
  int rows[2], nnz;
  KXgetConstraintDatai(model, 0, nullptr, nullptr, &b);
  EXPECT_DOUBLE_EQ(b, 10);
  KXgetLPVariableDataj(model, 0, nullptr, nullptr, nullptr, &u, &nnz, rows, a);
  EXPECT_DOUBLE_EQ(u, 4);
  ASSERT_EQ(nnz, 2);
  EXPECT_DOUBLE_EQ(a[0], 0.5);
  EXPECT_DOUBLE_EQ(a[1], -1500);
}

TEST_F(Fixture, GzipFilesReadTransparently) {
  std::string p = path(".mps.gz");
  gzFile f = gzopen(p.c_str(), "wb");
  gzputs(f, kSmall);
  gzclose(f);
  ASSERT_EQ(KXreadMPSFile(model, p.c_str(), KX_MPS_FREE), 0);
  int n = 0;
  KXgetInfo(model, KX_IINFO_NUM_VARS, &n);
  EXPECT_EQ(n, 4);
}

struct BadCase {
  const char *what;
  std::string text;
  int line;
};

TEST_F(Fixture, BadFilesGive2003WithTheLine) {
  const std::string head = "NAME t\nROWS\n N obj\n L c1\nCOLUMNS\n x obj 1 c1 1\n";
  const BadCase cases[] = {
      {"missing ENDATA", head + "RHS\n rhs c1 1\n", 8},
      {"truncated", head.substr(0, 30), 5},
      {"unknown section", head + "FOO\nENDATA\n", 7},
      {"bad number", head + "RHS\n rhs c1 1.2.3\nENDATA\n", 8},
      {"duplicate row", "NAME t\nROWS\n N obj\n L c1\n G c1\nCOLUMNS\n x obj 1\nENDATA\n", 5},
      {"unknown row", head + " y obj 1 c9 2\nENDATA\n", 7},
      {"bad bound type", head + "BOUNDS\n XX bnd x 1\nENDATA\n", 8},
      {"unknown column", head + "BOUNDS\n UP bnd y 1\nENDATA\n", 8},
      {"no NAME", "ROWS\n N obj\nENDATA\n", 1},
      {"bad row type", "NAME t\nROWS\n Q obj\nENDATA\n", 3},
      {"column twice", head + " y obj 1\n x c1 2\nENDATA\n", 8},
      {"bad cone type", head + "CSECTION k 0 CUBE\n x\nENDATA\n", 7},
  };
  for (const auto &c : cases) {
    SCOPED_TRACE(c.what);
    fresh();
    EXPECT_EQ(read(c.text), KXERR_BAD_MPS_FILE);
    int line = -1;
    char text[1024];
    ASSERT_EQ(KXgetFileError(env, &line, text), 0);
    EXPECT_EQ(line, c.line);
    // The model is left clean and can take the next file.
    int n = -1;
    EXPECT_EQ(KXgetInfo(model, KX_IINFO_NUM_VARS, &n), KXERR_INFO_NOT_AVAILABLE);
  }
  fresh();
  EXPECT_EQ(read(head + "RHS\n rhs c1 abc\nENDATA\n"), KXERR_BAD_MPS_FILE);
  int line;
  char text[1024];
  KXgetFileError(env, &line, text);
  EXPECT_STREQ(text, " rhs c1 abc");
  EXPECT_EQ(KXreadMPSFile(model, "/nonexistent/file.mps", 0), KXERR_CANNOT_OPEN_FILE);
  EXPECT_EQ(KXreadMPSFile(model, nullptr, 0), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXreadMPSFile(model, "x", 7), KXERR_PARAMETER_OUT_OF_RANGE);
}

TEST_F(Fixture, ReadingOntoALoadedModelFails) {
  ASSERT_EQ(read(kSmall), 0);
  EXPECT_EQ(read(kSmall), KXERR_ALREADY_LOADED);
  int n = 0;
  KXgetInfo(model, KX_IINFO_NUM_VARS, &n);
  EXPECT_EQ(n, 4);
}

const char *kExtended =
    "NAME ext\n"
    "ROWS\n"
    " N obj\n"
    " L q1\n"
    " G c2\n"
    "COLUMNS\n"
    " x obj 1 q1 1\n"
    " S1 SET1 'MARKER' 'SOSORG'\n"
    " y obj 1 c2 1\n"
    " z c2 2\n"
    " SET1 'MARKER' 'SOSEND'\n"
    " S2 SET2 'MARKER' 'SOSORG'\n"
    " x obj 0\n"
    " w c2 1\n"
    " z obj 0\n"
    " SET2 'MARKER' 'SOSEND'\n"
    " CA SET3 'MARKER' 'SOSORG' 1\n"
    " t c2 1\n"
    " SET3 'MARKER' 'SOSEND'\n"
    " u q1 1\n"
    " v q1 1\n"
    "RHS\n"
    " rhs q1 10\n"
    "BOUNDS\n"
    " LO bnd w 2\n"
    " SC bnd w 9\n"
    " SC bnd t\n"
    "QUADOBJ\n"
    " x x 2\n"
    " y x 0.5\n"
    "QSECTION q1\n"
    " x x 1\n"
    " y y 1\n"
    "CSECTION k1 0 QUAD\n"
    " u\n"
    " v\n"
    "ENDATA\n";

TEST_F(Fixture, ExtendedSectionsAgreeWithTheGetters) {
  ASSERT_EQ(read(kExtended), 0);
  int nSets = 0, nnz = 0, card[3], beg[4], cols[8];  // z is in two sets
  char st[3];
  ASSERT_EQ(KXgetSETSData(model, &nSets, &nnz, st, card, beg, cols), 0);
  ASSERT_EQ(nSets, 3);
  EXPECT_EQ(nnz, 6);
  EXPECT_EQ(st[0], 1);
  EXPECT_EQ(st[1], 2);
  EXPECT_EQ(st[2], 4);
  EXPECT_EQ(card[2], 1);
  EXPECT_EQ(std::vector<int>(cols, cols + 6), (std::vector<int>{1, 2, 0, 3, 2, 4}));
  int nSC = 0, scv[2];
  double scl[2], scu[2];
  ASSERT_EQ(KXgetSemiContData(model, &nSC, scv, scl, scu), 0);
  ASSERT_EQ(nSC, 2);
  EXPECT_EQ(scv[0], 3);
  EXPECT_DOUBLE_EQ(scl[0], 2);
  EXPECT_DOUBLE_EQ(scu[0], 9);
  EXPECT_EQ(scu[1], KX_INFINITY);
  double l;
  KXgetLowerBoundj(model, 3, &l);
  EXPECT_EQ(l, 0.0);  // the true lower bound is kept with the semi-continuous data
  int nq = 0, qr[4], q1[4], q2[4];
  double qv[4];
  ASSERT_EQ(KXgetQCData(model, &nq, qr, q1, q2, qv), 0);
  ASSERT_EQ(nq, 4);
  EXPECT_EQ(qr[0], -1);
  EXPECT_EQ(q1[1], 1);  // (y, x) stored as the lower triangle
  EXPECT_EQ(q2[1], 0);
  EXPECT_DOUBLE_EQ(qv[1], 0.5);
  EXPECT_EQ(qr[3], 0);
  ASSERT_EQ(KXgetQCDatai(model, 0, &nq, q1, q2, qv), 0);
  EXPECT_EQ(nq, 2);
  int info = 0;
  KXgetInfo(model, KX_IINFO_NUM_QC_NONZ, &info);
  EXPECT_EQ(info, 4);
  KXgetInfo(model, KX_IINFO_NUM_CONES, &info);
  EXPECT_EQ(info, 1);
  KXgetInfo(model, KX_IINFO_NUM_CONE_NONZ, &info);
  EXPECT_EQ(info, 2);
  char ctype;
  int clen, ccols[2];
  ASSERT_EQ(KXgetConeDatai(model, 0, &ctype, &clen, ccols), 0);
  EXPECT_EQ(ctype, 'Q');
  EXPECT_EQ(ccols[1], 6);
  char cname[32];
  ASSERT_EQ(KXgetConeNamei(model, 0, cname), 0);
  EXPECT_STREQ(cname, "k1");
}

// Everything the round trip compares.
struct Snapshot {
  int m = 0, n = 0, sense = 0;
  double c0 = 0;
  std::vector<double> c, b, a, l, u, r, qv;
  std::vector<int> beg, rows, q1, q2, qr, sets, sc;
  std::string types, vt, names;
  bool operator==(const Snapshot &) const = default;
};

Snapshot snap(pModel model) {
  Snapshot s;
  KXgetInfo(model, KX_IINFO_NUM_CONS, &s.m);
  KXgetInfo(model, KX_IINFO_NUM_VARS, &s.n);
  int nz = 0, nq = 0, ns = 0, nsn = 0, nsc = 0;
  KXgetInfo(model, KX_IINFO_NUM_NONZ, &nz);
  s.c.resize(s.n);
  s.l.resize(s.n);
  s.u.resize(s.n);
  s.b.resize(s.m);
  s.r.resize(s.m);
  s.a.resize(nz);
  s.rows.resize(nz);
  s.beg.resize(s.n + 1);
  s.types.resize(s.m);
  s.vt.resize(s.n);
  KXgetLPData(model, &s.sense, &s.c0, s.c.data(), s.b.data(), s.types.data(), s.beg.data(),
              nullptr, s.a.data(), s.rows.data(), s.l.data(), s.u.data());
  KXgetConstraintRangeValues(model, s.r.data());
  KXgetVarType(model, s.vt.data());
  KXgetQCData(model, &nq, nullptr, nullptr, nullptr, nullptr);
  s.qr.resize(nq);
  s.q1.resize(nq);
  s.q2.resize(nq);
  s.qv.resize(nq);
  KXgetQCData(model, &nq, s.qr.data(), s.q1.data(), s.q2.data(), s.qv.data());
  KXgetSETSData(model, &ns, &nsn, nullptr, nullptr, nullptr, nullptr);
  s.sets.resize(nsn);
  KXgetSETSData(model, &ns, &nsn, nullptr, nullptr, nullptr, s.sets.data());
  KXgetSemiContData(model, &nsc, nullptr, nullptr, nullptr);
  s.sc.resize(nsc);
  KXgetSemiContData(model, &nsc, s.sc.data(), nullptr, nullptr);
  char name[256];
  for (int i = 0; i < s.m; ++i) {
    KXgetConstraintNamei(model, i, name);
    s.names += name;
    s.names += '|';
  }
  for (int j = 0; j < s.n; ++j) {
    KXgetVariableNamej(model, j, name);
    s.names += name;
    s.names += '|';
  }
  return s;
}

TEST_F(Fixture, ExtendedModelSurvivesBothLayouts) {
  ASSERT_EQ(read(kExtended), 0);
  Snapshot before = snap(model);
  for (int format : {KX_MPS_FREE, KX_MPS_FIXED}) {
    SCOPED_TRACE(format);
    std::string p = path(".mps");
    ASSERT_EQ(KXwriteMPSFile(model, p.c_str(), format), 0);
    int rc;
    pModel back = KXcreateModel(env, &rc);
    ASSERT_EQ(KXreadMPSFile(back, p.c_str(), format), 0);
    EXPECT_TRUE(snap(back) == before);
    KXdeleteModel(&back);
  }
}

TEST_F(Fixture, MaximisationReadsBackByWriterStyle) {
  ASSERT_EQ(read(kSmall), 0);
  Snapshot orig = snap(model);
  for (int style : {0, 1, 2, 3}) {
    SCOPED_TRACE(style);
    model->splexPam->mpsObjWriteStyle = style;
    std::string p = path(".mps");
    ASSERT_EQ(KXwriteMPSFile(model, p.c_str(), KX_MPS_FREE), 0);
    int rc;
    pModel back = KXcreateModel(env, &rc);
    ASSERT_EQ(KXreadMPSFile(back, p.c_str(), KX_MPS_FREE), 0);
    Snapshot s = snap(back);
    KXdeleteModel(&back);
    Snapshot expect = orig;
    if (style == 0 || style == 2) expect.sense = 1;  // a minimisation
    if (style == 2) {                                 // with negated coefficients
      for (double &v : expect.c) v = -v;
      expect.c0 = -expect.c0;
    }
    EXPECT_TRUE(s == expect);
  }
}

TEST(MpsNumbers, ScannerAndFormats) {
  double v;
  EXPECT_TRUE(kxi::mps_number("1.5d3", 5, &v));
  EXPECT_EQ(v, 1500);
  EXPECT_TRUE(kxi::mps_number("-.36", 4, &v));
  EXPECT_EQ(v, -0.36);
  EXPECT_TRUE(kxi::mps_number("10.", 3, &v));
  EXPECT_EQ(v, 10);
  EXPECT_TRUE(kxi::mps_number("+2E-3", 5, &v));
  EXPECT_EQ(v, 0.002);
  EXPECT_FALSE(kxi::mps_number("1x", 2, &v));
  EXPECT_FALSE(kxi::mps_number("nan", 3, &v));
  EXPECT_FALSE(kxi::mps_number("", 0, &v));
  EXPECT_EQ(kxi::mps_free_fmt(150000.0), "150000");
  EXPECT_EQ(kxi::mps_free_fmt(0.5), "0.5");
  EXPECT_EQ(kxi::mps_free_fmt(-0.001), "-1.0000000000000000E-3");  // exponent without sign or zeros
  EXPECT_EQ(kxi::mps_fixed_fmt(-1.981755e-05), "-1.981755e-5");
  EXPECT_EQ(kxi::mps_fixed_fmt(0.486), ".486");
  for (double x : {0.1, 1.0 / 3.0, -2.718281828459045e-200, 6.02214076e23, 1e-310}) {
    for (const std::string &s : {kxi::mps_free_fmt(x), kxi::mps_fixed_fmt(x)}) {
      ASSERT_TRUE(kxi::mps_number(s.c_str(), static_cast<int>(s.size()), &v)) << s;
      EXPECT_EQ(v, x) << s;
    }
  }
}

TEST(MpsTokens, FreeAndFixedSplitting) {
  kxi::MpsTokens tk;
  const char *l1 = "x1 c1 1.0 $ comment";
  kxi::mps_tokens_free(l1, static_cast<int>(std::strlen(l1)), tk);
  EXPECT_EQ(tk.n, 3);
  const char *l2 = "    X 1       ROW 1               .5";
  kxi::mps_tokens_fixed(l2, static_cast<int>(std::strlen(l2)), tk);
  ASSERT_TRUE(tk.bySlots);
  EXPECT_STREQ(tk.t[1], "X 1");
  EXPECT_STREQ(tk.t[2], "ROW 1");
  EXPECT_STREQ(tk.t[3], ".5");
  EXPECT_EQ(tk.t[0], nullptr);
  const char *l3 = "    averyverylongname  r1  2";
  kxi::mps_tokens_fixed(l3, static_cast<int>(std::strlen(l3)), tk);
  EXPECT_FALSE(tk.bySlots);
  EXPECT_EQ(tk.n, 3);
}

std::string key(int i) {
  char b[16];
  std::snprintf(b, sizeof b, "n%d", i);
  return b;
}

TEST(NameHash, InsertLookupAndGrowth) {
  KXnameHash h;
  kxi::hash_init(h, 4);
  for (int i = 0; i < 5000; ++i) ASSERT_EQ(kxi::hash_insert(h, key(i), i * 2), i);
  EXPECT_EQ(kxi::hash_insert(h, "n17", 0), -1);
  for (int i = 0; i < 5000; i += 7) EXPECT_EQ(kxi::hash_lookup(h, key(i)), i * 2);
  EXPECT_EQ(kxi::hash_lookup(h, "n5000"), -1);
  EXPECT_EQ(kxi::hash_lookup(h, "n1"), 2);
  EXPECT_EQ(kxi::hash_lookup(h, "n"), -1);
  EXPECT_EQ(kxi::hash_prime(100), 193u);
  EXPECT_EQ(kxi::hash_prime(4000000000u), 2147483647u);
  // h = 16h + c with the fold of the top nibble.
  EXPECT_EQ(kxi::name_hash("A"), 65u);
  EXPECT_EQ(kxi::name_hash("AB"), 65u * 16 + 66);
}

}  // namespace
