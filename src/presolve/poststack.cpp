// The post-solve stack: allocation, record framing and reading from the top.
#include "presolve/poststack.h"

#include <new>

#include "presolve/presolve.h"

int allocate_poststack(PostStack **ps, long size) {
  *ps = nullptr;
  try {
    PostStack *p = new PostStack();
    if (size > 0) {
      p->stack_i.reserve(static_cast<size_t>(size));
      p->stack_r.reserve(static_cast<size_t>(size));
    }
    *ps = p;
  } catch (const std::bad_alloc &) {
    return 2001;
  }
  return 0;
}

void deallocate_poststack(PostStack **ps) {
  if (!ps || !*ps) return;
  delete *ps;
  *ps = nullptr;
}

void get_post_stack_space(PostStack *ps, size_t ni, size_t nr) {
  if (ps->stack_i.capacity() < ps->stack_i.size() + ni)
    ps->stack_i.reserve(2 * (ps->stack_i.size() + ni));
  if (ps->stack_r.capacity() < ps->stack_r.size() + nr)
    ps->stack_r.reserve(2 * (ps->stack_r.size() + nr));
}

void ps_end(PostStack *ps, int kind) {
  int ni = static_cast<int>(ps->stack_i.size() - ps->recStartI);
  int nr = static_cast<int>(ps->stack_r.size() - ps->recStartR);
  ps->stack_i.push_back(nr);
  ps->stack_i.push_back(ni);
  ps->stack_i.push_back(kind);
  ps->nRecords++;
}

bool ps_read_down(const PostStack *ps, size_t *ti, size_t *tr, PsRecord *rec, bool *bad) {
  *bad = false;
  if (*ti == 0) {
    if (*tr != 0) *bad = true;
    return false;
  }
  if (*ti < 3) {
    *bad = true;
    return false;
  }
  const int *si = ps->stack_i.data();
  int kind = si[*ti - 1], ni = si[*ti - 2], nr = si[*ti - 3];
  if (ni < 0 || nr < 0 || static_cast<size_t>(ni) + 3 > *ti || static_cast<size_t>(nr) > *tr ||
      kind == kPsInvalid) {
    *bad = true;
    return false;
  }
  *ti -= 3 + static_cast<size_t>(ni);
  *tr -= static_cast<size_t>(nr);
  rec->kind = kind;
  rec->ni = ni;
  rec->nr = nr;
  rec->iv = si + *ti;
  rec->rv = ps->stack_r.data() + *tr;
  return true;
}
