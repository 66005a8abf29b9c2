// Fuzz the start point, priority and binary basis readers against a small
// fixed model: each input is written to a file and read by all three.
//   fuzz_start_read -max_total_time=600 fuzz/corpus_start
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "korva.h"

namespace {
pEnv g_env = nullptr;
std::string g_path;
const char kModel[] =
    "max\n obj: 2 x + 3 y + z\nst\n c1: x + y + z <= 4\n c2: x + 3 y >= 1\n c3: -2 <= x - z <= 5\n"
    "bounds\n x <= 3\n z free\nend\n";
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (!g_env) {
    int rc;
    g_env = KXcreateEnv(&rc);
    g_path = "/tmp/korva_fuzz_start_" + std::to_string(getpid());
  }
  FILE *f = std::fopen(g_path.c_str(), "wb");
  if (!f) return 0;
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  int rc;
  pModel m = KXcreateModel(g_env, &rc);
  if (KXreadLPStream(m, kModel, static_cast<int>(sizeof kModel - 1)) != 0) __builtin_trap();
  KXreadVarStartPoint(m, g_path.c_str());
  KXreadVarPriorities(m, g_path.c_str());
  KXreadBasis(m, g_path.c_str(), 1);
  int st;
  KXoptimize(m, KX_METHOD_FREE, &st);
  KXdeleteModel(&m);
  return 0;
}
