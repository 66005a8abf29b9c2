// The message catalogue: built at KXcreateEnv from kxerr.txt or the built-in
// texts, and the text lookup of an error code.
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/kx.h"
#include "base/messages_table.h"

namespace {

constexpr int kInitialTextBytes = 10000;

// Read a message file of entries {code,"text"}: the k-th entry becomes the
// text of code k whatever number it carries.  Returns -1 when the file cannot
// be opened, 2001 when memory runs out, else 0.
int KXreadMessageFile(const char *path, const struct stat *st, int **offsets, char **text,
                      int *bufferLength, int *usedLength) {
  FILE *f = std::fopen(path, "rb");
  if (!f) return -1;
  long size = static_cast<long>(st->st_size);
  char *buf = nullptr;
  if (CharMalloc(&buf, size + 1, KX_HERE) != 0) {
    std::fclose(f);
    return kx::kErrMemory;
  }
  size_t got = size > 0 ? std::fread(buf, 1, static_cast<size_t>(size), f) : 0;
  std::fclose(f);
  buf[got] = '\0';

  int rc = 0;
  int count = 0;
  char *p = std::strchr(buf, '{');
  while (p && count < kMsgTableSize) {
    char *comma = std::strchr(p + 1, ',');
    if (!comma) break;
    *comma = '\0';
    char *q1 = std::strchr(comma + 1, '"');
    if (!q1) break;
    char *q2 = std::strchr(q1 + 1, '"');
    if (!q2) break;
    *q2 = '\0';
    rc = check_buf_len(text, *offsets, bufferLength, q1 + 1, usedLength, count);
    if (rc != 0) break;
    ++count;
    char *close = std::strchr(q2 + 1, '}');
    if (!close) break;
    p = std::strchr(close + 1, '{');
  }
  std::free(buf);
  return rc;
}

}  // namespace

int check_buf_len(char **text, int *offsets, int *bufferLength, const char *message,
                  int *usedLength, int code) {
  int len = static_cast<int>(std::strlen(message));
  int needed = *usedLength + len + 1;
  if (needed + 1 >= *bufferLength) {
    int grown = needed + kInitialTextBytes;
    if (CharRealloc(text, grown, KX_HERE) != 0) return kx::kErrMemory;
    *bufferLength = grown;
  }
  offsets[code] = *usedLength;
  std::memcpy(*text + *usedLength, message, static_cast<size_t>(len) + 1);
  *usedLength += len + 1;
  return 0;
}

int KXloadDefaultMessages(int *bufferLength, int *usedLength, int **offsets, char **text) {
  for (int i = 0; i < kNumDefaultMessages; ++i) {
    KX_CALL(check_buf_len(text, *offsets, bufferLength, kDefaultMessages[i].text, usedLength,
                          kDefaultMessages[i].code));
  }
  return 0;
}

int KXsetErrorMessages(int *bufferLength, int *usedLength, int **offsets, char **text,
                       const char *path) {
  *bufferLength = 0;
  *usedLength = 0;
  *offsets = nullptr;
  *text = nullptr;
  if (IntMalloc(offsets, kMsgTableSize, KX_HERE) != 0) return kx::kErrMemory;
  for (int i = 0; i < kMsgTableSize; ++i) (*offsets)[i] = -1;
  if (CharMalloc(text, kInitialTextBytes, KX_HERE) != 0) return kx::kErrMemory;
  *bufferLength = kInitialTextBytes;

  struct stat st;
  int rc;
  if (path && ::stat(path, &st) == 0) {
    rc = KXreadMessageFile(path, &st, offsets, text, bufferLength, usedLength);
    if (rc < 0) rc = KXloadDefaultMessages(bufferLength, usedLength, offsets, text);
  } else {
    rc = KXloadDefaultMessages(bufferLength, usedLength, offsets, text);
  }
  if (rc != 0) return rc;
  if (*bufferLength - 1 > *usedLength) {
    if (CharRealloc(text, *usedLength + 1, KX_HERE) == 0) *bufferLength = *usedLength + 1;
  }
  return 0;
}

extern "C" KX_API int KXgetErrorMessage(pEnv env, int nErrorcode, char *pachMessage) {
  return kx::guard([&]() -> int {
    if (!pachMessage) return KXERR_ILLEGAL_NULL_POINTER;
    if (nErrorcode == 0) {
      std::strcpy(pachMessage, "No errors.");
      return 0;
    }
    std::strcpy(pachMessage, "Unknown error.");
    if (nErrorcode < 1 || nErrorcode > kMsgMaxCode) return KXERR_ERRCODE_OUT_OF_RANGE;
    pachMessage[0] = '\0';
    if (env) {
      if (env->msgIndex && env->msgIndex[nErrorcode] != -1)
        std::strcpy(pachMessage, env->msgText + env->msgIndex[nErrorcode]);
      return 0;
    }
    int cap = 0, used = 0;
    int *offsets = nullptr;
    char *text = nullptr;
    int rc = KXsetErrorMessages(&cap, &used, &offsets, &text, "kxerr.txt");
    if (rc == 0 && offsets[nErrorcode] != -1) std::strcpy(pachMessage, text + offsets[nErrorcode]);
    std::free(offsets);
    std::free(text);
    return rc;
  });
}

void kxi_set_file_error(Env *env, int line, const char *text) {
  if (!env) return;
  env->fileErrLine = line;
  if (!text) text = "";
  std::snprintf(env->fileErrText, sizeof env->fileErrText, "%s", text);
  // A line read from a file keeps its text but not its line end.
  size_t n = std::strlen(env->fileErrText);
  while (n > 0 && (env->fileErrText[n - 1] == '\n' || env->fileErrText[n - 1] == '\r'))
    env->fileErrText[--n] = '\0';
}

extern "C" KX_API int KXgetFileError(pEnv env, int *pnLinenum, char *pachLinetxt) {
  return kx::guard([&]() -> int {
    if (!env || env->fileErrText[0] == '\0') {
      if (pnLinenum) *pnLinenum = 0;
      if (pachLinetxt) pachLinetxt[0] = '\0';
      return 0;
    }
    if (pnLinenum) *pnLinenum = env->fileErrLine;
    if (pachLinetxt) std::strcpy(pachLinetxt, env->fileErrText);
    return 0;
  });
}

extern "C" KX_API int KXgetErrorRowIndex(pModel model, int *pnRow) {
  return kx::guard([&]() -> int {
    if (!model || !pnRow) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->errRecord.kind != kErrKindRow) return KXERR_INFO_NOT_AVAILABLE;
    *pnRow = model->errRecord.row;
    return 0;
  });
}
