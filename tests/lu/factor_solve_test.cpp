// Factorisation and solves: residuals on random bases, singular bases, the
// threshold ladder, parameters and the binding.
#include <gtest/gtest.h>

#include "lu/slu.h"
#include "lu_test_util.h"

using namespace lutest;

namespace {

void check_solves(SLU *h, const Pool &pool, const std::vector<int> &head, double tol, uint32_t seed) {
    const int m = pool.m;
    Solver s(h, m);
    std::mt19937 rng(seed);
    // Dense right-hand sides.
    for (int rep = 0; rep < 2; rep++) {
        auto a = random_dense(m, rng);
        auto x = s.ftran(a, false);
        EXPECT_EQ(s.lastCount, -1);
        EXPECT_LT(rel_residual(mul_B(pool, head, x), a), tol);
        auto c = random_dense(m, rng);
        auto y = s.btran(c, false);
        EXPECT_EQ(s.lastCount, -1);
        EXPECT_LT(rel_residual(mul_Bt(pool, head, y), c), tol);
    }
    // Sparse right-hand sides: unit vectors and a few nonzeros; the same
    // vector given densely gives the same answer up to the rounding of another
    // order of operations (the badly scaled bases reach about 2e-12).
    for (int rep = 0; rep < 6; rep++) {
        auto a = rep < 3 ? std::vector<double>(m, 0.0) : random_sparse(m, 1 + (int)(rng() % 6), rng);
        if (rep < 3) a[rng() % m] = 1.0;
        auto x = s.ftran(a, true);
        EXPECT_GE(s.lastCount, 1);
        EXPECT_LT(rel_residual(mul_B(pool, head, x), a), tol);
        auto xd = s.ftran(a, false);
        EXPECT_LT(rel_residual(xd, x), 1e-11);
        auto y = s.btran(a, true);
        EXPECT_LT(rel_residual(mul_Bt(pool, head, y), a), tol);
        auto yd = s.btran(a, false);
        EXPECT_LT(rel_residual(yd, y), 1e-11);
    }
}

struct RandomCase {
    int m;
    double density;
    double slackShare;
    double rowScale;
};

class RandomBases : public ::testing::TestWithParam<RandomCase> {};

TEST_P(RandomBases, FactorAndSolveResiduals) {
    const RandomCase rc = GetParam();
    for (uint32_t seed = 1; seed <= 3; seed++) {
        Pool pool;
        std::vector<int> head;
        random_basis(pool, head, rc.m, rc.density, rc.slackShare, seed * 7919 + rc.m, rc.rowScale);
        Handle H(rc.m, &pool);
        ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK) << "m=" << rc.m << " seed=" << seed;
        EXPECT_EQ(slu_get_lu_stat(H.h), SLU_STAT_OK);
        EXPECT_GT(slu_get_rcond(H.h), 0.0);
        check_solves(H.h, pool, head, 1e-10, seed);
        // A second factorisation of the same basis gives the same factors.
        const int64_t lnz = slu_num_lnonz(H.h), unz = slu_num_unonz(H.h);
        ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
        if (H.h->pivRelNow == H.h->epsPivRel) {
            EXPECT_EQ(slu_num_lnonz(H.h), lnz);
            EXPECT_EQ(slu_num_unonz(H.h), unz);
        }
        check_solves(H.h, pool, head, 1e-10, seed + 100);
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, RandomBases,
                         ::testing::Values(RandomCase{10, 0.05, 0.3, 1.0}, RandomCase{10, 0.3, 0.0, 1.0},
                                           RandomCase{60, 0.05, 0.0, 10.0}, RandomCase{200, 0.05, 0.5, 1.0},
                                           RandomCase{500, 0.01, 0.2, 100.0}, RandomCase{1000, 0.005, 0.4, 1.0},
                                           RandomCase{2000, 0.002, 0.3, 10.0}, RandomCase{5000, 0.001, 0.5, 1.0},
                                           RandomCase{5000, 0.002, 0.7, 10.0}, RandomCase{400, 0.05, 0.6, 1.0}));

TEST(Factor, AllSlackBasisHasNoKernel) {
    const int m = 300;
    Pool pool;
    pool.m = m;
    std::vector<int> head(m);
    std::mt19937 rng(5);
    std::vector<int> perm(m);
    std::iota(perm.begin(), perm.end(), 0);
    std::shuffle(perm.begin(), perm.end(), rng);
    for (int p = 0; p < m; p++) head[p] = pool.add({perm[p]}, {p % 3 == 0 ? -1.0 : 1.0});
    Handle H(m, &pool);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    EXPECT_EQ(slu_num_lnonz(H.h), 0);
    EXPECT_EQ(slu_num_unonz(H.h), 0);
    EXPECT_EQ(H.h->work->nL, 0);
    EXPECT_EQ(slu_get_singular_cnt(H.h), 0);
    EXPECT_DOUBLE_EQ(slu_get_rcond(H.h), 1.0);
    check_solves(H.h, pool, head, 1e-14, 3);
}

TEST(Factor, TriangularBasesFinishInSingletonPhases) {
    // Upper and lower triangular bases (in scrambled order) need no kernel
    // elimination beyond singletons: nnz(L)+nnz(U) equals the off-diagonals.
    for (int lower = 0; lower < 2; lower++) {
        const int m = 400;
        Pool pool;
        pool.m = m;
        std::mt19937 rng(11 + lower);
        std::vector<int> perm(m);
        std::iota(perm.begin(), perm.end(), 0);
        std::shuffle(perm.begin(), perm.end(), rng);
        std::vector<int> head(m);
        int64_t off = 0;
        for (int p = 0; p < m; p++) {
            std::vector<int> r{perm[p]};
            std::vector<double> v{2.0 + (p % 5)};
            for (int k = 0; k < 3; k++) {
                const int q = lower ? p + 1 + (int)(rng() % 20) : p - 1 - (int)(rng() % 20);
                if (q < 0 || q >= m || std::find(r.begin(), r.end(), perm[q]) != r.end()) continue;
                r.push_back(perm[q]);
                v.push_back(0.505 - (double)(rng() % 100) / 100.0);
                off++;
            }
            head[p] = pool.add(r, v);
        }
        std::shuffle(head.begin(), head.end(), rng);
        Handle H(m, &pool);
        ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
        EXPECT_EQ(slu_num_lnonz(H.h) + slu_num_unonz(H.h), off);
        check_solves(H.h, pool, head, 1e-12, 4);
    }
}

TEST(Singular, TwoEqualColumns) {
    // Kernel columns 1 and 3 are equal.
    const int m = 5;
    Pool pool;
    pool.m = m;
    std::vector<int> head = {
        pool.add({0, 1, 2}, {2.0, 1.0, 1.0}), pool.add({1, 2, 3}, {1.0, 3.0, 1.0}),
        pool.add({0, 3, 4}, {1.0, 2.0, 1.0}), pool.add({1, 2, 3}, {1.0, 3.0, 1.0}),
        pool.add({2, 4, 0}, {1.0, 4.0, 1.0})};
    Handle H(m, &pool);
    EXPECT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_SINGULAR);
    EXPECT_EQ(slu_get_lu_stat(H.h), SLU_STAT_SINGULAR);
    ASSERT_EQ(slu_get_singular_cnt(H.h), 1);
    EXPECT_EQ(H.h->work->nSingRows, 1);
    EXPECT_EQ(H.h->work->nSingCols, 1);
    int col = -1, row = -1;
    ASSERT_EQ(slu_get_singular_idx(H.h, &col, &row, 0), 0);
    EXPECT_TRUE(col == 1 || col == 3);
    EXPECT_GE(row, 0);
    EXPECT_LT(row, m);
    EXPECT_EQ(slu_get_singular_idx(H.h, &col, &row, 1), SLU_RC_UNKNOWN_ID);
    EXPECT_EQ(slu_get_rcond(H.h), 0.0);
    // Solves refuse a singular factor without touching memory.
    Solver s(H.h, m);
    s.ftran(std::vector<double>(m, 1.0), false);
    EXPECT_EQ(s.lastRc, SLU_STAT_SINGULAR);
    // The simplex's repair: the slack of the singular row in place of the column.
    head[col] = pool.add({row}, {1.0});
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    check_solves(H.h, pool, head, 1e-12, 9);
}

TEST(Singular, EqualSlackColumnsAndEmptyColumn) {
    const int m = 6;
    Pool pool;
    pool.m = m;
    // Positions 1 and 4 hold the same slack; position 2 is empty.
    std::vector<int> head = {pool.add({0}, {1.0}),           pool.add({3}, {1.0}),
                             pool.add({}, {}),               pool.add({1, 2, 5}, {1.0, 2.0, 1.0}),
                             pool.add({3}, {1.0}),           pool.add({2, 4, 5}, {1.0, 1.0, -3.0})};
    Handle H(m, &pool);
    EXPECT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_SINGULAR);
    const SLUFactor &f = *H.h->work;
    EXPECT_EQ(f.colPos[2], SLU_EMPTYCOL);
    EXPECT_EQ(f.colPos[4], SLU_SINGULAR);
    EXPECT_EQ(f.nSingCols, 2);
    EXPECT_EQ(f.nSingRows, 2);
    std::vector<int> cols, rows;
    for (int k = 0; k < slu_get_singular_cnt(H.h); k++) {
        int c, r;
        ASSERT_EQ(slu_get_singular_idx(H.h, &c, &r, k), 0);
        cols.push_back(c);
        rows.push_back(r);
    }
    std::sort(cols.begin(), cols.end());
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(cols, (std::vector<int>{2, 4}));
    // Rows 1 and 2 or 1 and 4 or ...: the unpivoted rows are the ones no column covers.
    for (int k = 0; k < 2; k++) {
        head[cols[k]] = pool.add({rows[k]}, {1.0});
    }
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    check_solves(H.h, pool, head, 1e-12, 10);
}

TEST(Singular, StructurallySingularKernel) {
    // Three columns living in two rows, plus slacks elsewhere.
    const int m = 7;
    Pool pool;
    pool.m = m;
    std::vector<int> head = {pool.add({0, 1}, {1.0, 2.0}), pool.add({0, 1}, {3.0, 1.0}), pool.add({0, 1}, {1.0, 1.0}),
                             pool.add({3}, {1.0}),         pool.add({4, 5}, {1.0, 1.0}), pool.add({5, 6}, {2.0, 1.0}),
                             pool.add({6, 4}, {1.0, 1.0})};
    Handle H(m, &pool);
    EXPECT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_SINGULAR);
    EXPECT_EQ(slu_get_singular_cnt(H.h), 1);
    int c = -1, r = -1;
    ASSERT_EQ(slu_get_singular_idx(H.h, &c, &r, 0), 0);
    EXPECT_TRUE(c >= 0 && c <= 2);
    EXPECT_EQ(r, 2);
    head[c] = pool.add({r}, {1.0});
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    check_solves(H.h, pool, head, 1e-12, 11);
}

// A kernel that fills up is finished as one dense block.  Its factors must
// solve as well as sparse ones, and a block that turns out singular goes back
// to the sparse kernel, which names the singular pair.
TEST(DenseTail, FilledKernelSolves) {
    for (uint32_t seed = 1; seed <= 3; seed++) {
        const int m = 150;
        Pool pool;
        std::vector<int> head;
        random_basis(pool, head, m, 0.3, 0.05, seed * 31, 10.0);
        Handle H(m, &pool);
        ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
        EXPECT_GE(H.h->work->denseOrder, 48) << "seed " << seed;
        check_solves(H.h, pool, head, 1e-10, seed);
    }
}

TEST(DenseTail, SingularBlockIsLeftToTheSparseKernel) {
    const int m = 100;
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, m, 0.6, 0.0, 77, 1.0);
    head[57] = head[13];  // the same column twice
    Handle H(m, &pool);
    EXPECT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_SINGULAR);
    EXPECT_EQ(H.h->work->denseOrder, 0);
    ASSERT_EQ(slu_get_singular_cnt(H.h), 1);
    int col = -1, row = -1;
    ASSERT_EQ(slu_get_singular_idx(H.h, &col, &row, 0), 0);
    EXPECT_TRUE(col == 13 || col == 57) << col;
    head[col] = pool.add({row}, {1.0});
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    EXPECT_GT(H.h->work->denseOrder, 0);
    check_solves(H.h, pool, head, 1e-10, 12);
}

TEST(Ladder, StepsAndRelaxation) {
    const double rungs[] = {0.01, 0.1, 0.55, 0.775, 0.8875, 0.94375, 0.99999};
    for (int k = 0; k + 1 < 7; k++) EXPECT_DOUBLE_EQ(slu_ladder_step(rungs[k]), rungs[k + 1]);
    EXPECT_DOUBLE_EQ(slu_ladder_step(0.99999), 0.99999);
    EXPECT_DOUBLE_EQ(slu_ladder_relax(0.01, 0.01), 0.01);
    EXPECT_DOUBLE_EQ(slu_ladder_relax(0.1, 0.01), 0.01);
    EXPECT_DOUBLE_EQ(slu_ladder_relax(0.55, 0.01), 0.01);
    EXPECT_DOUBLE_EQ(slu_ladder_relax(0.775, 0.01), 0.1);
    EXPECT_DOUBLE_EQ(slu_ladder_relax(0.99999, 0.01), 0.8875);
}

TEST(Ladder, PoorEstimateClimbsGoodEstimateRelaxes) {
    const int m = 4;
    Pool pool;
    pool.m = m;
    std::vector<int> head = {pool.add({0}, {1.0}), pool.add({1}, {1e-5}), pool.add({2}, {1.0}), pool.add({3}, {1.0})};
    Handle H(m, &pool);
    SLU *h = H.h;
    // A tiny forced pivot: the estimate stays poor, every rung is tried once.
    ASSERT_EQ(slu_do_factor(h, head.data()), SLU_STAT_OK);
    EXPECT_NEAR(slu_get_rcond(h), 1e-5, 1e-12);
    EXPECT_DOUBLE_EQ(h->pivRelNow, 0.99999);
    int tries = 0, done = 0, stable = 0;
    slu_get_iinfo(h, SLU_IINF_TRIES, &tries);
    slu_get_iinfo(h, SLU_IINF_FACTORS, &done);
    slu_get_iinfo(h, SLU_IINF_STABLE, &stable);
    EXPECT_EQ(tries, 7);
    EXPECT_EQ(done, 7);
    EXPECT_EQ(stable, 0);
    EXPECT_DOUBLE_EQ(h->rcondTarget, 0.01 / 64);
    // A well-conditioned basis: the first factorisation still reads the poor
    // estimate; from then on the threshold comes down two rungs at a time.
    pool.vals[head[1]][0] = 1.0;
    const double expect[] = {0.99999, 0.8875, 0.55, 0.01};
    const double target[] = {0.01 / 64, 0.02, 0.02, 0.02};
    for (int k = 0; k < 4; k++) {
        ASSERT_EQ(slu_do_factor(h, head.data()), SLU_STAT_OK);
        EXPECT_DOUBLE_EQ(h->pivRelNow, expect[k]);
        EXPECT_DOUBLE_EQ(h->rcondTarget, target[k]);
        int since = 0;
        slu_get_iinfo(h, SLU_IINF_TRIES_SINCE, &since);
        EXPECT_EQ(since, 1);
    }
    slu_get_iinfo(h, SLU_IINF_STABLE, &stable);
    EXPECT_EQ(stable, 4);
    double share = 0;
    slu_get_dinfo(h, SLU_DINF_STABLE_SHARE, &share);
    EXPECT_DOUBLE_EQ(share, 4.0 / 11.0);
}

TEST(Ladder, RaisedTargetRefactorsUntilMet) {
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, 300, 0.02, 0.2, 77, 1.0);
    Handle H(300, &pool);
    slu_set_dpar(H.h, SLU_DPAR_INI_RCOND, 0.9);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), SLU_STAT_OK);
    int since = 0;
    slu_get_iinfo(H.h, SLU_IINF_TRIES_SINCE, &since);
    EXPECT_GE(since, 2);
    double thr = 0.01;
    for (int k = 1; k < since; k++) thr = slu_ladder_step(thr);
    EXPECT_DOUBLE_EQ(H.h->pivRelNow, thr);
    EXPECT_DOUBLE_EQ(H.h->rcondTarget, 0.9 / (1 << (since - 1)));
    check_solves(H.h, pool, head, 1e-10, 12);
}

TEST(Params, DefaultsRangesAndUnknownIds) {
    Pool pool;
    pool.m = 3;
    Handle H(3, &pool);
    int iv = 0;
    double dv = 0;
    const std::pair<int, int> idef[] = {{1300, 4}, {1301, 500}, {1302, 2}, {1303, 1}, {1304, 0}, {1305, 5}};
    for (auto [id, def] : idef) {
        ASSERT_EQ(slu_get_ipar(H.h, id, &iv), 0);
        EXPECT_EQ(iv, def) << id;
        ASSERT_EQ(slu_set_ipar(H.h, id, 1), 0);
        ASSERT_EQ(slu_set_ipar(H.h, id, -1), 0);
        slu_get_ipar(H.h, id, &iv);
        EXPECT_EQ(iv, def) << id;
    }
    const std::pair<int, double> ddef[] = {{2400, 1e-6}, {2401, 2.22044604925032e-16}, {2402, 1e-10},
                                           {2403, 0.01}, {2404, 0.01}, {2405, 0.001}, {2406, 0.2}, {2407, 0.1}};
    for (auto [id, def] : ddef) {
        ASSERT_EQ(slu_get_dpar(H.h, id, &dv), 0);
        EXPECT_DOUBLE_EQ(dv, def) << id;
        ASSERT_EQ(slu_set_dpar(H.h, id, 0.5), 0);
        slu_get_dpar(H.h, id, &dv);
        EXPECT_DOUBLE_EQ(dv, 0.5);
        ASSERT_EQ(slu_set_dpar(H.h, id, -3.0), 0);
        slu_get_dpar(H.h, id, &dv);
        EXPECT_DOUBLE_EQ(dv, def) << id;
    }
    EXPECT_EQ(slu_set_ipar(H.h, 1306, 1), SLU_RC_UNKNOWN_ID);
    EXPECT_EQ(slu_get_ipar(H.h, 2400, &iv), SLU_RC_UNKNOWN_ID);
    EXPECT_EQ(slu_set_dpar(H.h, 2408, 1.0), SLU_RC_UNKNOWN_ID);
    EXPECT_EQ(slu_get_iinfo(H.h, 1003, &iv), SLU_RC_UNKNOWN_ID);
    EXPECT_EQ(slu_get_lu_stat(H.h), SLU_STAT_NOFACTOR);
    // Options reach the log only at a high print level.
    std::string text;
    slu_set_log(H.h, [](void *d, const char *t) { *static_cast<std::string *>(d) += t; }, &text);
    slu_disp_params(H.h);
    EXPECT_TRUE(text.empty());
    slu_set_ipar(H.h, SLU_IPAR_PRINT_LEVEL, 3);
    slu_disp_params(H.h);
    EXPECT_NE(text.find("\nWorking LU options \n"), std::string::npos);
    EXPECT_NE(text.find("SLU_DPAR_SPVTOL_BTRAN : 0.1\n"), std::string::npos);
}

TEST(Solve, EmptyAndZeroResults) {
    Pool pool;
    std::vector<int> head;
    random_basis(pool, head, 50, 0.1, 0.3, 3, 1.0);
    Handle H(50, &pool);
    Solver s(H.h, 50);
    s.ftran(std::vector<double>(50, 1.0), true);
    EXPECT_EQ(s.lastRc, SLU_STAT_NOFACTOR);
    ASSERT_EQ(slu_do_factor(H.h, head.data()), 0);
    auto x = s.ftran(std::vector<double>(50, 0.0), true);
    EXPECT_EQ(s.lastRc, SLU_RC_EMPTY);
    EXPECT_EQ(s.lastCount, 0);
    s.btran(std::vector<double>(50, 0.0), true);
    EXPECT_EQ(s.lastRc, SLU_RC_EMPTY);
    s.ftran(std::vector<double>(50, 0.0), false);
    EXPECT_EQ(s.lastRc, 0);
    EXPECT_EQ(s.lastCount, -1);
    // Scattered output: values at their positions.
    std::vector<int> ind(50);
    std::vector<double> val(50, 0.0);
    int one = 7;
    double v = 1.0;
    SLUVec in{1, &one, &v, 0}, out{0, ind.data(), val.data(), 1};
    ASSERT_EQ(slu_do_ftran(H.h, &in, &out, 0), 0);
    std::vector<double> xs(50, 0.0);
    for (int k = 0; k < out.count; k++) xs[ind[k]] = val[ind[k]];
    std::vector<double> e(50, 0.0);
    e[7] = 1.0;
    EXPECT_LT(rel_residual(mul_B(pool, head, xs), e), 1e-12);
}

TEST(Binding, FactorSolveAndStatusMaps) {
    // A 3-row model with 3 structural columns; basis: x0, x2, slack of row 1.
    const int colBeg[] = {0, 2, 4}, colLen[] = {2, 2, 2}, rowInd[] = {0, 2, 0, 1, 1, 2};
    const double val[] = {1.0, 2.0, 4.0, 1.0, 3.0, 1.0};
    KXI_lu_columns cols;
    cols.m = 3;
    cols.n = 3;
    cols.colBeg = colBeg;
    cols.colLen = colLen;
    cols.rowInd = rowInd;
    cols.val = val;
    KXI_lu_params pam;
    pam.updateType = 0;
    KXI_lu *lu = nullptr;
    ASSERT_EQ(KXI_lu_create(&lu, &cols, &pam), 0);
    int iv = 0;
    slu_get_ipar(lu->slu, SLU_IPAR_UPDATE_TYPE, &iv);
    EXPECT_EQ(iv, 0);
    const int head[] = {0, 2, 4};
    int st = -1;
    ASSERT_EQ(KXI_lu_fact(lu, head, 17, 2, &st), 0);
    EXPECT_EQ(st, 0);
    slu_get_iinfo(lu->slu, SLU_IINF_ITER, &iv);
    EXPECT_EQ(iv, 17);
    double b[] = {1.0, 2.0, 3.0}, x[3];
    int ind[3];
    SLUVec in{-1, nullptr, b, 0}, out{0, ind, x, 0};
    ASSERT_EQ(KXI_lu_ftran(lu, &in, &out, 0), 0);
    EXPECT_EQ(out.count, -1);
    // x0*(1,0,2) + x1*(0,3,1) + x2*(0,1,0) = b
    EXPECT_NEAR(x[0], 1.0, 1e-14);
    EXPECT_NEAR(2.0 * x[0] + x[1], 3.0, 1e-14);
    EXPECT_NEAR(3.0 * x[1] + x[2], 2.0, 1e-14);
    EXPECT_EQ(lu->nDenseFtran, 1);
    ASSERT_EQ(KXI_lu_get_iinfo(lu, 21501, &iv), 0);
    EXPECT_EQ(iv, 1);
    // Singular basis: x1 and slack of row 1 are dependent with x0 missing row 0.
    const int bad[] = {1, 4, 4};
    ASSERT_EQ(KXI_lu_fact(lu, bad, 18, 2, &st), 0);
    EXPECT_EQ(st, 1);
    EXPECT_EQ(KXI_lu_ftran(lu, &in, &out, 0), KXI_LU_ERR_INTERNAL);
    EXPECT_EQ(KXI_lu_map_stat(0), 0);
    EXPECT_EQ(KXI_lu_map_stat(1), 1);
    EXPECT_EQ(KXI_lu_map_stat(3), 1);
    EXPECT_EQ(KXI_lu_map_stat(4), 4);
    EXPECT_EQ(KXI_lu_map_stat(2), 2);
    EXPECT_EQ(KXI_lu_map_stat(5), 2);
    EXPECT_EQ(KXI_lu_error_code(2), KXI_LU_ERR_MEMORY);
    EXPECT_EQ(KXI_lu_error_code(3), KXI_LU_ERR_NUMERIC);
    KXI_lu_delete(&lu);
    EXPECT_EQ(lu, nullptr);
}

}  // namespace
