// Read every netlib file with the MPS reader and print the reading speed.
// Usage: bench_mps [DATA_DIR]   (default: $KORVA_DATA_DIR, else ../shared/data)
// Speed is the uncompressed size over the best of three reads.
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "korva.h"

namespace fs = std::filesystem;

static long uncompressed_size(const std::string &path) {
  gzFile f = gzopen(path.c_str(), "rb");
  if (!f) return -1;
  std::vector<char> buf(1 << 18);
  long total = 0;
  int got;
  while ((got = gzread(f, buf.data(), static_cast<unsigned>(buf.size()))) > 0) total += got;
  gzclose(f);
  return total;
}

int main(int argc, char **argv) {
  std::string dir = argc > 1 ? argv[1] : "";
  if (dir.empty()) {
    const char *e = std::getenv("KORVA_DATA_DIR");
    dir = e ? e : "../shared/data";
  }
  std::vector<fs::path> files;
  for (const char *sub : {"netlib/feasible", "netlib/infeasible"}) {
    fs::path p = fs::path(dir) / sub;
    if (!fs::is_directory(p)) continue;
    for (auto &e : fs::directory_iterator(p))
      if (e.path().extension() == ".gz") files.push_back(e.path());
  }
  if (files.empty()) {
    std::printf("no netlib files under %s\n", dir.c_str());
    return 1;
  }
  std::sort(files.begin(), files.end(), [](const fs::path &a, const fs::path &b) {
    return fs::file_size(a) > fs::file_size(b);
  });
  int rc = 0;
  pEnv env = KXcreateEnv(&rc);
  std::printf("%-14s %10s %8s %8s %9s %8s\n", "model", "bytes", "rows", "cols", "ms", "MB/s");
  double totalBytes = 0, totalSec = 0;
  for (auto &f : files) {
    long bytes = uncompressed_size(f.string());
    double best = 1e30;
    int m = 0, n = 0;
    for (int rep = 0; rep < 3; ++rep) {
      pModel model = KXcreateModel(env, &rc);
      auto t0 = std::chrono::steady_clock::now();
      rc = KXreadMPSFile(model, f.c_str(), KX_MPS_FIXED);
      double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
      best = std::min(best, s);
      KXgetDimensions(model, &n, &m, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                      nullptr, nullptr, nullptr);
      KXdeleteModel(&model);
      if (rc) break;
    }
    std::string name = f.filename().string();
    name = name.substr(0, name.find(".mps"));
    if (rc) {
      std::printf("%-14s read error %d\n", name.c_str(), rc);
      continue;
    }
    totalBytes += static_cast<double>(bytes);
    totalSec += best;
    std::printf("%-14s %10ld %8d %8d %9.2f %8.1f\n", name.c_str(), bytes, m, n, best * 1e3,
                static_cast<double>(bytes) / 1e6 / best);
  }
  std::printf("%-14s %10.0f %8s %8s %9.2f %8.1f\n", "total", totalBytes, "", "", totalSec * 1e3,
              totalBytes / 1e6 / totalSec);
  KXdeleteEnv(&env);
  return 0;
}
