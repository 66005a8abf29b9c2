// The work record of the general LP presolve and the passes that act on it.
// Private to src/presolve; other subsystems go through presolve.h.
#pragma once

#include <vector>

#include "presolve/lpdata.h"
#include "presolve/poststack.h"
#include "presolve/presolve.h"

// Internal result codes of the passes.
inline constexpr int kPassNone = 0;
inline constexpr int kPassChanged = 1;
inline constexpr int kPassInfeasible = 3;
inline constexpr int kPassUnbounded = -2;
inline constexpr int kPassFailed = -1;

struct GenPre {
  lpdata lp;
  PostStack *ps = nullptr;
  Model *model = nullptr;
  int mask = 0;
  int fill = 1000;
  double feasTol = 1e-7;   // primal tolerance of the verdicts
  double optTol = 1e-7;    // dual tolerance of the verdicts
  double eps = 1e-9;       // tolerance of the exact decisions (redundant, forcing, fixed)
  double drop = 1e-12;     // entries below this are dropped
  long fillUsed = 0;       // nonzeros added by eliminations
  std::vector<int> rowQ, colQ;  // rows and columns marked for the simple passes
  std::vector<char> rowMarked, colMarked;
  std::vector<double> work;     // scratch of length n
  int removedSomething = 0;
};

// Marks.
void gp_mark_row(GenPre &g, int i);
void gp_mark_col(GenPre &g, int j);
void gp_mark_row_cols(GenPre &g, int i);

// Deletions with their stack records.
void genpre_delete_row(GenPre &g, int i);                   // kPsDelRow
void genpre_remove_fixe(GenPre &g, int j, double v);        // kPsFixCol
// Take row i out of the views (no record); its columns are marked.
void gp_unlink_row(GenPre &g, int i);
// Take column j out of the views (no record); its rows are marked.
void gp_unlink_col(GenPre &g, int j);

// Passes: each returns a kPass code.
int simple_spre(GenPre &g);        // queues of marked rows and columns until quiet
int genpre_dual_fixing(GenPre &g);
int genpre_eliminator(GenPre &g);  // doubleton equations
int genpre_dup_row(GenPre &g);
int genpre_dup_col(GenPre &g);
