/* Uses the library from plain C through the public header only. */
#include <stdio.h>
#include <string.h>

#include "korva.h"

static int failures = 0;
#define CHECK(cond)                                                   \
  do {                                                                \
    if (!(cond)) {                                                    \
      fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #cond); \
      ++failures;                                                     \
    }                                                                 \
  } while (0)

int main(void) {
  int err = -1;
  pEnv env = KXcreateEnv(&err);
  CHECK(env != NULL && err == 0);
  pModel model = KXcreateModel(env, &err);
  CHECK(model != NULL && err == 0);

  /* max 2x + 3y  s.t.  x + y <= 4,  x + 3y <= 6,  x <= 3 */
  double c[2] = {2.0, 3.0};
  double b[2] = {4.0, 6.0};
  char types[2] = {'L', 'L'};
  int beg[3] = {0, 2, 4};
  int rows[4] = {0, 1, 0, 1};
  double coef[4] = {1.0, 1.0, 1.0, 3.0};
  double up[2] = {3.0, 1e30};
  CHECK(KXloadLPData(model, 2, 2, -1, 0.0, c, b, types, 4, beg, NULL, coef, rows, NULL, up) == 0);

  int n = 0;
  CHECK(KXgetInfo(model, KX_IINFO_NUM_VARS, &n) == 0 && n == 2);
  CHECK(KXgetInfo(model, KX_IINFO_NUM_NONZ, &n) == 0 && n == 4);
  double x[2];
  CHECK(KXgetPrimalSolution(model, x) == KXERR_INFO_NOT_AVAILABLE);

  char msg[1024];
  CHECK(KXgetErrorMessage(env, KXERR_ILLEGAL_NULL_POINTER, msg) == 0);
  CHECK(strcmp(msg, "Illegal NULL pointer as argument.") == 0);

  CHECK(KXdeleteModel(&model) == 0 && model == NULL);
  CHECK(KXdeleteEnv(&env) == 0 && env == NULL);
  if (failures == 0) printf("c_api: all checks passed\n");
  return failures == 0 ? 0 : 1;
}
