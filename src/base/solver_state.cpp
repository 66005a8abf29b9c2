// Release of the live simplex state kept for warm starts.
#include "base/kx.h"
#include "simplex/glp.h"

void kxi_release_glp(Model *model) { freeglp(&model->glp); }
