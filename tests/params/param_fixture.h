// Shared fixture of the parameter tests: a fresh environment and model, and a
// private temporary directory for files.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/kx.h"

struct ExpectedRow {
  int constant;  // the value of the korva.h constant
  int id;
  const char *name;
  char kind;   // 'I' or 'D'
  char level;  // 'B', 'M', 'O', 'S'
  double def;
  double pubLo, pubHi;
  bool hasInside;
  double inside;
  double outside;
  int outsideCode;  // 0: no value is refused
};

inline const std::vector<ExpectedRow> &expected_rows() {
  static const std::vector<ExpectedRow> rows = {
#include "params/param_expect.inc"
  };
  return rows;
}

class ParamFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    int rc = -1;
    env = KXcreateEnv(&rc);
    ASSERT_EQ(rc, 0);
    ASSERT_NE(env, nullptr);
    model = KXcreateModel(env, &rc);
    ASSERT_EQ(rc, 0);
    ASSERT_NE(model, nullptr);
  }
  void TearDown() override {
    if (env) KXdeleteEnv(&env);
    if (!dir.empty()) {
      for (const std::string &f : created) std::remove(f.c_str());
      rmdir(dir.c_str());
    }
  }
  pModel new_model() {
    int rc = -1;
    pModel m = KXcreateModel(env, &rc);
    EXPECT_EQ(rc, 0);
    return m;
  }
  // A path in the test's own temporary directory (made on first use).
  std::string path(const std::string &name) {
    if (dir.empty()) {
      const char *base = std::getenv("TMPDIR");
      std::string tmpl = std::string(base && *base ? base : "/tmp") + "/kxparXXXXXX";
      std::vector<char> buf(tmpl.begin(), tmpl.end());
      buf.push_back('\0');
      if (!mkdtemp(buf.data())) ADD_FAILURE() << "mkdtemp failed";
      dir = buf.data();
    }
    std::string p = dir + "/" + name;
    created.push_back(p);
    return p;
  }
  std::string write_text(const std::string &name, const std::string &text) {
    std::string p = path(name);
    std::ofstream(p, std::ios::binary) << text;
    return p;
  }
  static std::string slurp(const std::string &p) {
    std::ifstream in(p, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
  }

  pEnv env = nullptr;
  pModel model = nullptr;
  std::string dir;
  std::vector<std::string> created;
};

// Typed reads and writes by kind, at either level.
inline int get_value(pEnv env, pModel model, const ExpectedRow &r, double *v) {
  if (r.kind == 'I') {
    int iv = 0;
    int rc = model ? KXgetModelIntParameter(model, r.id, &iv) : KXgetEnvIntParameter(env, r.id, &iv);
    *v = iv;
    return rc;
  }
  return model ? KXgetModelDouParameter(model, r.id, v) : KXgetEnvDouParameter(env, r.id, v);
}
inline int set_value(pEnv env, pModel model, const ExpectedRow &r, double v) {
  if (r.kind == 'I')
    return model ? KXsetModelIntParameter(model, r.id, static_cast<int>(v))
                 : KXsetEnvIntParameter(env, r.id, static_cast<int>(v));
  return model ? KXsetModelDouParameter(model, r.id, v) : KXsetEnvDouParameter(env, r.id, v);
}
