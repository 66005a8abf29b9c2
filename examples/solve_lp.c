/* A first program: load a small linear program, solve it and read the answer.
 *
 *   max 2x + 3y
 *   s.t.  x +  y <= 4
 *         x + 3y <= 6
 *         0 <= x <= 3, y >= 0
 */
#include <stdio.h>

#include "korva.h"

static void report(pEnv env, const char *what, int code) {
  char text[1024];
  KXgetErrorMessage(env, code, text);
  fprintf(stderr, "%s failed: %d %s\n", what, code, text);
}

int main(void) {
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  if (!env) {
    report(NULL, "KXcreateEnv", err);
    return 1;
  }
  pModel model = KXcreateModel(env, &err);
  if (!model) {
    report(env, "KXcreateModel", err);
    KXdeleteEnv(&env);
    return 1;
  }

  double cost[2] = {2.0, 3.0};
  double rhs[2] = {4.0, 6.0};
  char types[2] = {'L', 'L'};
  int colStart[3] = {0, 2, 4};
  int rowIndex[4] = {0, 1, 0, 1};
  double value[4] = {1.0, 1.0, 1.0, 3.0};
  double upper[2] = {3.0, KX_INFINITY};
  err = KXloadLPData(model, 2, 2, -1, 0.0, cost, rhs, types, 4, colStart, NULL, value, rowIndex,
                     NULL, upper);
  if (err) {
    report(env, "KXloadLPData", err);
  } else {
    int m = 0, n = 0, nz = 0;
    KXgetInfo(model, KX_IINFO_NUM_CONS, &m);
    KXgetInfo(model, KX_IINFO_NUM_VARS, &n);
    KXgetInfo(model, KX_IINFO_NUM_NONZ, &nz);
    printf("loaded a model with %d rows, %d columns, %d nonzeros\n", m, n, nz);
    double x[2];
    int rc = KXgetPrimalSolution(model, x);
    if (rc) {
      char text[1024];
      KXgetErrorMessage(env, rc, text);
      printf("no solution yet: %s\n", text);
    }
    int status = 0;
    err = KXoptimize(model, KX_METHOD_FREE, &status);
    if (err) {
      report(env, "KXoptimize", err);
    } else if (status != KX_STATUS_BASIC_OPTIMAL) {
      printf("model status %d\n", status);
    } else {
      double obj = 0.0, y[2];
      KXgetObjective(model, &obj);
      KXgetPrimalSolution(model, x);
      KXgetDualSolution(model, y);
      printf("optimal objective %g at x = %g, y = %g (row duals %g, %g)\n", obj, x[0], x[1], y[0],
             y[1]);
    }
  }
  KXdeleteModel(&model);
  KXdeleteEnv(&env);
  return err ? 1 : 0;
}
