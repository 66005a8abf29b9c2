// Replays the fuzzing seed corpora through the file readers: every file must
// give a code (0 or an error), leave a usable model, and never crash or leak.
// The long coverage-guided runs are the fuzz/ programs (-DKORVA_FUZZ=ON).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "korva.h"

#ifndef KORVA_SOURCE_DIR
#define KORVA_SOURCE_DIR "."
#endif

namespace fs = std::filesystem;

namespace {

std::vector<std::string> corpus(const std::string &sub) {
  std::vector<std::string> files;
  fs::path dir = fs::path(KORVA_SOURCE_DIR) / "fuzz" / sub;
  std::error_code ec;
  for (const auto &e : fs::directory_iterator(dir, ec))
    if (e.is_regular_file()) files.push_back(e.path().string());
  std::sort(files.begin(), files.end());
  return files;
}

// Read with `reader`; on failure the model must be unloaded and loadable again.
template <class Reader>
void replay(const std::string &sub, Reader reader) {
  std::vector<std::string> files = corpus(sub);
  if (files.empty()) GTEST_SKIP() << "no seed files in fuzz/" << sub;
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  for (const std::string &f : files) {
    SCOPED_TRACE(f);
    pModel m = KXcreateModel(env, &err);
    ASSERT_NE(m, nullptr);
    int rc = reader(m, f.c_str());
    int n = -1;
    if (rc == 0) {
      EXPECT_EQ(KXgetInfo(m, KX_IINFO_NUM_VARS, &n), 0);
      EXPECT_GE(n, 0);
    } else {
      EXPECT_GT(rc, 2000);
      // A failed read leaves no model behind: a plain LP loads afterwards.
      double c = 1.0, b = 1.0;
      char t = 'L';
      int beg[2] = {0, 1}, row = 0;
      double a = 1.0;
      EXPECT_EQ(KXloadLPData(m, 1, 1, 1, 0.0, &c, &b, &t, 1, beg, nullptr, &a, &row, nullptr,
                             nullptr),
                0);
    }
    KXdeleteModel(&m);
  }
  KXdeleteEnv(&env);
}

}  // namespace

TEST(CorpusReplay, Mps) {
  replay("corpus", [](pModel m, const char *f) {
    int rc = KXreadMPSFile(m, f, 0);
    if (rc != 0) {
      KXclearModel(m);
      rc = KXreadMPSFile(m, f, 1);
    }
    return rc;
  });
}

TEST(CorpusReplay, Lp) { replay("corpus_lp", [](pModel m, const char *f) { return KXreadLPFile(m, f); }); }

TEST(CorpusReplay, Korva) {
  replay("corpus_korva", [](pModel m, const char *f) { return KXreadKORVAFile(m, f); });
}
