// The registry walked row by row against the expected table, then each of the
// deliberate irregularities of the parameter calls.
#include <climits>
#include <cstring>

#include "base/outside.h"
#include "params/param_fixture.h"

namespace {

TEST(ParamRegistry, ConstantsAndFileOrder) {
  const auto &rows = expected_rows();
  int nameLen = 0;
  int n = NUMPARLIST(&nameLen);
  ASSERT_EQ(n, static_cast<int>(rows.size()));
  ASSERT_EQ(n, 268);
  int sum = 0;
  for (int i = 0; i < n; ++i) {
    const ExpectedRow &r = rows[i];
    SCOPED_TRACE(r.name);
    EXPECT_EQ(r.constant, r.id);  // korva.h agrees with the table
    EXPECT_EQ(parlist[i].id, r.id);
    ASSERT_NE(parlist[i].name, nullptr);
    EXPECT_STREQ(parlist[i].name, r.name);
    EXPECT_EQ(parlist[i].width, r.kind == 'I' ? 4 : 8);
    sum += std::max<int>(12, static_cast<int>(std::strlen(r.name)));
  }
  EXPECT_EQ(nameLen, sum);
  EXPECT_EQ(parlist[n].id, 0);
  EXPECT_EQ(parlist[n].name, nullptr);
}

// Every registry row: defaults at both levels, published range, a value inside
// set and read back (at the model without touching the environment or another
// model, at the environment reaching only models created after), a value
// outside refused.
TEST_F(ParamFixture, EveryRegistryRow) {
  for (const ExpectedRow &r : expected_rows()) {
    SCOPED_TRACE(r.name);
    int rc = -1;
    pEnv e = KXcreateEnv(&rc);
    ASSERT_EQ(rc, 0);
    pModel m = KXcreateModel(e, &rc);
    pModel other = KXcreateModel(e, &rc);
    ASSERT_EQ(rc, 0);
    double v = -12345;

    // Default at the model (stochastic rows included: the typed model calls reach them).
    EXPECT_EQ(get_value(e, m, r, &v), 0);
    EXPECT_EQ(v, r.def);

    // Default at the environment.
    const bool envRow = r.level == 'B' || r.level == 'M';
    if (envRow && r.id != KX_DPARAM_MIP_CUTOFFOBJ) {
      EXPECT_EQ(get_value(e, nullptr, r, &v), 0);
      EXPECT_EQ(v, r.def);
    } else if (r.level == 'O' || r.id == KX_DPARAM_MIP_CUTOFFOBJ) {
      EXPECT_EQ(get_value(e, nullptr, r, &v), KXERR_INFO_NOT_AVAILABLE);
    } else {
      EXPECT_EQ(get_value(e, nullptr, r, &v), KXERR_PARAMETER_OUT_OF_RANGE);
    }

    // Published range, and nothing for the other kind.
    int ilo = 7, ihi = 7;
    double dlo = 7, dhi = 7;
    EXPECT_EQ(KXgetIntParameterRange(m, r.id, &ilo, &ihi), 0);
    EXPECT_EQ(KXgetDouParameterRange(m, r.id, &dlo, &dhi), 0);
    if (r.kind == 'I') {
      EXPECT_EQ(ilo, static_cast<int>(r.pubLo));
      EXPECT_EQ(ihi, static_cast<int>(r.pubHi));
      EXPECT_EQ(dlo, 0.0);
      EXPECT_EQ(dhi, 0.0);
    } else {
      EXPECT_EQ(dlo, r.pubLo);
      EXPECT_EQ(dhi, r.pubHi);
      EXPECT_EQ(ilo, 0);
      EXPECT_EQ(ihi, 0);
    }

    // A value inside, at the model.
    if (r.hasInside) {
      EXPECT_EQ(set_value(e, m, r, r.inside), 0);
      EXPECT_EQ(get_value(e, m, r, &v), 0);
      EXPECT_EQ(v, r.inside);
      EXPECT_EQ(get_value(e, other, r, &v), 0);
      EXPECT_EQ(v, r.def) << "a model's blocks are its own";
      if (envRow && r.id != KX_DPARAM_MIP_CUTOFFOBJ) {
        EXPECT_EQ(get_value(e, nullptr, r, &v), 0);
        EXPECT_EQ(v, r.def) << "a model set reached the environment";
      }
    }

    // The same at the environment, where the row is settable there.
    if (r.level == 'B' && r.hasInside && r.id != KX_IPARAM_SOLVER_PRE_ELIM_FILL) {
      EXPECT_EQ(set_value(e, nullptr, r, r.inside), 0);
      EXPECT_EQ(get_value(e, nullptr, r, &v), 0);
      EXPECT_EQ(v, r.inside);
      EXPECT_EQ(get_value(e, other, r, &v), 0);
      EXPECT_EQ(v, r.def) << "an environment set reached an existing model";
      pModel later = KXcreateModel(e, &rc);
      ASSERT_EQ(rc, 0);
      EXPECT_EQ(get_value(e, later, r, &v), 0);
      EXPECT_EQ(v, r.inside) << "a new model did not copy the environment";
    } else if (r.level == 'M' || r.level == 'O') {
      EXPECT_EQ(set_value(e, nullptr, r, r.hasInside ? r.inside : r.def),
                KXERR_UNABLE_TO_SET_PARAM);
    } else if (r.level == 'S') {
      EXPECT_EQ(set_value(e, nullptr, r, r.def), KXERR_PARAMETER_OUT_OF_RANGE);
    }

    // A value outside the set test: refused, the old value stays.
    if (r.outsideCode != 0) {
      EXPECT_EQ(set_value(e, other, r, r.outside), r.outsideCode);
      EXPECT_EQ(get_value(e, other, r, &v), 0);
      EXPECT_EQ(v, r.def);
      if (r.level == 'B') {
        EXPECT_EQ(set_value(e, nullptr, r, r.outside), r.outsideCode);
      }
    }
    KXdeleteEnv(&e);
  }
}

// One step of a quirk: at the environment ('E') or the model ('M'), a typed
// set ('s') or get ('g'), or an untyped set ('S') or get ('G').  A get with
// code 0 also checks the value.
struct Step {
  char level;
  char op;
  int id;
  char kind;  // 'I' or 'D'
  double value;
  int code;
};
struct Quirk {
  const char *what;
  std::vector<Step> steps;
};

constexpr int kOutOfRange = KXERR_PARAMETER_OUT_OF_RANGE;
constexpr int kNoSet = KXERR_UNABLE_TO_SET_PARAM;
constexpr int kNoGet = KXERR_INFO_NOT_AVAILABLE;

const std::vector<Quirk> &quirks() {
  static const std::vector<Quirk> q = {
      {"54 and 57 store any value of 0 or more, beyond the published 1e-4",
       {{'E', 's', KX_DPARAM_SOLVER_FEASTOL, 'D', 0.5, 0}, {'E', 'g', KX_DPARAM_SOLVER_FEASTOL, 'D', 0.5, 0},
        {'M', 's', KX_DPARAM_SOLVER_OPTTOL, 'D', 3.0, 0}, {'M', 'g', KX_DPARAM_SOLVER_OPTTOL, 'D', 3.0, 0},
        {'M', 's', KX_DPARAM_SOLVER_OPTTOL, 'D', -1e-9, kOutOfRange}}},
      {"37 is tested against -1..4 while 5 is published",
       {{'E', 's', KX_IPARAM_SPLEX_DPRICING, 'I', 5, kOutOfRange}, {'E', 's', KX_IPARAM_SPLEX_DPRICING, 'I', 4, 0},
        {'E', 'g', KX_IPARAM_SPLEX_DPRICING, 'I', 4, 0}}},
      {"327 accepts 4 while 0..3 is published",
       {{'M', 's', KX_IPARAM_MIP_TOPOPT, 'I', 4, 0}, {'M', 'g', KX_IPARAM_MIP_TOPOPT, 'I', 4, 0},
        {'M', 's', KX_IPARAM_MIP_TOPOPT, 'I', 5, kOutOfRange}}},
      {"428 publishes 0..1 and accepts -1",
       {{'E', 's', KX_IPARAM_GOP_QUADMD, 'I', -1, 0}, {'E', 'g', KX_IPARAM_GOP_QUADMD, 'I', -1, 0}}},
      {"407 defaults to 2 but only 0 or 1 can be set",
       {{'E', 'g', KX_IPARAM_GOP_OPTCHKMD, 'I', 2, 0}, {'E', 's', KX_IPARAM_GOP_OPTCHKMD, 'I', 2, kOutOfRange}}},
      {"44 publishes 0..0 and accepts any value of 0 or more",
       {{'E', 's', KX_IPARAM_SPLEX_USE_EXTERNAL, 'I', 3, 0}, {'E', 'g', KX_IPARAM_SPLEX_USE_EXTERNAL, 'I', 3, 0}}},
      {"55 publishes 0..max and is a flag",
       {{'E', 's', KX_IPARAM_SOLVER_RESTART, 'I', 2, kOutOfRange}}},
      {"322 at the environment reads only while 323 is on; storing it turns 323 on",
       {{'E', 'g', KX_DPARAM_MIP_CUTOFFOBJ, 'D', 0, kNoGet}, {'E', 's', KX_DPARAM_MIP_CUTOFFOBJ, 'D', 5.5, 0},
        {'E', 'g', KX_IPARAM_MIP_USECUTOFFOBJ, 'I', 1, 0}, {'E', 'g', KX_DPARAM_MIP_CUTOFFOBJ, 'D', 5.5, 0},
        {'E', 's', KX_IPARAM_MIP_USECUTOFFOBJ, 'I', 0, 0}, {'E', 'g', KX_DPARAM_MIP_CUTOFFOBJ, 'D', 0, kNoGet},
        {'E', 's', KX_IPARAM_MIP_USECUTOFFOBJ, 'I', 1, 0}, {'E', 'g', KX_IPARAM_MIP_USECUTOFFOBJ, 'I', 0, 0}}},
      {"322 at the model reads whatever 323 says",
       {{'M', 'g', KX_DPARAM_MIP_CUTOFFOBJ, 'D', 0, 0}, {'M', 's', KX_DPARAM_MIP_CUTOFFOBJ, 'D', -3, 0},
        {'M', 'g', KX_IPARAM_MIP_USECUTOFFOBJ, 'I', 1, 0}, {'M', 's', KX_IPARAM_MIP_USECUTOFFOBJ, 'I', 0, 0},
        {'M', 'g', KX_DPARAM_MIP_CUTOFFOBJ, 'D', -3, 0}}},
      {"53 turns 58 on; 58 set to 0 clears it, to anything else does nothing",
       {{'M', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 0, 0}, {'M', 's', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 1, 0},
        {'M', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 0, 0}, {'M', 's', KX_DPARAM_SOLVER_CUTOFFVAL, 'D', 42, 0},
        {'M', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 1, 0}, {'M', 'g', KX_DPARAM_SOLVER_CUTOFFVAL, 'D', 42, 0},
        {'M', 's', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 7, 0}, {'M', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 1, 0},
        {'M', 's', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 0, 0}, {'M', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 0, 0}}},
      {"59 at the environment lands in the field of 58, clamped at 0",
       {{'E', 's', KX_IPARAM_SOLVER_PRE_ELIM_FILL, 'I', 7, 0}, {'E', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 7, 0},
        {'E', 'g', KX_IPARAM_SOLVER_PRE_ELIM_FILL, 'I', 1000, 0}, {'E', 's', KX_IPARAM_SOLVER_PRE_ELIM_FILL, 'I', -5, 0},
        {'E', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 0, 0}}},
      {"59 at the model stores in its own field with the same clamp",
       {{'M', 's', KX_IPARAM_SOLVER_PRE_ELIM_FILL, 'I', -5, 0}, {'M', 'g', KX_IPARAM_SOLVER_PRE_ELIM_FILL, 'I', 0, 0},
        {'M', 'g', KX_IPARAM_SOLVER_USECUTOFFVAL, 'I', 0, 0}}},
      {"objective sense: only 1 and -1, else 2007",
       {{'M', 's', KX_IPARAM_OBJSENSE, 'I', 0, KXERR_BAD_OBJECTIVE_SENSE}, {'M', 's', KX_IPARAM_OBJSENSE, 'I', -1, 0},
        {'M', 'g', KX_IPARAM_OBJSENSE, 'I', -1, 0}, {'E', 's', KX_IPARAM_OBJSENSE, 'I', -1, kNoSet},
        {'E', 'G', KX_IPARAM_OBJSENSE, 'I', 0, kNoGet}}},
      {"model-only ids have no set at the environment",
       {{'E', 'S', KX_DPARAM_OBJPRINTMUL, 'D', 2, kNoSet}, {'E', 'S', KX_IPARAM_DECOMPOSITION_TYPE, 'I', 2, kNoSet},
        {'E', 'S', KX_IPARAM_SOL_REPORT_STYLE, 'I', 1, kNoSet}, {'E', 'S', KX_IPARAM_INSTRUCT_LOADTYPE, 'I', 1, kNoSet},
        {'E', 'S', KX_IPARAM_STRING_LENLMT, 'I', 30, kNoSet}, {'E', 'S', KX_IPARAM_USE_NAMEDATA, 'I', 0, kNoSet},
        {'E', 'S', KX_DPARAM_SOLVER_CUTOFFVAL, 'D', 1, kNoSet}, {'E', 'S', KX_IPARAM_NLP_CONVEX, 'I', 0, kNoSet},
        {'E', 'S', KX_DPARAM_MIP_OBJ_THRESHOLD, 'D', 1, kNoSet}, {'E', 'S', KX_IPARAM_IIS_ANALYZE_LEVEL, 'I', 2, kNoSet},
        {'E', 'S', KX_IPARAM_IUS_ANALYZE_LEVEL, 'I', 2, kNoSet}, {'E', 'S', KX_DPARAM_LP_MIN_FEASTOL, 'D', 1e-9, kNoSet},
        {'E', 'S', KX_IPARAM_LP_OPRFREE, 'I', 0, kNoSet}, {'E', 'S', 4064, 'D', 1, kNoSet},
        {'E', 'S', 4073, 'I', 1, kNoSet}}},
      {"block members of model-only ids still read at the environment, 380 does not",
       {{'E', 'g', KX_IPARAM_NLP_CONVEX, 'I', 1, 0}, {'E', 'g', KX_DPARAM_LP_BNDINF, 'D', 1e15, 0},
        {'E', 'g', KX_DPARAM_MIP_OBJ_THRESHOLD, 'D', 0, kNoGet}, {'M', 'g', KX_DPARAM_MIP_OBJ_THRESHOLD, 'D', -1e30, 0}}},
      {"model-only tests",
       {{'M', 's', KX_IPARAM_DECOMPOSITION_TYPE, 'I', 7, kOutOfRange}, {'M', 's', KX_IPARAM_STRING_LENLMT, 'I', 257, kOutOfRange},
        {'M', 's', KX_IPARAM_STRING_LENLMT, 'I', 256, 0}, {'M', 's', KX_IPARAM_IIS_ANALYZE_LEVEL, 'I', 16, kOutOfRange},
        {'M', 's', KX_IPARAM_LP_RATRANGE, 'I', 0, kOutOfRange}, {'M', 's', KX_DPARAM_LP_BNDINF, 'D', 1e9, kOutOfRange},
        {'M', 's', KX_IPARAM_LP_OPRFREE, 'I', 2, kOutOfRange}, {'M', 's', KX_IPARAM_NLP_CONVEX, 'I', -1, kOutOfRange}}},
      {"4073 and 4075 are refused with 2029, 4064 and 4065 store anything",
       {{'M', 's', 4073, 'I', 1, KXERR_NOT_SUPPORTED}, {'M', 's', 4075, 'I', 0, KXERR_NOT_SUPPORTED},
        {'M', 'g', 4073, 'I', 0, 0}, {'M', 's', 4064, 'D', -3.5, 0}, {'M', 'g', 4064, 'D', -3.5, 0},
        {'M', 's', 4065, 'D', 2.5, 0}, {'M', 'g', 4065, 'D', 2.5, 0}}},
      {"read-only version ids",
       {{'E', 'g', KX_IPARAM_VER_MAJOR, 'I', 6, 0}, {'E', 'g', KX_IPARAM_VER_MINOR, 'I', 1, 0},
        {'M', 'g', KX_IPARAM_VER_BUILD, 'I', 1, 0}, {'M', 'g', KX_IPARAM_VER_REVISION, 'I', 627, 0},
        {'M', 'g', 999, 'I', 600, 0}, {'E', 's', KX_IPARAM_VER_MAJOR, 'I', 7, kNoSet},
        {'M', 's', 999, 'I', 1, kNoSet}, {'M', 'g', 999, 'I', 600, 0}}},
      {"double twins share the field of the integer",
       {{'E', 's', 45, 'D', -1.5, 0}, {'E', 'g', KX_IPARAM_LP_ITRLMT, 'I', -1, 0},
        {'E', 's', 45, 'D', -2.0, kOutOfRange}, {'E', 's', 45, 'D', 1e12, 0},
        {'E', 'g', KX_IPARAM_LP_ITRLMT, 'I', INT_MAX, 0}, {'M', 's', 228, 'D', 123.9, 0},
        {'M', 'g', KX_IPARAM_NLP_ITRLMT, 'I', 123, 0}, {'M', 's', 228, 'D', -1.5, kOutOfRange},
        {'M', 's', 558, 'D', -1.0, 0}, {'M', 's', 558, 'D', 77.7, 0}, {'M', 'g', KX_IPARAM_IIS_ITER_LIMIT, 'I', 77, 0},
        {'M', 's', KX_IPARAM_IIS_ITER_LIMIT, 'I', 5, 0}, {'M', 'g', 558, 'D', 5.0, 0}}},
      {"integers in doubles: 30, 213, 418 capped, 342 not",
       {{'M', 's', KX_DPARAM_GOP_BRANCH_LIMIT, 'D', 1e20, 0}, {'M', 'g', KX_IPARAM_GOP_BRANCH_LIMIT, 'I', INT_MAX, 0},
        {'M', 's', KX_DPARAM_MIP_ITRLIM, 'D', 1e12, 0}, {'M', 'g', KX_IPARAM_MIP_ITRLIM, 'I', INT_MIN, 0},
        {'M', 's', KX_DPARAM_MIP_ITRLIM, 'D', 99.9, 0}, {'M', 'g', KX_IPARAM_MIP_ITRLIM, 'I', 99, 0}}},
      {"integer time limits: any negative stores -1",
       {{'E', 's', KX_IPARAM_MIP_TIMLIM, 'I', -7, 0}, {'E', 'g', KX_IPARAM_MIP_TIMLIM, 'I', -1, 0},
        {'E', 'g', KX_DPARAM_MIP_TIMLIM, 'D', -1, 0}, {'E', 's', KX_IPARAM_SOLVER_TIMLMT, 'I', 30, 0},
        {'E', 'g', KX_DPARAM_SOLVER_TIMLMT, 'D', 30, 0}, {'E', 's', KX_DPARAM_SOLVER_TIMLMT, 'D', -0.25, 0},
        {'E', 'g', KX_DPARAM_SOLVER_TIMLMT, 'D', -1, 0}, {'E', 'g', KX_IPARAM_SOLVER_TIMLMT, 'I', -1, 0},
        {'M', 's', KX_DPARAM_MIP_CUTTIMLIM, 'D', 2.75, 0}, {'M', 'g', KX_IPARAM_MIP_CUTTIMLIM, 'I', 2, 0}}},
      {"doubles where negative means none; 378, 383, 345, 382 refuse below -1",
       {{'E', 's', KX_DPARAM_GOP_TIMLIM, 'D', -50, 0}, {'E', 'g', KX_DPARAM_GOP_TIMLIM, 'D', -1, 0},
        {'E', 's', KX_DPARAM_MIP_FP_TIMLIM, 'D', -0.5, 0}, {'E', 'g', KX_DPARAM_MIP_FP_TIMLIM, 'D', -1, 0},
        {'E', 's', KX_DPARAM_MIP_FP_TIMLIM, 'D', -1.5, kOutOfRange}, {'E', 'g', KX_DPARAM_MIP_FP_TIMLIM, 'D', -1, 0}}},
      {"open bounds are exclusive",
       {{'E', 's', KX_DPARAM_MIP_LBIGM, 'D', 1e30, kOutOfRange}, {'E', 's', KX_DPARAM_MIP_LBIGM, 'D', 0, kOutOfRange},
        {'E', 's', KX_DPARAM_IPM_TOL_PATH, 'D', 0.5, kOutOfRange}, {'E', 's', KX_DPARAM_IPM_TOL_PATH, 'D', 0.4999, 0},
        {'E', 's', KX_DPARAM_IPM_TOL_PSAFE, 'D', 0.01, kOutOfRange}, {'E', 's', KX_DPARAM_IPM_TOL_DSAFE, 'D', 0.0001, 0}}},
      {"LU group: -1 or at least 1; a fraction or a negative",
       {{'E', 's', KX_IPARAM_LU_NUM_CANDITS, 'I', -1, 0}, {'E', 's', KX_IPARAM_LU_NUM_CANDITS, 'I', 0, kOutOfRange},
        {'E', 's', KX_IPARAM_LU_NUM_CANDITS, 'I', -2, kOutOfRange}, {'E', 's', KX_DPARAM_LU_EPS_PIVREL, 'D', -3, 0},
        {'E', 's', KX_DPARAM_LU_EPS_PIVREL, 'D', 0, kOutOfRange}, {'E', 's', KX_DPARAM_LU_EPS_PIVREL, 'D', 1, kOutOfRange},
        {'E', 'g', KX_DPARAM_LU_EPS_PIVREL, 'D', -3, 0}}},
      {"extra integers 169, 229, 590 with their tests",
       {{'E', 'g', 169, 'I', 1, 0}, {'E', 's', 169, 'I', -1, kOutOfRange}, {'E', 'g', 229, 'I', -1, 0},
        {'E', 's', 229, 'I', -2, kOutOfRange}, {'E', 's', 590, 'I', 2, kOutOfRange}, {'E', 's', 590, 'I', 1, 0},
        {'E', 'g', 590, 'I', 1, 0}}},
      {"common ids 701 to 707 live at the environment alone",
       {{'E', 'g', 701, 'I', 5, 0}, {'E', 'g', 702, 'D', -1e30, 0}, {'E', 'g', 703, 'I', -1, 0},
        {'E', 'g', 704, 'D', 1e-6, 0}, {'E', 'g', 705, 'I', 0, 0}, {'E', 'g', 706, 'I', 100, 0},
        {'E', 'g', 707, 'D', 1e-7, 0}, {'E', 's', 706, 'I', 3, 0}, {'E', 'g', 706, 'I', 3, 0},
        {'M', 'g', 701, 'I', 0, kNoGet}, {'M', 's', 702, 'D', 1, kNoSet}}},
      {"kind and id mismatches",
       {{'E', 'g', KX_DPARAM_CALLBACKFREQ, 'I', 0, kOutOfRange}, {'E', 's', KX_IPARAM_LP_SCALE, 'D', 1, kOutOfRange},
        {'M', 'g', 28, 'I', 0, kOutOfRange}, {'M', 'G', 28, 'I', 0, kNoGet}, {'M', 'S', 28, 'I', 0, kNoSet},
        {'E', 'G', -5, 'I', 0, kNoGet}, {'E', 'S', 100000, 'I', 0, kNoSet}, {'M', 'g', 45, 'I', 0, kOutOfRange},
        {'M', 'g', 4064, 'D', 0, 0}}},
      {"stochastic ids: model only, through the typed calls but not the untyped model calls",
       {{'E', 'g', KX_IPARAM_STOC_NSAMPLE_SPAR, 'I', 0, kOutOfRange}, {'M', 'g', KX_IPARAM_STOC_NSAMPLE_SPAR, 'I', -1, 0},
        {'M', 'G', KX_IPARAM_STOC_NSAMPLE_SPAR, 'I', 0, kNoGet}, {'M', 's', KX_IPARAM_STOC_RG_SEED, 'I', 77, 0},
        {'M', 'g', KX_IPARAM_STOC_RG_SEED, 'I', 77, 0}, {'M', 'g', 610, 'I', 0, 0}, {'M', 'G', 610, 'I', 0, kNoGet},
        {'M', 'g', KX_DPARAM_STOC_BIGM, 'D', 1e7, 0}}},
  };
  return q;
}

int run_step(pEnv env, pModel model, const Step &s, double *got) {
  pModel m = s.level == 'M' ? model : nullptr;
  int iv = static_cast<int>(s.value);
  double dv = s.value;
  switch (s.op) {
    case 's':
      return s.kind == 'I' ? (m ? KXsetModelIntParameter(m, s.id, iv) : KXsetEnvIntParameter(env, s.id, iv))
                           : (m ? KXsetModelDouParameter(m, s.id, dv) : KXsetEnvDouParameter(env, s.id, dv));
    case 'S': {
      const void *p = s.kind == 'I' ? static_cast<const void *>(&iv) : static_cast<const void *>(&dv);
      return m ? KXsetModelParameter(m, s.id, p) : KXsetEnvParameter(env, s.id, p);
    }
    case 'g': {
      int rc;
      if (s.kind == 'I') {
        iv = 0;
        rc = m ? KXgetModelIntParameter(m, s.id, &iv) : KXgetEnvIntParameter(env, s.id, &iv);
        *got = iv;
      } else {
        rc = m ? KXgetModelDouParameter(m, s.id, got) : KXgetEnvDouParameter(env, s.id, got);
      }
      return rc;
    }
    case 'G': {
      int rc;
      if (s.kind == 'I') {
        iv = 0;
        rc = m ? KXgetModelParameter(m, s.id, &iv) : KXgetEnvParameter(env, s.id, &iv);
        *got = iv;
      } else {
        rc = m ? KXgetModelParameter(m, s.id, got) : KXgetEnvParameter(env, s.id, got);
      }
      return rc;
    }
  }
  return -1;
}

TEST(ParamQuirks, EachQuirk) {
  for (const Quirk &q : quirks()) {
    SCOPED_TRACE(q.what);
    int rc = -1;
    pEnv env = KXcreateEnv(&rc);
    ASSERT_EQ(rc, 0);
    pModel model = KXcreateModel(env, &rc);
    ASSERT_EQ(rc, 0);
    int n = 0;
    for (const Step &s : q.steps) {
      SCOPED_TRACE(testing::Message() << "step " << n++ << " id " << s.id << " op " << s.op);
      double got = -98765;
      EXPECT_EQ(run_step(env, model, s, &got), s.code);
      if ((s.op == 'g' || s.op == 'G') && s.code == 0) {
        EXPECT_EQ(got, s.value);
      }
    }
    KXdeleteEnv(&env);
  }
}

TEST_F(ParamFixture, SenseChangeFreesSolverMemoryOnlyOnChange) {
  // With no simplex state to free, a change of sense must still leave a
  // consistent model and the loaded LP must see the new sense.
  double c[] = {1, 2}, b[] = {4}, a[] = {1, 1}, l[] = {0, 0}, u[] = {10, 10};
  int beg[] = {0, 1, 2}, row[] = {0, 0};
  ASSERT_EQ(KXloadLPData(model, 1, 2, 1, 0.0, c, b, "L", 2, beg, nullptr, a, row, l, u), 0);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_OBJSENSE, -1), 0);
  EXPECT_EQ(model->objSense, -1);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_OBJSENSE, -1), 0);
  EXPECT_EQ(model->objSense, -1);
  int sense = 0;
  ASSERT_EQ(KXgetInfo(model, KX_IINFO_OBJSENSE, &sense), 0);
  EXPECT_EQ(sense, -1);
}

struct HookLog {
  std::vector<std::pair<int, double>> calls;
};
HookLog g_hooks;
int hook_int(void *, int id, int v) {
  g_hooks.calls.push_back({id, v});
  return 0;
}
int hook_dou(void *, int id, double v) {
  g_hooks.calls.push_back({id, v});
  return 0;
}

TEST_F(ParamFixture, OutsideSolverTaskHearsOfChanges) {
  OutsideSolver table{};
  table.setIntParam = hook_int;
  table.setDouParam = hook_dou;
  ASSERT_EQ(KXinstalExternalSolver(env, &table), 0);
  int task = 0;
  g_hooks.calls.clear();
  // Without a task nothing is forwarded.
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_SPLEX_REFACFRQ, 77), 0);
  EXPECT_TRUE(g_hooks.calls.empty());
  model->extTask = &task;
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_SPLEX_REFACFRQ, 78), 0);
  ASSERT_EQ(KXsetModelDouParameter(model, KX_DPARAM_SOLVER_FEASTOL, 1e-6), 0);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_MIP_TIMLIM, 5), 0);  // not an LP parameter
  EXPECT_EQ(KXsetModelIntParameter(model, KX_IPARAM_LP_SCALE, 9), KXERR_PARAMETER_OUT_OF_RANGE);
  model->extTask = nullptr;
  ASSERT_EQ(g_hooks.calls.size(), 3u);
  EXPECT_EQ(g_hooks.calls[0], std::make_pair(32, 78.0));
  EXPECT_EQ(g_hooks.calls[1], std::make_pair(54, 1e-6));
  EXPECT_EQ(g_hooks.calls[2].first, 29);  // forwarded before the test refuses it
  int iv = 0;
  ASSERT_EQ(KXgetModelIntParameter(model, KX_IPARAM_LP_SCALE, &iv), 0);
  EXPECT_EQ(iv, 1);
  EXPECT_EQ(KXdeleteExternalSolver(env), 0);
}

TEST_F(ParamFixture, SolversReadTheirBlocksDirectly) {
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_ALLOW_CNTRLBREAK, 0), 0);
  EXPECT_EQ(model->splexPam->allowCtrlBreak, 0);
  ASSERT_EQ(KXsetModelDouParameter(model, KX_DPARAM_CALLBACKFREQ, 2.5), 0);
  EXPECT_EQ(model->splexPam->callbackFreq, 2.5);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_SOLVER_IPMSOL, 2), 0);
  EXPECT_EQ(model->splexPam->ipmSol, 2);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_MIP_TIMLIM, 12), 0);
  EXPECT_EQ(model->bandBPam->timeLimit, 12.0);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_STRING_LENLMT, 40), 0);
  EXPECT_EQ(model->stringLenLmt, 40);
  ASSERT_EQ(KXsetModelIntParameter(model, KX_IPARAM_STOC_PRINT_LEVEL, 4), 0);
  EXPECT_EQ(model->stocPam->printLevel, 4);
  // Blocks are separate allocations, never shared with the environment.
  EXPECT_NE(model->splexPam, env->splexPam);
  EXPECT_NE(model->bandBPam, env->bandBPam);
  EXPECT_NE(model->solverPam, env->solverPam);
  EXPECT_NE(model->iisPam, env->iisPam);
}

TEST_F(ParamFixture, StochasticTextAndUnnamedIds) {
  char buf[256] = "";
  ASSERT_EQ(KXgetModelStocParameter(model, 630, buf), 0);
  EXPECT_STREQ(buf, "_ND%06d");
  ASSERT_EQ(KXgetModelStocParameter(model, 631, buf), 0);
  EXPECT_STREQ(buf, "_SC%06d");
  EXPECT_EQ(KXsetModelStocParameter(model, 630, "N%d"), 0);
  ASSERT_EQ(KXgetModelStocParameter(model, 630, buf), 0);
  EXPECT_STREQ(buf, "N%d");
  for (const char *bad : {"%s", "no conversion", "%d%d", "%", "%5"}) {
    EXPECT_EQ(KXsetModelStocParameter(model, 631, bad), KXERR_PARAMETER_OUT_OF_RANGE) << bad;
  }
  std::string longPattern(300, 'x');
  longPattern += "%d";
  EXPECT_EQ(KXsetModelStocParameter(model, 631, longPattern.c_str()), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXsetModelStocParameter(model, 631, "S%%%04d"), 0);
  // Text ids are not reached by the typed calls.
  int iv = 0;
  EXPECT_EQ(KXgetModelStocIntParameter(model, 630, &iv), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXgetModelIntParameter(model, 630, &iv), KXERR_PARAMETER_OUT_OF_RANGE);
  // 610 and 612: stochastic calls only.
  ASSERT_EQ(KXgetModelStocIntParameter(model, 612, &iv), 0);
  EXPECT_EQ(iv, 2);
  EXPECT_EQ(KXsetModelStocIntParameter(model, 612, -1), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXsetModelStocIntParameter(model, 610, 3), 0);
  ASSERT_EQ(KXgetModelStocIntParameter(model, 610, &iv), 0);
  EXPECT_EQ(iv, 3);
  double dv = 0;
  EXPECT_EQ(KXgetModelStocDouParameter(model, KX_IPARAM_STOC_RG_SEED, &dv), KXERR_PARAMETER_OUT_OF_RANGE);
  EXPECT_EQ(KXsetModelStocDouParameter(model, KX_DPARAM_STOC_INFBND, 5e8), 0);
  ASSERT_EQ(KXgetModelDouParameter(model, KX_DPARAM_STOC_INFBND, &dv), 0);
  EXPECT_EQ(dv, 5e8);
  EXPECT_EQ(KXgetModelStocParameter(model, KX_IPARAM_LP_SCALE, &iv), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXsetModelStocParameter(model, KX_IPARAM_LP_SCALE, &iv), KXERR_UNABLE_TO_SET_PARAM);
}

TEST_F(ParamFixture, StochasticDefaultsFollowEnvironmentAndNameData) {
  int mask = 5;
  ASSERT_EQ(KXsetEnvParameter(env, KX_IPARAM_STOC_DEBUG_MASK, &mask), 0);
  int iv = 0;
  ASSERT_EQ(KXgetEnvParameter(env, KX_IPARAM_STOC_DEBUG_MASK, &iv), 0);
  EXPECT_EQ(iv, 5);
  EXPECT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_STOC_DEBUG_MASK, &iv), KXERR_PARAMETER_OUT_OF_RANGE);
  pModel m = new_model();
  ASSERT_EQ(KXgetModelIntParameter(m, KX_IPARAM_STOC_DEBUG_MASK, &iv), 0);
  EXPECT_EQ(iv, 5);
  ASSERT_EQ(KXgetModelStocIntParameter(m, 610, &iv), 0);
  EXPECT_EQ(iv, 5);
  // Clearing a model returns its stochastic settings to the defaults; 642
  // starts from the model's name data setting.
  ASSERT_EQ(KXsetModelIntParameter(m, KX_IPARAM_USE_NAMEDATA, 0), 0);
  ASSERT_EQ(KXsetModelIntParameter(m, KX_IPARAM_STOC_RG_SEED, 9), 0);
  ASSERT_EQ(KXclearModel(m), 0);
  ASSERT_EQ(KXgetModelIntParameter(m, KX_IPARAM_STOC_RG_SEED, &iv), 0);
  EXPECT_EQ(iv, 1031);
  ASSERT_EQ(KXgetModelIntParameter(m, KX_IPARAM_STOC_NAMEDATA_LEVEL, &iv), 0);
  EXPECT_EQ(iv, 0);
  ASSERT_EQ(KXgetModelIntParameter(m, KX_IPARAM_STRING_LENLMT, &iv), 0);
  EXPECT_EQ(iv, 20);
}

TEST_F(ParamFixture, RangesAndDescriptions) {
  int lo = 5, hi = 5;
  EXPECT_EQ(KXgetIntParameterRange(model, KX_IPARAM_LP_SCALE, nullptr, &hi), 0);
  EXPECT_EQ(hi, 3);
  EXPECT_EQ(KXgetIntParameterRange(model, KX_IPARAM_LP_SCALE, &lo, nullptr), 0);
  EXPECT_EQ(lo, 0);
  lo = hi = 5;
  EXPECT_EQ(KXgetIntParameterRange(nullptr, KX_IPARAM_LP_SCALE, &lo, &hi), KXERR_ILLEGAL_NULL_POINTER);
  EXPECT_EQ(lo, 0);
  EXPECT_EQ(hi, 0);
  lo = hi = 5;
  EXPECT_EQ(KXgetIntParameterRange(model, 123456, &lo, &hi), 0);
  EXPECT_EQ(lo + hi, 0);
  EXPECT_EQ(KXgetIntParameterRange(model, KX_IPARAM_NLP_CONVEXRELAX, &lo, &hi), 0);
  EXPECT_EQ(lo, INT_MIN);
  EXPECT_EQ(hi, INT_MAX);
  double dlo = 5, dhi = 5;
  EXPECT_EQ(KXgetDouParameterRange(model, KX_DPARAM_IPM_TOL_PATH, &dlo, &dhi), 0);
  EXPECT_EQ(dlo, 1e-32);
  EXPECT_EQ(dhi, 0.499999999999999);

  char text[256];
  ASSERT_EQ(KXgetParamDescription(env, KX_IPARAM_ALLOW_CNTRLBREAK, text), 0);
  EXPECT_STREQ(text, "CTRL-C enabled");
  ASSERT_EQ(KXgetParamDescription(env, KX_IPARAM_PROB_TO_SOLVE, text), 0);
  EXPECT_STREQ(text, "Using LP model orientation (primal vs dual) ");
  ASSERT_EQ(KXgetParamDescription(env, KX_DPARAM_LU_INI_RCOND, text), 0);
  EXPECT_STREQ(text, "Option initial reciprocal condition estimator tolerance during LU");
  ASSERT_EQ(KXgetParamDescription(env, KX_IPARAM_STOC_NAMEDATA_LEVEL, text), 0);
  EXPECT_STREQ(text, "Name data level for stochastic models");
  for (int id : {KX_IPARAM_OBJSENSE, 45, 990, 0, -1, 99999}) {
    std::strcpy(text, "x");
    ASSERT_EQ(KXgetParamDescription(env, id, text), 0);
    EXPECT_STREQ(text, "NULL") << id;
  }
}

TEST_F(ParamFixture, NullArgumentsGiveCodes) {
  constexpr int kNull = KXERR_ILLEGAL_NULL_POINTER;
  int iv = 0;
  double dv = 0;
  char text[256];
  EXPECT_EQ(KXgetEnvParameter(nullptr, KX_IPARAM_LP_SCALE, &iv), kNull);
  EXPECT_EQ(KXgetEnvParameter(env, KX_IPARAM_LP_SCALE, nullptr), kNull);
  EXPECT_EQ(KXsetEnvParameter(nullptr, KX_IPARAM_LP_SCALE, &iv), kNull);
  EXPECT_EQ(KXsetEnvParameter(env, KX_IPARAM_LP_SCALE, nullptr), kNull);
  EXPECT_EQ(KXgetEnvIntParameter(nullptr, KX_IPARAM_LP_SCALE, &iv), kNull);
  EXPECT_EQ(KXgetEnvIntParameter(env, KX_IPARAM_LP_SCALE, nullptr), kNull);
  EXPECT_EQ(KXgetEnvIntParameter(env, 99999, nullptr), kNull);
  EXPECT_EQ(KXsetEnvIntParameter(nullptr, KX_IPARAM_LP_SCALE, 1), kNull);
  EXPECT_EQ(KXgetEnvDouParameter(nullptr, KX_DPARAM_CALLBACKFREQ, &dv), kNull);
  EXPECT_EQ(KXgetEnvDouParameter(env, KX_DPARAM_CALLBACKFREQ, nullptr), kNull);
  EXPECT_EQ(KXsetEnvDouParameter(nullptr, KX_DPARAM_CALLBACKFREQ, 1), kNull);
  EXPECT_EQ(KXgetModelParameter(nullptr, KX_IPARAM_LP_SCALE, &iv), kNull);
  EXPECT_EQ(KXgetModelParameter(model, KX_IPARAM_LP_SCALE, nullptr), kNull);
  EXPECT_EQ(KXsetModelParameter(nullptr, KX_IPARAM_LP_SCALE, &iv), kNull);
  EXPECT_EQ(KXsetModelParameter(model, KX_IPARAM_LP_SCALE, nullptr), kNull);
  EXPECT_EQ(KXgetModelIntParameter(nullptr, KX_IPARAM_LP_SCALE, &iv), kNull);
  EXPECT_EQ(KXgetModelIntParameter(model, KX_IPARAM_LP_SCALE, nullptr), kNull);
  EXPECT_EQ(KXsetModelIntParameter(nullptr, KX_IPARAM_LP_SCALE, 1), kNull);
  EXPECT_EQ(KXgetModelDouParameter(nullptr, KX_DPARAM_CALLBACKFREQ, &dv), kNull);
  EXPECT_EQ(KXgetModelDouParameter(model, KX_DPARAM_CALLBACKFREQ, nullptr), kNull);
  EXPECT_EQ(KXsetModelDouParameter(nullptr, KX_DPARAM_CALLBACKFREQ, 1), kNull);
  EXPECT_EQ(KXgetModelStocParameter(nullptr, 630, text), kNull);
  EXPECT_EQ(KXgetModelStocParameter(model, 630, nullptr), kNull);
  EXPECT_EQ(KXsetModelStocParameter(model, 630, nullptr), kNull);
  EXPECT_EQ(KXsetModelStocParameter(nullptr, 630, "%d"), kNull);
  EXPECT_EQ(KXgetModelStocIntParameter(nullptr, 602, &iv), kNull);
  EXPECT_EQ(KXgetModelStocIntParameter(model, 602, nullptr), kNull);
  EXPECT_EQ(KXsetModelStocIntParameter(nullptr, 602, 1), kNull);
  EXPECT_EQ(KXgetModelStocDouParameter(nullptr, 641, &dv), kNull);
  EXPECT_EQ(KXgetModelStocDouParameter(model, 641, nullptr), kNull);
  EXPECT_EQ(KXsetModelStocDouParameter(nullptr, 641, 1), kNull);
  EXPECT_EQ(KXgetDouParameterRange(nullptr, 23, &dv, &dv), kNull);
  EXPECT_EQ(KXgetParamDescription(nullptr, 26, text), kNull);
  EXPECT_EQ(KXgetParamDescription(env, 26, nullptr), kNull);
  EXPECT_EQ(KXreadEnvParameter(nullptr, "x.par"), kNull);
  EXPECT_EQ(KXreadEnvParameter(env, nullptr), kNull);
  EXPECT_EQ(KXreadModelParameter(nullptr, "x.par"), kNull);
  EXPECT_EQ(KXreadModelParameter(model, nullptr), kNull);
  EXPECT_EQ(KXloadEnvParameter(nullptr, "x.par", 1, parlist), kNull);
  EXPECT_EQ(KXloadEnvParameter(env, "x.par", 1, nullptr), kNull);
  EXPECT_EQ(KXloadModelParameter(nullptr, "x.par", 1, parlist), kNull);
  EXPECT_EQ(KXloadModelParameter(model, "x.par", 1, nullptr), kNull);
  EXPECT_EQ(KXwriteEnvParameter(nullptr, "x.par"), kNull);
  EXPECT_EQ(KXwriteEnvParameter(env, nullptr), kNull);
  EXPECT_EQ(KXwriteModelParameter(nullptr, "x.par"), kNull);
  EXPECT_EQ(KXwriteModelParameter(model, nullptr), kNull);
}

}  // namespace
