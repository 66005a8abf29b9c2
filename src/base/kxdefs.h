// Shared numeric constants, error propagation and the C-boundary guard.
#pragma once

#include <new>
#include <exception>

namespace kx {

// Infinities and tolerances used across the solvers.  Parameters may override
// the working values; these are the library's defaults and hard limits.
inline constexpr double kInfinity = 1e30;          // a bound at or beyond this is infinite
inline constexpr double kBoundInfinity = 1e15;     // bounds beyond this are treated as free in the simplex
inline constexpr double kFeasTol = 1e-7;           // primal feasibility tolerance
inline constexpr double kOptTol = 1e-7;            // dual (optimality) tolerance
inline constexpr double kTolFloor = 5e-9;          // smallest working tolerance
inline constexpr double kTolCeiling = 5e-5;        // largest working tolerance
inline constexpr double kPivotTol = 1e-8;          // smallest acceptable pivot
inline constexpr double kLargePivot = 1e-5;        // a pivot this large is never rejected
inline constexpr double kZeroCoef = 1e-16;         // coefficients below this are zero

// Codes used inside the library (the public names are in korva.h).
inline constexpr int kOk = 0;
inline constexpr int kErrMemory = 2001;
inline constexpr int kErrInternal = 2015;

}  // namespace kx

// Return the code of an internal call when it is not 0.
#define KX_CALL(expr)                    \
  do {                                   \
    int kx_call_rc_ = (expr);            \
    if (kx_call_rc_ != 0) return kx_call_rc_; \
  } while (0)

namespace kx {

// Run the body of an exported function; no exception leaves the library.
template <class F>
inline int guard(F &&body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc &) {
    return kErrMemory;
  } catch (...) {
    return kErrInternal;
  }
}

// The same for functions that return a handle and their code through a pointer.
template <class T, class F>
inline T guard_handle(int *code, F &&body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc &) {
    if (code) *code = kErrMemory;
  } catch (...) {
    if (code) *code = kErrInternal;
  }
  return T{};
}

}  // namespace kx
