// The message catalogue, the message file, file errors and the row error.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

#include "base/kx.h"
#include "support/kx_test_util.h"

namespace {

std::string message(pEnv env, int code, int *rc = nullptr) {
  char buf[1024];
  int r = KXgetErrorMessage(env, code, buf);
  if (rc) *rc = r;
  return buf;
}

// Runs a test body with the working directory and CKORVA set, restoring both.
struct Workspace {
  kxtest::TempDir dir;
  std::string oldCwd;
  std::string oldCkorva;
  bool hadCkorva = false;
  Workspace() {
    char buf[4096];
    oldCwd = getcwd(buf, sizeof buf) ? buf : ".";
    if (const char *e = std::getenv("CKORVA")) {
      hadCkorva = true;
      oldCkorva = e;
    }
    unsetenv("CKORVA");
    EXPECT_EQ(chdir(dir.path.c_str()), 0);
  }
  ~Workspace() {
    EXPECT_EQ(chdir(oldCwd.c_str()), 0);
    if (hadCkorva) {
      setenv("CKORVA", oldCkorva.c_str(), 1);
    } else {
      unsetenv("CKORVA");
    }
  }
  void write(const std::string &name, const std::string &text) {
    std::ofstream(dir.file(name)) << text;
  }
};

}  // namespace

TEST(Messages, DefaultCatalogue) {
  Workspace ws;  // an empty folder: no kxerr.txt
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  int rc = -1;
  EXPECT_EQ(message(env, 0, &rc), "No errors.");
  EXPECT_EQ(rc, 0);
  EXPECT_EQ(message(env, 2001, &rc), "Could not allocate enough memory.");
  EXPECT_EQ(message(env, 2015), "Internal error -- please contact KORVA Systems..");
  EXPECT_EQ(message(env, 2045),
            "The specified basis status for  a constraint's slack//surplus is invalid.");
  EXPECT_EQ(message(env, 2383), " No chance-constraints were loaded.");
  // 2022 has no text: empty and success.
  EXPECT_EQ(message(env, 2022, &rc), "");
  EXPECT_EQ(rc, 0);
  // Outside 1..2383: "Unknown error." and 2051, even for 2384 which has a text.
  for (int code : {2384, -1, 2385, 100000}) {
    SCOPED_TRACE(code);
    EXPECT_EQ(message(env, code, &rc), "Unknown error.");
    EXPECT_EQ(rc, KXERR_ERRCODE_OUT_OF_RANGE);
  }
  EXPECT_EQ(KXgetErrorMessage(env, 2001, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  // The buffer is shrunk to what it holds.
  EXPECT_EQ(env->msgTextCap, env->msgTextUsed + 1);
  // A null env builds a private catalogue from the working directory.
  EXPECT_EQ(message(nullptr, 2010), "Illegal NULL pointer as argument.");
  KXdeleteEnv(&env);
}

TEST(Messages, FileEntriesAreTakenInOrderWhateverTheirNumbers) {
  Workspace ws;
  ws.write("kxerr.txt", "/* header */ {2001,\"first\"},\n  junk {17, \"second text\"}\n{5,\"third\"} tail");
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  EXPECT_EQ(message(nullptr, 2), "third");  // the private catalogue reads the same file
  KXdeleteEnv(&env);
  env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  EXPECT_EQ(message(env, 1), "second text");
  EXPECT_EQ(message(env, 2), "third");
  EXPECT_EQ(message(env, 2001), "");  // the file's own numbers are ignored
  EXPECT_EQ(message(env, 3), "");
  EXPECT_EQ(env->msgIndex[0], 0);
  EXPECT_STREQ(env->msgText, "first");
  KXdeleteEnv(&env);
}

TEST(Messages, EmptyFileGivesAnEmptyCatalogue) {
  Workspace ws;
  ws.write("kxerr.txt", "");
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  EXPECT_EQ(message(env, 2001), "");
  EXPECT_EQ(message(env, 0), "No errors.");
  KXdeleteEnv(&env);
}

TEST(Messages, LongFileIsCutAt2385Entries) {
  Workspace ws;
  std::string text;
  char entry[64];
  for (int i = 0; i < 2500; ++i) {
    std::snprintf(entry, sizeof entry, "{%d,\"m%d\"}\n", i, i);
    text += entry;
  }
  ws.write("kxerr.txt", text);
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  EXPECT_EQ(message(env, 2383), "m2383");
  EXPECT_EQ(env->msgIndex[2384], env->msgTextUsed - 6);  // "m2384" is the last text read
  EXPECT_EQ(std::string(env->msgText + env->msgIndex[2384]), "m2384");
  KXdeleteEnv(&env);
}

TEST(Messages, CkorvaJoinsWithABackslashSoARealFolderIsNotFound) {
  Workspace ws;
  // kxerr.txt exists inside the folder that CKORVA names, but the path is
  // "<folder>\kxerr.txt", which names no file here: the defaults are used.
  ws.write("kxerr.txt", "{0,\"only\"}");
  setenv("CKORVA", ws.dir.path.c_str(), 1);
  int err = 0;
  pEnv env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  EXPECT_EQ(message(env, 2001), "Could not allocate enough memory.");
  KXdeleteEnv(&env);
  // A file whose name really is "<folder>\kxerr.txt" is found.
  std::string odd = ws.dir.path + "/sub";
  setenv("CKORVA", odd.c_str(), 1);
  ws.write("sub\\kxerr.txt", "{0,\"a\"}{1,\"b\"}");
  env = KXcreateEnv(&err);
  ASSERT_NE(env, nullptr);
  EXPECT_EQ(message(env, 1), "b");
  EXPECT_EQ(message(env, 2001), "");
  KXdeleteEnv(&env);
}

TEST(Messages, FileErrorAndRowError) {
  kxtest::EnvModel em;
  int line = -1;
  char text[1024] = "x";
  EXPECT_EQ(KXgetFileError(em.env, &line, text), 0);
  EXPECT_EQ(line, 0);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(KXgetFileError(nullptr, &line, text), 0);
  kxi_set_file_error(em.env, 42, "ROWS bad line\r\n");
  EXPECT_EQ(KXgetFileError(em.env, &line, text), 0);
  EXPECT_EQ(line, 42);
  EXPECT_STREQ(text, "ROWS bad line");

  int row = -1;
  EXPECT_EQ(KXgetErrorRowIndex(em.model, &row), KXERR_INFO_NOT_AVAILABLE);
  EXPECT_EQ(KXgetErrorRowIndex(em.model, nullptr), KXERR_ILLEGAL_NULL_POINTER);
  em.model->errRecord = ErrRecord{kErrKindRow, 7};
  EXPECT_EQ(KXgetErrorRowIndex(em.model, &row), 0);
  EXPECT_EQ(row, 7);
}
