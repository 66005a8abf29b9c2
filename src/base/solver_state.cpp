// Release of the live simplex state kept for warm starts.
#include "base/kx.h"

void kxi_release_glp(Model *model) { model->glp = nullptr; }
