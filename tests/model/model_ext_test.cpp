// Load calls of the extended model data: their error codes, and the model left
// as it was after each failure.
#include <gtest/gtest.h>

#include <vector>

#include "base/kx.h"

namespace {

struct Ext : ::testing::Test {
  pEnv env = nullptr;
  pModel m = nullptr;
  void SetUp() override {
    int rc;
    env = KXcreateEnv(&rc);
    m = KXcreateModel(env, &rc);
    // 2 rows, 4 columns.
    double c[4] = {1, 2, 3, 4}, b[2] = {1, 2}, a[4] = {1, 1, 1, 1};
    int beg[5] = {0, 1, 2, 3, 4}, rows[4] = {0, 1, 0, 1};
    double l[4] = {0, -1, 0, 2}, u[4] = {5, 5, 0.5, 9};
    ASSERT_EQ(KXloadLPData(m, 2, 4, 1, 0, c, b, "LG", 4, beg, nullptr, a, rows, l, u), 0);
  }
  void TearDown() override {
    KXdeleteModel(&m);
    KXdeleteEnv(&env);
  }
};

TEST_F(Ext, VarTypes) {
  EXPECT_EQ(KXloadVarType(nullptr, "CCCC"), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXloadVarType(m, "CCXC"), KXERR_BAD_VARIABLE_TYPE);
  EXPECT_EQ(m->vartype, nullptr);
  ASSERT_EQ(KXloadVarType(m, "BBIC"), 0);
  // Binary bounds: [max(0,l), min(1,u)] when they overlap [0,1]; else left alone.
  EXPECT_EQ(m->lower[0], 0);
  EXPECT_EQ(m->upper[0], 1);
  EXPECT_EQ(m->lower[1], 0);
  EXPECT_EQ(m->upper[1], 1);
  int nb, ni, nc;
  KXgetInfo(m, KX_IINFO_NUM_BIN, &nb);
  KXgetInfo(m, KX_IINFO_NUM_INT, &ni);
  KXgetInfo(m, KX_IINFO_NUM_CONT, &nc);
  EXPECT_EQ(nb, 2);
  EXPECT_EQ(ni, 1);
  // By row: row 0 holds columns 0 (B) and 2 (I), row 1 columns 1 (B) and 3 (C).
  int rb = -1, ri = -1, rc = -1;
  ASSERT_EQ(KXgetVarTypeCountByCons(m, 0, &rb, &ri, &rc), 0);
  EXPECT_EQ(rb, 1);
  EXPECT_EQ(ri, 1);
  EXPECT_EQ(rc, 0);
  ASSERT_EQ(KXgetVarTypeCountByCons(m, 1, &rb, &ri, &rc), 0);
  EXPECT_EQ(rb, 1);
  EXPECT_EQ(ri, 0);
  EXPECT_EQ(rc, 1);
  EXPECT_EQ(KXgetVarTypeCountByCons(m, 2, &rb, &ri, &rc), KXERR_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(nc, 1);
  ASSERT_EQ(KXloadVarType(m, nullptr), 0);
  KXgetInfo(m, KX_IINFO_NUM_BIN, &nb);
  EXPECT_EQ(nb, 0);
  char t[4];
  KXgetVarType(m, t);
  EXPECT_EQ(std::string(t, 4), "CCCC");
}

TEST_F(Ext, Sets) {
  int beg[3] = {0, 2, 4}, cols[4] = {0, 1, 2, 3}, card[2] = {0, 1};
  EXPECT_EQ(KXloadSETSData(nullptr, 0, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(KXloadSETSData(nullptr, 2, "\1\2", nullptr, beg, cols), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(KXloadSETSData(m, 2, "\1\5", nullptr, beg, cols), KXERR_BAD_CONSTRAINT_TYPE);
  EXPECT_EQ(KXloadSETSData(m, 2, "\1\4", nullptr, beg, cols), KXERR_ILLEGAL_NULL_POINTER);
  int badCard[2] = {0, -1};
  EXPECT_EQ(KXloadSETSData(m, 2, "\1\4", badCard, beg, cols), KXERR_BAD_INPUT_VALUE);
  int short2[3] = {0, 3, 4};
  EXPECT_EQ(KXloadSETSData(m, 2, "\1\2", nullptr, short2, cols), KXERR_BAD_COLUMN_LENGTHS);
  int twice[4] = {0, 0, 2, 3};
  EXPECT_EQ(KXloadSETSData(m, 2, "\1\2", nullptr, beg, twice), KXERR_COLUMN_INDEX_OUT_OF_RANGE);
  int out[4] = {0, 1, 2, 4};
  EXPECT_EQ(KXloadSETSData(m, 2, "\1\2", nullptr, beg, out), KXERR_COLUMN_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(m->nSets, 0);
  // The same column in two sets is allowed.
  int shared[4] = {0, 1, 1, 2};
  ASSERT_EQ(KXloadSETSData(m, 2, "\1\4", card, beg, shared), 0);
  EXPECT_EQ(KXloadSETSData(m, 2, "\1\4", card, beg, shared), KXERR_ALREADY_LOADED);
  char type;
  int c, n, members[2];
  ASSERT_EQ(KXgetSETSDatai(m, 1, &type, &c, &n, members), 0);
  EXPECT_EQ(type, 4);
  EXPECT_EQ(c, 1);
  EXPECT_EQ(members[0], 1);
  EXPECT_EQ(members[1], 2);
}

TEST_F(Ext, SemiContinuous) {
  int vars[2] = {3, 1};
  double l[2] = {2, 1}, u[2] = {8, 4};
  EXPECT_EQ(KXloadSemiContData(m, 2, vars, l, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  int bad[2] = {3, 4};
  EXPECT_EQ(KXloadSemiContData(m, 2, bad, l, u), KXERR_COLUMN_INDEX_OUT_OF_RANGE);
  int dup[2] = {3, 3};
  EXPECT_EQ(KXloadSemiContData(m, 2, dup, l, u), KXERR_INDEX_DUPLICATE);
  EXPECT_EQ(m->upper[3], 9);  // unchanged by the failures
  ASSERT_EQ(KXloadSemiContData(m, 2, vars, l, u), 0);
  EXPECT_EQ(m->lower[3], 0);  // the lower bound lives in scLower
  EXPECT_EQ(m->upper[3], 8);
  EXPECT_EQ(KXloadSemiContData(m, 2, vars, l, u), KXERR_ALREADY_LOADED);
  int n, v[2];
  double gl[2], gu[2];
  ASSERT_EQ(KXgetSemiContData(m, &n, v, gl, gu), 0);
  EXPECT_EQ(n, 2);
  EXPECT_EQ(gl[0], 2);
  EXPECT_EQ(gu[1], 4);
}

TEST_F(Ext, Cones) {
  int beg[3] = {0, 2, 4}, cols[4] = {0, 1, 2, 3};
  EXPECT_EQ(KXloadConeData(m, 2, "QX", beg, cols), KXERR_BAD_CONSTRAINT_TYPE);
  int one[3] = {0, 1, 4};
  EXPECT_EQ(KXloadConeData(m, 2, "RQ", one, cols), KXERR_BAD_COLUMN_LENGTHS);
  int twice[4] = {0, 1, 1, 2};
  EXPECT_EQ(KXloadConeData(m, 2, "QR", beg, twice), KXERR_COLUMN_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(m->nCones, 0);
  ASSERT_EQ(KXloadConeData(m, 2, "QR", beg, cols), 0);
  EXPECT_EQ(KXloadConeData(m, 2, "QR", beg, cols), KXERR_ALREADY_LOADED);
  int r = 0, c = 0;
  double v = 1;
  EXPECT_EQ(KXloadQCData(m, 1, &r, &c, &c, &v), KXERR_ALREADY_LOADED);
  int n = 0;
  KXgetInfo(m, KX_IINFO_NUM_CONE_NONZ, &n);
  EXPECT_EQ(n, 4);
}

TEST_F(Ext, QuadraticTermsAreSortedMergedAndReplaced) {
  int rows[5] = {0, -1, -1, 0, -1}, c1[5] = {1, 0, 2, 1, 0}, c2[5] = {1, 2, 0, 1, 0};
  double v[5] = {1, 2, 3, 4, 0};
  int badRow[1] = {2}, zero[1] = {0}, badCol[1] = {4};
  double one = 1;
  EXPECT_EQ(KXloadQCData(m, 1, badRow, zero, zero, &one), KXERR_ROW_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(KXloadQCData(m, 1, zero, badCol, zero, &one), KXERR_COLUMN_INDEX_OUT_OF_RANGE);
  EXPECT_EQ(m->nQCNonz, 0);
  ASSERT_EQ(KXloadQCData(m, 5, rows, c1, c2, v), 0);
  // Objective: (2,0) twice summed to 5, the zero dropped; row 0: (1,1) summed to 5.
  int n, r[4], a[4], b[4];
  double q[4];
  ASSERT_EQ(KXgetQCData(m, &n, r, a, b, q), 0);
  ASSERT_EQ(n, 2);
  EXPECT_EQ(r[0], -1);
  EXPECT_EQ(a[0], 2);
  EXPECT_EQ(b[0], 0);
  EXPECT_EQ(q[0], 5);
  EXPECT_EQ(q[1], 5);
  EXPECT_EQ(m->nQCRows, 2);
  // A second load replaces the first.
  ASSERT_EQ(KXloadQCData(m, 1, zero, zero, zero, &one), 0);
  KXgetInfo(m, KX_IINFO_NUM_QC_NONZ, &n);
  EXPECT_EQ(n, 1);
}

TEST_F(Ext, NamesAndLookups) {
  char r0[] = "first", r1[] = "second", x0[] = "a", x1[] = "b", x2[] = "c";
  char *rn[2] = {r0, r1}, *xn[4] = {x0, x1, x2, nullptr};
  ASSERT_EQ(KXloadNameData(m, "T", "obj", nullptr, nullptr, nullptr, rn, xn, nullptr), 0);
  int i = -1;
  ASSERT_EQ(KXgetConstraintIndex(m, "second", &i), 0);
  EXPECT_EQ(i, 1);
  ASSERT_EQ(KXgetVariableIndex(m, "C0000003", &i), 0);  // a null entry takes the pattern
  EXPECT_EQ(i, 3);
  EXPECT_EQ(KXgetVariableIndex(m, "z", &i), KXERR_COL_TOKEN_NOT_FOUND);
  int len = 0;
  KXgetInfo(m, KX_IINFO_LEN_CONNAMES, &len);
  EXPECT_EQ(len, 13);
  // New names drop the old table.
  char y0[] = "p", y1[] = "q", y2[] = "r", y3[] = "s";
  char *yn[4] = {y0, y1, y2, y3};
  ASSERT_EQ(KXloadNameData(m, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, yn, nullptr), 0);
  EXPECT_EQ(KXgetVariableIndex(m, "a", &i), KXERR_COL_TOKEN_NOT_FOUND);
  ASSERT_EQ(KXgetVariableIndex(m, "s", &i), 0);
  EXPECT_EQ(i, 3);
  ASSERT_EQ(KXfreeNameData(m), 0);
  char name[32];
  ASSERT_EQ(KXgetVariableNamej(m, 2, name), 0);
  EXPECT_STREQ(name, "C0000002");
  EXPECT_EQ(KXgetVariableNamej(m, 4, name), KXERR_INDEX_OUT_OF_RANGE);
}

TEST_F(Ext, PrioritiesStartPointRangesAndBasis) {
  int pr[4] = {1, -2, 3, 4};
  EXPECT_EQ(KXloadVarPriorities(m, pr), KXERR_INDEX_OUT_OF_RANGE);
  int got[4];
  ASSERT_EQ(KXgetVarPriorities(m, got), 0);
  EXPECT_EQ(got[2], 3);
  double x[4] = {1, 2, 3, 4}, gx[4];
  EXPECT_EQ(KXgetVarStartPoint(m, gx), KXERR_INFO_NOT_AVAILABLE);
  ASSERT_EQ(KXloadVarStartPoint(m, x), 0);
  ASSERT_EQ(KXgetVarStartPoint(m, gx), 0);
  EXPECT_EQ(gx[3], 4);
  double r[2] = {3, 1e31}, gr[2];
  ASSERT_EQ(KXloadConstraintRanges(m, r), 0);
  int nR = 0;
  KXgetInfo(m, KX_IINFO_NUM_CONS_R, &nR);
  EXPECT_EQ(nR, 1);
  ASSERT_EQ(KXgetConstraintRangeValues(m, gr), 0);
  EXPECT_EQ(gr[1], KX_INFINITY);
  int cs[4] = {0, -1, -2, -5}, rs[2] = {0, -1};
  EXPECT_EQ(KXloadBasis(m, cs, rs), KXERR_BASIS_COL_STATUS);
  cs[3] = -4;
  int badRow[2] = {-5, -1};
  EXPECT_EQ(KXloadBasis(m, cs, badRow), KXERR_BASIS_ROW_STATUS);
  // Row 0 is an L row: "at upper" is taken only while it has a range.
  int atUpper[2] = {-2, -1};
  EXPECT_EQ(KXloadBasis(m, cs, atUpper), KXERR_BASIS_INVALID);  // legal statuses, too few basics
  double noRange[2] = {1e31, 1e31};
  ASSERT_EQ(KXloadConstraintRanges(m, noRange), 0);
  EXPECT_EQ(KXloadBasis(m, cs, atUpper), KXERR_BASIS_ROW_STATUS);
  ASSERT_EQ(KXloadConstraintRanges(m, r), 0);
  int tooMany[2] = {0, 1};
  int cs2[4] = {-1, -1, -1, -1};
  int none[2] = {-1, -1};
  EXPECT_EQ(KXloadBasis(m, cs2, none), KXERR_BASIS_INVALID);
  ASSERT_EQ(KXloadBasis(m, cs2, tooMany), 0);
  // The statuses wait in the solution record for the next solve.
  ASSERT_NE(m->sol, nullptr);
  EXPECT_EQ(m->sol->rowstat[1], 1);
  EXPECT_EQ(m->sol->colstat[0], -1);
}

TEST_F(Ext, GettersOnAnUnloadedModel) {
  int rc;
  pModel e = KXcreateModel(env, &rc);
  double v;
  EXPECT_EQ(KXgetObjectivej(e, 0, &v), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetLPData(e, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                        nullptr, nullptr, nullptr),
            KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetObjectivej(m, 0, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  KXdeleteModel(&e);
  int nv, nc, nz;
  ASSERT_EQ(KXgetDimensions(m, &nv, &nc, nullptr, &nz, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr),
            0);
  EXPECT_EQ(nv, 4);
  EXPECT_EQ(nc, 2);
  EXPECT_EQ(nz, 4);
}

}  // namespace
