// Name hash table: a chained table of prime size over its own copy of the names.
// Used by the MPS reader for rows and columns and by the model for name lookups.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

struct KXnameHash {
  std::vector<int> head;      // bucket -> first entry, -1 empty
  std::vector<int> next;      // entry -> next entry in its chain, -1 last
  std::vector<int> value;     // entry -> the index the caller gave
  std::vector<uint32_t> off;  // entry -> start of its name in text (names end with a 0)
  std::vector<char> text;

  int count() const { return static_cast<int>(next.size()); }
  const char *name(int entry) const { return text.data() + off[static_cast<size_t>(entry)]; }
  size_t name_len(int entry) const {
    size_t e = static_cast<size_t>(entry);
    return (e + 1 < off.size() ? off[e + 1] : text.size()) - off[e] - 1;
  }
  std::string_view view(int entry) const { return std::string_view(name(entry), name_len(entry)); }
};

namespace kxi {

// Shift-and-fold hash of a name (bytes taken as signed char).
uint32_t name_hash(std::string_view s);
// The first prime of the built-in table not below n (the last one when all are below).
uint32_t hash_prime(uint32_t n);

// Start an empty table sized for about `expected` names.
void hash_init(KXnameHash &h, int expected);
// Add a name with its value; returns the entry index, or -1 when the name is there already.
int hash_insert(KXnameHash &h, std::string_view s, int val);
// The value stored with a name, or -1.
int hash_lookup(const KXnameHash &h, std::string_view s);

}  // namespace kxi
