// Fuzz the LP and KORVA text readers (KORVA_FUZZ_KORVA picks the second) from
// memory.  A text that reads is written back in the same form and must read
// again to the same sizes.
//   fuzz_lp_read -max_total_time=600 fuzz/corpus_lp
//   fuzz_korva_read -max_total_time=600 fuzz/corpus_korva
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "korva.h"

namespace {
pEnv g_env = nullptr;
std::string g_path;

#ifdef KORVA_FUZZ_KORVA
int read_stream(pModel m, const char *t, int n) { return KXreadKORVAStream(m, t, n); }
int read_file(pModel m, const char *p) { return KXreadKORVAFile(m, p); }
int write_file(pModel m, const char *p) { return KXwriteKORVAFile(m, p); }
#else
int read_stream(pModel m, const char *t, int n) { return KXreadLPStream(m, t, n); }
int read_file(pModel m, const char *p) { return KXreadLPFile(m, p); }
int write_file(pModel m, const char *p) { return KXwriteLPFile(m, p); }
#endif

int dim(pModel m, int id) {
  int v = -1;
  KXgetInfo(m, id, &v);
  return v;
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (!g_env) {
    int rc;
    g_env = KXcreateEnv(&rc);
    g_path = "/tmp/korva_fuzz_text_" + std::to_string(getpid());
  }
  if (size > (1u << 20)) return 0;
  int rc;
  pModel m = KXcreateModel(g_env, &rc);
  if (read_stream(m, reinterpret_cast<const char *>(data), static_cast<int>(size)) == 0) {
    int wrc = write_file(m, g_path.c_str());
    if (wrc == 0) {
      pModel b = KXcreateModel(g_env, &rc);
      if (read_file(b, g_path.c_str()) != 0) __builtin_trap();
      if (dim(b, KX_IINFO_NUM_VARS) != dim(m, KX_IINFO_NUM_VARS) ||
          dim(b, KX_IINFO_NUM_CONS) != dim(m, KX_IINFO_NUM_CONS) ||
          dim(b, KX_IINFO_NUM_NONZ) != dim(m, KX_IINFO_NUM_NONZ))
        __builtin_trap();
      KXdeleteModel(&b);
    } else if (wrc != KXERR_NOT_SUPPORTED) {
      __builtin_trap();
    }
  }
  KXdeleteModel(&m);
  return 0;
}
