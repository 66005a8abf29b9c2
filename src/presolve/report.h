// The report lines of the LP presolve.
#pragma once

#include "presolve/genpre.h"

// One line "tag ncons nvars nnzA seconds" with the live sizes of the view, when the
// print level asks and the model has a log function.
void print_newsize(const GenPre &g, int printLevel, const char *tag, KXtime start);
