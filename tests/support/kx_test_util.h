// Helpers shared by the test suites.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "korva.h"

namespace kxtest {

// Folder of the shared data sets: KORVA_DATA_DIR, else the build's default.
std::string data_dir();
// True when `sub` exists under the data folder.
bool have_data(const std::string &sub);

// A fresh temporary folder, removed by the destructor.
struct TempDir {
  std::string path;
  TempDir();
  ~TempDir();
  std::string file(const std::string &name) const { return path + "/" + name; }
};

// An env and a model created together; both deleted at scope exit.
struct EnvModel {
  pEnv env = nullptr;
  pModel model = nullptr;
  EnvModel();
  ~EnvModel();
};

// A small LP in column form, for load tests.
struct SmallLP {
  int m = 0, n = 0, sense = 1;
  double objConst = 0.0;
  std::vector<double> c, b, l, u, coef;
  std::vector<char> types;
  std::vector<int> beg, len, rows;
  int nnzGiven = -1;  // when set, the count passed instead of the array length
  int nnz() const { return nnzGiven >= 0 ? nnzGiven : static_cast<int>(coef.size()); }
  int load(pModel model) const;
};

// max 2x + 3y s.t. x + y <= 4, x + 3y <= 6, 0 <= x <= 3, y >= 0.
SmallLP tiny_lp();

}  // namespace kxtest
