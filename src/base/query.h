// query.h - internal door of the query family: the table of information ids,
// the information reader behind KXgetInfo and the callback queries, and the
// direct basis operations in the model's own (unscaled) terms that the ranges,
// the optimality check and the dual path build on.
#pragma once

#include "base/kx.h"

// One row of the information table: id, constant name, type ('I' int, 'D'
// double, 'S' string), short key and report format.
struct KXinfoRow {
  int id;
  const char *name;
  char type;
  const char *key;
  const char *format;
};

// The whole table (ascending ids) and one row by id (null for an unknown id).
const KXinfoRow *kxi_info_rows(int *count);
const KXinfoRow *kxi_info_find(int id);

// KXgetInfo without the argument checks: 0, or 2009 when the item is unknown
// or has no value now.
int kxi_get_info(Model *model, int id, void *out);

// Progress of a running solve for the callback queries; 2009 when the
// solver at `location` doesn't know the id.  live: inside a callback.
int kxi_progress_info(Model *model, int location, int id, void *out, bool live);

// The live simplex state of the model's last solve, or null.
GLP *kxi_live_glp(Model *model);

// Direct basis work on a live state, in the model's terms: dense vectors of m.
// ftran: out[p] solves B x = in (in by row, out by position); btran: B' y = in.
int kxi_ftran_dense(GLP *g, const double *in, double *out);
int kxi_btran_dense(GLP *g, const double *in, double *out);

// The variable at basis position p (0..n-1 columns, n+i logical of row i) and
// the position of a variable (or -1); bounds and value of a variable in the
// model's terms (the logical s_i = b_i - a_i x).
int kxi_basic_var(const GLP *g, int p);
void kxi_var_bounds(const Model *model, int j, double *lo, double *up);

// Sensitivity entry (ranges.cpp): make sure an optimal live state exists.
int kxi_ranges_prepare(Model *model, GLP **g);

// The dual path of KX_IPARAM_PROB_TO_SOLVE 2 (dualmodel.cpp): solve `model`
// through its explicit dual inside the optimize driver's frame.
int kxi_optimize_dual(Model *model, int method);
