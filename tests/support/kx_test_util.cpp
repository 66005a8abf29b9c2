#include "kx_test_util.h"

#include <sys/stat.h>

#include <cstdio>
#include <filesystem>

#ifndef KORVA_DEFAULT_DATA_DIR
#define KORVA_DEFAULT_DATA_DIR "../shared/data"
#endif

namespace kxtest {

std::string data_dir() {
  const char *e = std::getenv("KORVA_DATA_DIR");
  return (e && *e) ? std::string(e) : std::string(KORVA_DEFAULT_DATA_DIR);
}

bool have_data(const std::string &sub) {
  struct stat st;
  return ::stat((data_dir() + "/" + sub).c_str(), &st) == 0;
}

TempDir::TempDir() {
  char tmpl[] = "/tmp/korva-test-XXXXXX";
  char *p = ::mkdtemp(tmpl);
  path = p ? p : "/tmp";
}

TempDir::~TempDir() {
  std::error_code ec;
  if (path != "/tmp") std::filesystem::remove_all(path, ec);
}

EnvModel::EnvModel() {
  int err = 0;
  env = KXcreateEnv(&err);
  if (env) model = KXcreateModel(env, &err);
}

EnvModel::~EnvModel() {
  if (model) KXdeleteModel(&model);
  if (env) KXdeleteEnv(&env);
}

int SmallLP::load(pModel model) const {
  return KXloadLPData(model, m, n, sense, objConst, c.data(), b.data(), types.data(), nnz(),
                      beg.data(), len.empty() ? nullptr : len.data(), coef.data(), rows.data(),
                      l.empty() ? nullptr : l.data(), u.empty() ? nullptr : u.data());
}

SmallLP tiny_lp() {
  SmallLP lp;
  lp.m = 2;
  lp.n = 2;
  lp.sense = -1;
  lp.c = {2.0, 3.0};
  lp.b = {4.0, 6.0};
  lp.types = {'L', 'L'};
  lp.beg = {0, 2, 4};
  lp.rows = {0, 1, 0, 1};
  lp.coef = {1.0, 1.0, 1.0, 3.0};
  lp.l = {0.0, 0.0};
  lp.u = {3.0, 1e30};
  return lp;
}

}  // namespace kxtest
