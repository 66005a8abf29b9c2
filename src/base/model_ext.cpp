// Data a model holds beyond the plain LP: variable types, sets, cones,
// quadratic terms, names, priorities and start points.
#include "base/kx.h"

void kxi_clear_extended(Model *model) { kxi_free_name_hashes(model); }

void kxi_free_name_hashes(Model *) {}

int kxi_has_quadratic(const Model *) { return 0; }
