// The built-in message catalogue.
#pragma once

struct KXDefaultMessage {
  int code;
  const char *text;
};
extern const KXDefaultMessage kDefaultMessages[];
extern const int kNumDefaultMessages;
