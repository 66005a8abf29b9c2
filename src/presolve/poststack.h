// The post-solve stack: two growing arrays, one of int32 words (stack_i) and one of
// doubles (stack_r).  Presolve passes write records in the order they reduce; the
// postsolve replays them from the top.  Every record ends with three int words:
// its count of doubles, its count of ints, and on top its kind, so that the stack
// can be read from the end without knowing the passes that wrote it.
//
// The LP records work on the model "min c'x, rl <= Ax <= ru, l <= x <= u" (a model to
// maximise enters with its costs negated).  Each kind states its primal rule and the
// dual rule that keeps the undone solution optimal for the model as it stood before
// the reduction: y is the row dual (y > 0 only with a_i x = rl, y < 0 only with
// a_i x = ru), d the reduced cost d_j = c_j - sum_i a_ij y_i of that model, and the
// basis keeps one basic position per row.
#pragma once

#include <cstddef>
#include <vector>

enum PostKind : int {
  // A mark between passes; nothing to do.
  kPsMark = 2,
  // Column j fixed at v and removed.  ints: j, rows of its live entries; doubles: v,
  // c_j, l_j, u_j, the entries.  Dual: d_j = c_j - sum a_ij y_i over the stored
  // entries; nonbasic at l when d_j >= 0 and v = l, at u when d_j <= 0 and v = u,
  // free at zero for a free column at 0, else at the nearer bound.
  kPsFixCol = 3,
  // Free or implied-free column singleton j taken out with its row r:
  // x_j = (act - sum a_rk x_k)/a_rj with act the row's kept side (or, for a row whose
  // dual is 0, the side that keeps x_j in its bounds).  ints: r, j, the side (1 rl,
  // 2 ru, 0 free choice), the other columns k; doubles: a_rj, c_j, rl, ru, l_j, u_j,
  // the a_rk.  Dual: y_r = c_j/a_rj
  // (the costs of the other columns were shifted by -y_r a_rk, so their reduced
  // costs are unchanged), d_j = 0, x_j basic and row r nonbasic on its active side.
  kPsElimCol = 5,
  // Renumbering: ints: the original index of each reduced row, then of each reduced
  // column, then the two counts.  The reduced solution is spread to these places.
  kPsRenumber = 6,
  // Duplicate column k = lambda * column j, with c_k = lambda c_j, merged into j as
  // x_j' = x_j + lambda x_k.  ints: j, k; doubles: lambda, l_j, u_j, l_k, u_k.
  // Primal: split x_j' so that one part rests at a bound.  Dual: d_j = d_j',
  // d_k = lambda d_j'; a merged column at a bound puts both at the matching bounds,
  // a basic merged column leaves one of the two basic and the other at a bound.
  kPsDupCol = 8,
  // Invalid: undo stops with 2015.
  kPsInvalid = 12,
  // Row i deleted as empty, free or redundant.  ints: i.  Dual: y_i = 0, row basic.
  kPsDelRow = 20,
  // Singleton row r on column j turned into bounds of j.  ints: r, j; doubles: a,
  // rl, ru, l_j and u_j before, l_j and u_j after.  Dual: when x_j rests at a bound that the row gave
  // (tighter than its own), y_r = d_j/a, d_j = 0, x_j basic and row r nonbasic at
  // the side a x_j touches; otherwise y_r = 0 and row r basic.
  kPsSingRow = 21,
  // Forcing row r: its activity bound equals its other side, every column sits at
  // the bound that gives that activity.  ints: r, side (+1: min activity = ru,
  // -1: max activity = rl), the column count, then per column j, the count of its
  // other live entries and their rows; doubles: rl, ru, then per column a_rj, c_j,
  // x_j, the other entries.  Dual: with d0_j = c_j - sum_{i != r} a_ij y_i,
  // y_r = min(0, min_j d0_j/a_rj) for side +1 and max(0, max_j d0_j/a_rj) for -1;
  // d_j = d0_j - a_rj y_r; the column that sets a nonzero y_r turns basic and the row
  // is nonbasic, else the row is basic.
  kPsForceRow = 22,
  // Column singleton j with zero cost folded into the range of its row r.  ints: r,
  // j, the other columns of r; doubles: a, l_j, u_j, rl, ru (before), their a_rk.
  // Primal: x_j puts a x_j + rest inside [rl, ru], at the bound that the row's active
  // side needs.  Dual: y_r unchanged, d_j = -a y_r; when row r was basic and x_j can
  // only sit strictly inside its bounds, x_j turns basic and row r nonbasic.
  kPsSlackCol = 23,
  // Doubleton equation a_rj x_j + a_rk x_k = b: x_k substituted out.  ints: r, j, k,
  // the other rows of k; doubles: a_rj, a_rk, b, c_k, l_j, u_j (before), l_k, u_k,
  // l_j, u_j (after), the other entries of k.  Primal: x_k = (b - a_rj x_j)/a_rk.  Dual: with
  // D_k = c_k - sum_{i != r} a_ik y_i: when x_j rests at a bound that came from x_k,
  // x_k is nonbasic at its matching bound, d_k = -(a_rk/a_rj) d_j', d_j = 0 and x_j
  // basic; else d_k = 0 with x_k basic and d_j = d_j'.  In both y_r = (D_k - d_k)/a_rk.
  kPsDoubleton = 24,
  // Duplicate row s = lambda * row r merged into r.  ints: r, s; doubles: lambda,
  // rl_r, ru_r (before), rl_s, ru_s, rl_r, ru_r (after).  Dual: when merged row r is nonbasic on a side
  // that came from s, y_s = y_r/lambda, y_r = 0, r basic and s nonbasic; else y_s = 0
  // and s basic.
  kPsDupRow = 25,
};

struct PostStack {
  std::vector<int> stack_i;
  std::vector<double> stack_r;
  size_t recStartI = 0, recStartR = 0;  // start of the record being written
  int nRecords = 0;
  int nRows = 0, nCols = 0;  // the original model
  int mask = 0;
  int keepDual = 1;
  int preKind = 0;
  int verdict = 0;
  int redRows = 0, redCols = 0, redNnz = 0;  // the reduced model
  double sense = 1.0;                        // objective sense of the original model
  int preLevel = -1;                         // level that made this stack
  unsigned long long fingerprint = 0;        // of the model's data when it was made
};

// One record read from the stack.
struct PsRecord {
  int kind;
  const int *iv;
  int ni;
  const double *rv;
  int nr;
};

// Room for `ni` more ints and `nr` more doubles (vectors grow by doubling).
void get_post_stack_space(PostStack *ps, size_t ni, size_t nr);

inline void ps_begin(PostStack *ps) {
  ps->recStartI = ps->stack_i.size();
  ps->recStartR = ps->stack_r.size();
}
inline void ps_int(PostStack *ps, int v) { ps->stack_i.push_back(v); }
inline void ps_real(PostStack *ps, double v) { ps->stack_r.push_back(v); }
// Close the record begun by ps_begin.
void ps_end(PostStack *ps, int kind);

// Read the record that ends at (*ti, *tr) and move the cursors below it; false at
// the bottom or on a damaged stack (*bad set).
bool ps_read_down(const PostStack *ps, size_t *ti, size_t *tr, PsRecord *rec, bool *bad);
