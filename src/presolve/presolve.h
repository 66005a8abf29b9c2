// The door of the presolve subsystem: the general LP presolve, its postsolve,
// and the post-solve stack that the MIP presolve shares.
//
// Sign conventions of the solution vectors on both sides of the presolve
// (the reduced model's `sol` going in, the original model's `sol` coming out):
//   slack[i] = rhs[i] - a_i x
//   y[i]     = d(objective)/d(rhs[i]), in the model's own sense
//   dj[j]    = cost[j] - sum_i a_ij y[i]
//   colstat  >= 0 basic, -1 at lower, -2 at upper, -3 free at zero
//   rowstat  >= 0 basic, -1 logical at its lower bound (a_i x at the top of the row's
//            range), -2 logical at its upper bound (a_i x at the bottom of the range)
// The basis written back has exactly nCons basic positions, numbered 0.. in the
// order columns then rows.
#pragma once

#include "base/kx.h"

// Verdicts of gen_pre.
inline constexpr int kPreInfeasible = -1;
inline constexpr int kPreUnbounded = -2;  // dual infeasible: unbounded unless also infeasible
inline constexpr int kPreNoChange = 0;
inline constexpr int kPreReduced = 1;
inline constexpr int kPreSolved = 2;

// Bits of the presolve mask (KX_IPARAM_LP_PRELEVEL).
inline constexpr int kPreSimple = 2;       // "sp1": empty, singleton, forcing rows and columns
inline constexpr int kPreConfirm = 4;      // confirm an infeasible row by a second, exact test
inline constexpr int kPreDualFix = 8;      // "sdb": dual fixing and dominated columns
inline constexpr int kPreEliminate = 16;   // "eli": doubleton equations
inline constexpr int kPreDupCols = 32;     // "dcp": duplicate columns
inline constexpr int kPreDupRows = 64;     // "drp": duplicate rows

// Allocate an empty post-solve stack with room for `size` words; 0 or 2001.
int allocate_poststack(PostStack **ps, long size);
// Free a stack; *ps becomes null.
void deallocate_poststack(PostStack **ps);

// Presolve `model` under `mask`.  On success *reduced_out is a new model of the same
// environment (null when nothing was reduced or a verdict below 0 was reached), the
// reductions are written on `ps`, and *status_out is one of the kPre verdicts.
// print_level above 0 writes the report through the model's log function; fill is
// the nonzero growth the eliminations may cause; limit is a time limit in seconds
// (negative for none); pre_kind 0 and 2 keep the dual side (other values: primal only).
// Returns 0, 2001, 2015, 2017 (time) or 2023 (stopped by the callback).
int gen_pre(Model *model, Model **reduced_out, PostStack *ps, int mask, int print_level,
            int fill, double limit, int *status_out, int pre_kind);

// Build the solution of `model` from that of `reduced` (which may be null when the
// presolve settled the model) through the stack: x, y, slack, dj, the basis, the
// objective, the infeasibilities and the statuses of model->sol.  *status_out gets
// the model status.  Returns 0, 2001 or 2015 (a damaged stack).
int genpre_postsolv_prob(Model *reduced, Model *model, PostStack *ps, int *status_out);

// Sizes of the reduced model recorded on a stack.
void genpre_reduced_size(const PostStack *ps, int *nCons, int *nVars, int *nNonz);
// The presolve verdict recorded on a stack.
int genpre_verdict(const PostStack *ps);

// Delete model->presolved and model->poststack (nothing when absent).
void gen_free_presolve(Model *model);
// True when model->poststack was made by `level` from the model as it is now (the
// model's data are compared through a fingerprint taken by gen_pre).
bool gen_presolve_is_current(const Model *model, int level);
