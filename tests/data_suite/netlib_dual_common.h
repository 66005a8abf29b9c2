// netlib_dual_common.h - one dual-simplex solve of a netlib model with chosen
// parameters, checked against the manifest and the optimality conditions.
#pragma once

#include "simplex/netlib_support.h"

namespace kxtest {

struct DualRun {
  int status = 0;
  double iters = 0;
};

// Read a netlib model into a fresh model of em, presolve off; false when it
// cannot be read.
inline bool read_netlib(EnvModel &em, const NetlibCase &c) {
  if (!read_netlib_file(em, c)) return false;
  KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
  return true;
}

inline double iterations(pModel model) {
  int it = 0;
  KXgetInfo(model, KX_IINFO_SIM_ITER, &it);
  return it;
}

// Check an optimal answer of a feasible model against its manifest optimum.
inline void check_netlib_optimum(pModel model, const NetlibCase &c, const std::string &what) {
  const LPCheck k = check_lp_solution(model);
  const double obj = k.obj - model->objConst;
  EXPECT_LE(std::fabs(obj - c.optimum) / std::max(1.0, std::fabs(c.optimum)), 1e-6)
      << what << " objective " << obj << " reference " << c.optimum;
  EXPECT_LE(k.pinf, 1e-7) << what;
  EXPECT_LE(k.dinf, 1e-7) << what;
  EXPECT_LE(k.djErr, 1e-7) << what;
}

// Solve with a method and the dual's parameters (-2: leave as is) and check.
// A phase given (KX_IPARAM_SPLEX_DUAL_PHASE) runs with presolve off, so that
// it meets the model as it stands.
inline DualRun dual_solve_and_check(const NetlibCase &c, int method, int dratio, int dpricing, int dphase = -2) {
  DualRun r;
  EnvModel em;
  if (!read_netlib(em, c)) return r;
  if (dratio > -2) KXsetModelIntParameter(em.model, KX_IPARAM_LP_DRATIO, dratio);
  if (dpricing > -2) KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DPRICING, dpricing);
  if (dphase > -2) {
    KXsetModelIntParameter(em.model, KX_IPARAM_SPLEX_DUAL_PHASE, dphase);
    KXsetModelIntParameter(em.model, KX_IPARAM_LP_PRELEVEL, 0);
  }
  const std::string what = c.name + " method " + std::to_string(method) + " dratio " +
                           std::to_string(dratio) + " dpricing " + std::to_string(dpricing) + " dphase " +
                           std::to_string(dphase);
  EXPECT_EQ(KXoptimize(em.model, method, &r.status), 0) << what;
  r.iters = iterations(em.model);
  if (c.set == "infeasible") {
    EXPECT_TRUE(r.status == KX_STATUS_INFEASIBLE || r.status == KX_STATUS_INFORUNB) << what << " " << r.status;
    return r;
  }
  EXPECT_EQ(r.status, KX_STATUS_BASIC_OPTIMAL) << what;
  if (r.status == KX_STATUS_BASIC_OPTIMAL) check_netlib_optimum(em.model, c, what);
  return r;
}

}  // namespace kxtest
