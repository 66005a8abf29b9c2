// Fuzz KXreadMPSFile in both layouts: each input is written to a file and read.
//   fuzz_mps_read -max_total_time=600 fuzz/corpus
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "korva.h"

namespace {
pEnv g_env = nullptr;
std::string g_path;
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (!g_env) {
    int rc;
    g_env = KXcreateEnv(&rc);
    g_path = "/tmp/korva_fuzz_" + std::to_string(getpid()) + ".mps";
  }
  FILE *f = std::fopen(g_path.c_str(), "wb");
  if (!f) return 0;
  std::fwrite(data, 1, size, f);
  std::fclose(f);
  for (int format = 0; format < 4; ++format) {
    int rc;
    pModel m = KXcreateModel(g_env, &rc);
    if (KXreadMPSFile(m, g_path.c_str(), format) == 0) {
      int n = 0;
      KXgetInfo(m, KX_IINFO_NUM_VARS, &n);
    }
    KXdeleteModel(&m);
  }
  return 0;
}
