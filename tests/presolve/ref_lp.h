// Test-only tools for the presolve suites: a dense reference LP solver that finds
// an optimal basic solution of a tiny model by trying every basis, and a checker
// of the optimality conditions and of the basis of a solution on a model.
#pragma once

#include <string>
#include <vector>

#include "base/kx.h"

namespace reflp {

// A model in the form min c'x, rl <= Ax <= ru, l <= x <= u (costs already in the
// minimising sense), A dense by rows.
struct Dense {
  int m = 0, n = 0;
  double sense = 1.0;
  double objConst = 0.0;
  std::vector<double> A, c, l, u, rl, ru;
  double a(int i, int j) const { return A[static_cast<size_t>(i) * n + j]; }
};
Dense from_model(const Model *model);

enum { kOptimal = 0, kInfeasible = 1, kUnbounded = 2 };

struct Solution {
  int status = kInfeasible;
  double obj = 0.0;  // in the model's sense, with its constant
  std::vector<double> x, y, d;  // y, d minimising: d = c - A'y
  std::vector<int> cs, rs;      // library codes: 0 basic, -1 / -2 / -3; rows -1 at ru, -2 at rl
};
// Every basis with every choice of bounds for the nonbasics; tiny models only.
Solution solve(const Dense &lp);

// Write a solution into model->sol in the library's conventions, as a simplex
// would leave it (statuses 2, basis positions numbered).
void install(Model *model, const Dense &lp, const Solution &s);

struct Check {
  double pinf = 0, dinf = 0, compl_ = 0;  // scaled violations
  bool basisOk = false;
  std::string why;  // first basis fault
};
// Optimality conditions of model->sol on the model, and the validity of its basis:
// m basic positions, nonbasics at their bounds, a nonsingular basis matrix, zero
// reduced costs on basic columns and zero duals on basic rows.
Check check(const Model *model);

}  // namespace reflp
