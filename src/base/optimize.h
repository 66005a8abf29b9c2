// optimize.h - the optimize driver's internal calls, for the solvers that
// reach LP solves without the public entry point, and for the tests.
#pragma once

#include "base/kx.h"

int KXoptimizeLP(Model *model, int method);
int ydo_the_lp_opt(Model *model, int method);
int KXtrivialOptimizer(Model *model);
// Event of a finished run (0 none; 1 to 7 as the retry chain knows them).
int do_the_event_check(Model *model, int result, double iterMade);
// Action of the retry chain for an event at a level: parameters and the method.
int do_the_strategy(Model *model, int event, int *level, int *method);
int pick_imethod_lp(Model *model, int wanted, int *method);
