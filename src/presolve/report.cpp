// The report lines of the LP presolve.
#include "presolve/report.h"

void print_newsize(const GenPre &g, int printLevel, const char *tag, KXtime start) {
  if (printLevel <= 0 || !g.model->logFunc) return;
  double secs = kx_now().wall - start.wall;
  kxi_log(g.model, "\n %s      %6u     %6u     %8u      %.2f", tag,
          static_cast<unsigned>(g.lp.nRowsLive), static_cast<unsigned>(g.lp.nColsLive),
          static_cast<unsigned>(g.lp.nnzLive), secs);
}
