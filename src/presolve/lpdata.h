// The lpdata view: a model held by rows and by columns at once, with row activity
// bounds [rl, ru], column bounds, costs in the minimising sense, and live marks.
// Entries are removed in place (swap with the last), so both views stay exact.
#pragma once

#include <cmath>
#include <vector>

#include "base/kx.h"

inline constexpr double kPreInf = 1e30;      // a bound at or beyond this is infinite
inline constexpr double kActInf = 1e15;      // bounds beyond this don't count in activities

inline bool pre_inf(double v) { return std::fabs(v) >= kPreInf; }

struct LpEntry {
  int idx;
  double val;
};

struct lpdata {
  int m = 0, n = 0;
  std::vector<std::vector<LpEntry>> row;  // row i: (column, value)
  std::vector<std::vector<LpEntry>> col;  // column j: (row, value)
  std::vector<double> rl, ru;             // activity bounds of each row
  std::vector<double> lb, ub;             // column bounds
  std::vector<double> cost;               // costs, minimising
  std::vector<char> rowLive, colLive;
  int nRowsLive = 0, nColsLive = 0;
  long nnzLive = 0;
  double objOffset = 0.0;  // constant gathered from removed columns, minimising
  double sense = 1.0;      // +1 minimise, -1 maximise (the original model's)
};

// Build the view of a model's LP part; entries of absolute value at or below dropTol
// are left out, duplicates within a column are summed.  0 or 2001.
int lpdata_build(lpdata &lp, const Model *model, double dropTol);

// Row activity bounds from the live entries: the finite parts and the counts of
// infinite terms on each side.
struct RowAct {
  double minFin = 0.0, maxFin = 0.0;
  int minInf = 0, maxInf = 0;
  double scale = 0.0;  // largest absolute term, for tolerances
  double min() const { return minInf ? -kPreInf : minFin; }
  double max() const { return maxInf ? kPreInf : maxFin; }
};
RowAct lpdata_row_activity(const lpdata &lp, int i);

// Remove the entry (i, j) from both views; false when absent.
bool lpdata_remove_entry(lpdata &lp, int i, int j);
// Position of column j in row i, or -1.
int lpdata_find_in_row(const lpdata &lp, int i, int j);
// Add v to entry (i, j) (created when absent, removed when it drops to |v| <= drop).
void lpdata_add_to_entry(lpdata &lp, int i, int j, double v, double drop);

// Write the live part of the view as a new model of the model's environment.  The
// original indices of the kept rows and columns are returned in rowMap, colMap.
int setup_red_model(const lpdata &lp, Model *model, Model **out, std::vector<int> &rowMap,
                    std::vector<int> &colMap);
