// modify_int.h - helpers shared by the modification calls (modify.cpp,
// modify_grow.cpp, modify_ext.cpp): what a change does to the solver state,
// the solution record and the presolved model.
#pragma once

#include <string>
#include <vector>

#include "base/kx.h"

namespace kxmod {

// True while a solve runs on the model (a call from inside a callback).
bool in_run(const Model *m);
// The presolved model and its stack go.
void drop_presolve(Model *m);
// Statuses after a change of data: the model is loaded but unsolved.
void mark_modified(Model *m);
// A kept MIP solution is no longer known to be valid.
void stale_mip(Model *m);
// Delete the MIP solution.
void drop_mip(Model *m);
// Derived data that depends on the shape of the model: hashes, IIS and IUS.
void drop_shape_data(Model *m);

// Rebuild the solution record for a new shape.  colFrom[k] / rowFrom[k] give
// the old index of new column / row k, or -1 for a new one.  New columns are
// nonbasic at lower, new rows basic at their logical.
int remap_sol(Model *m, int newN, const int *colFrom, int newM, const int *rowFrom);

// Open free room of extra[j] entries in each column j (the work of
// KXaddEmptySpacesAcolumns).
int open_gaps(Model *m, const int *extra);
// Grow the allocation to hold nCons rows, nVars columns and nnz entries (-1:
// leave alone); never below what is in use.
int set_alloc(Model *m, int nCons, int nVars, int nnz, int nQC, int nConeNz, int nSets, int nSetNnz);

// Names as strings (empty when the model has none), and their reinstallation.
std::vector<std::string> con_names(const Model *m);
std::vector<std::string> var_names(const Model *m);
int put_con_names(Model *m, const std::vector<std::string> &names);
int put_var_names(Model *m, const std::vector<std::string> &names);

}  // namespace kxmod
