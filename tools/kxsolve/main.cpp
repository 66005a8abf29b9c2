// kxsolve: read a model file and report on it, over the public API only.
//
//   kxsolve [options] MODEL
//     --method auto|primal|dual|barrier   --presolve on|off   --time-limit SECONDS
//     --params FILE   --print-level N   --write-solution FILE   --write-mps FILE
//     --solution-form report|compact|ranges   --write-basis FILE   --basis-form bin|mps|text
//   MODEL ending in .lp or .kvx (optionally .gz) is read as LP or KORVA text, else as MPS.
//
// The last line printed is always
//   status=<...> objective=<%.12e or none> iterations=<n> seconds=<%.3f>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "korva.h"

namespace {

struct Options {
  int method = KX_METHOD_FREE;
  int presolve = -1;  // -1: leave the parameter as it is
  double timeLimit = -1.0;
  const char *params = nullptr;
  int printLevel = -1;
  const char *writeSolution = nullptr;
  int solutionForm = -1;  // KX_SOLREPORT_ value; -1 leaves the parameter as it is
  const char *writeBasis = nullptr;
  int basisForm = KX_BASFILE_BIN;
  const char *writeMps = nullptr;
  const char *model = nullptr;
};

std::chrono::steady_clock::time_point g_start;

double seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - g_start).count();
}

void last_line(const char *status, bool haveObj, double obj, long iters) {
  char objText[64];
  if (haveObj)
    std::snprintf(objText, sizeof objText, "%.12e", obj);
  else
    std::snprintf(objText, sizeof objText, "none");
  std::printf("status=%s objective=%s iterations=%ld seconds=%.3f\n", status, objText, iters,
              seconds());
  std::fflush(stdout);
}

int usage(const char *why) {
  std::fprintf(stderr, "kxsolve: %s\n", why);
  std::fprintf(stderr,
               "usage: kxsolve [--method auto|primal|dual|barrier] [--presolve on|off]\n"
               "               [--time-limit SECONDS] [--params FILE] [--print-level N]\n"
               "               [--write-solution FILE] [--write-mps FILE]\n"
               "               [--solution-form report|compact|ranges] [--write-basis FILE]\n"
               "               [--basis-form bin|mps|text] MODEL\n");
  last_line("error", false, 0.0, 0);
  return 2;
}

// Report a library error with its catalogue text; the last line says "error".
int fail(pEnv env, int code, const char *what) {
  char text[1024] = "";
  if (env) KXgetErrorMessage(env, code, text);
  std::fprintf(stderr, "kxsolve: %s: error %d: %s\n", what, code, text);
  if ((code == KXERR_BAD_MPS_FILE || code == KXERR_ERROR_IN_INPUT) && env) {
    int line = 0;
    char lineText[1024] = "";
    if (KXgetFileError(env, &line, lineText) == 0)
      std::fprintf(stderr, "kxsolve: line %d: %s\n", line, lineText);
  }
  last_line("error", false, 0.0, 0);
  return 1;
}

void print_log(pModel, char *text, void *) { std::fputs(text, stdout); }

bool parse(int argc, char **argv, Options &o, std::string &err) {
  for (int i = 1; i < argc; ++i) {
    std::string a = argv[i];
    auto value = [&](const char *&out) -> bool {
      if (i + 1 >= argc) {
        err = "missing value for " + a;
        return false;
      }
      out = argv[++i];
      return true;
    };
    const char *v = nullptr;
    if (a == "--method") {
      if (!value(v)) return false;
      std::string s = v;
      if (s == "auto") o.method = KX_METHOD_FREE;
      else if (s == "primal") o.method = KX_METHOD_PSIMPLEX;
      else if (s == "dual") o.method = KX_METHOD_DSIMPLEX;
      else if (s == "barrier") o.method = KX_METHOD_BARRIER;
      else {
        err = "bad method " + s;
        return false;
      }
    } else if (a == "--presolve") {
      if (!value(v)) return false;
      std::string s = v;
      if (s == "on") o.presolve = 1;
      else if (s == "off") o.presolve = 0;
      else {
        err = "bad presolve value " + s;
        return false;
      }
    } else if (a == "--time-limit") {
      if (!value(v)) return false;
      char *end = nullptr;
      o.timeLimit = std::strtod(v, &end);
      if (!end || *end || o.timeLimit < 0) {
        err = std::string("bad time limit ") + v;
        return false;
      }
    } else if (a == "--params") {
      if (!value(o.params)) return false;
    } else if (a == "--print-level") {
      if (!value(v)) return false;
      char *end = nullptr;
      long n = std::strtol(v, &end, 10);
      if (!end || *end || n < 0) {
        err = std::string("bad print level ") + v;
        return false;
      }
      o.printLevel = static_cast<int>(n);
    } else if (a == "--write-solution") {
      if (!value(o.writeSolution)) return false;
    } else if (a == "--solution-form") {
      if (!value(v)) return false;
      std::string s = v;
      if (s == "report") o.solutionForm = KX_SOLREPORT_FULL;
      else if (s == "compact") o.solutionForm = KX_SOLREPORT_COMPACT;
      else if (s == "ranges") o.solutionForm = KX_SOLREPORT_RANGES;
      else {
        err = "bad solution form " + s;
        return false;
      }
    } else if (a == "--write-basis") {
      if (!value(o.writeBasis)) return false;
    } else if (a == "--basis-form") {
      if (!value(v)) return false;
      std::string s = v;
      if (s == "bin") o.basisForm = KX_BASFILE_BIN;
      else if (s == "mps") o.basisForm = KX_BASFILE_MPS;
      else if (s == "text") o.basisForm = KX_BASFILE_TXT;
      else {
        err = "bad basis form " + s;
        return false;
      }
    } else if (a == "--write-mps") {
      if (!value(o.writeMps)) return false;
    } else if (a.size() > 1 && a[0] == '-') {
      err = "unknown option " + a;
      return false;
    } else if (o.model) {
      err = "more than one model file";
      return false;
    } else {
      o.model = argv[i];
    }
  }
  if (!o.model) {
    err = "no model file";
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char **argv) {
  g_start = std::chrono::steady_clock::now();
  Options o;
  std::string err;
  if (!parse(argc, argv, o, err)) return usage(err.c_str());

  int rc = 0;
  pEnv env = KXcreateEnv(&rc);
  if (!env) return fail(nullptr, rc, "cannot create the environment");
  pModel model = KXcreateModel(env, &rc);
  if (!model) {
    int code = fail(env, rc, "cannot create a model");
    KXdeleteEnv(&env);
    return code;
  }
  auto finish = [&](int code) {
    KXdeleteModel(&model);
    KXdeleteEnv(&env);
    return code;
  };

  if (o.params && (rc = KXreadModelParameter(model, o.params)) != 0)
    return finish(fail(env, rc, "cannot read the parameter file"));
  if (o.printLevel >= 0) {
    KXsetModelLogfunc(model, print_log, nullptr);
    if ((rc = KXsetModelIntParameter(model, KX_IPARAM_LP_PRINTLEVEL, o.printLevel)) != 0)
      return finish(fail(env, rc, "cannot set the print level"));
  }
  if (o.presolve >= 0 &&
      (rc = KXsetModelIntParameter(model, KX_IPARAM_LP_PRELEVEL, o.presolve ? 126 : 0)) != 0)
    return finish(fail(env, rc, "cannot set the presolve level"));
  if (o.timeLimit >= 0 &&
      (rc = KXsetModelDouParameter(model, KX_DPARAM_SOLVER_TIMLMT, o.timeLimit)) != 0)
    return finish(fail(env, rc, "cannot set the time limit"));

  // The layout is told by trying: fixed first (a line that does not fit the
  // columns is split at blanks), then free.
  auto ends = [&](const char *tail) {
    std::string m = o.model;
    if (m.size() > 3 && m.compare(m.size() - 3, 3, ".gz") == 0) m.resize(m.size() - 3);
    return m.size() >= std::strlen(tail) && m.compare(m.size() - std::strlen(tail), std::string::npos, tail) == 0;
  };
  if (ends(".lp"))
    rc = KXreadLPFile(model, o.model);
  else if (ends(".kvx"))
    rc = KXreadKORVAFile(model, o.model);
  else
    rc = KXreadMPSFile(model, o.model, KX_MPS_FIXED);
  if (rc == KXERR_BAD_MPS_FILE) {
    KXclearModel(model);
    rc = KXreadMPSFile(model, o.model, KX_MPS_FREE);
  }
  if (rc) return finish(fail(env, rc, "cannot read the model"));

  int nVars = 0, nCons = 0, nCones = 0, nNonz = 0, nQC = 0, nBin = 0, nInt = 0;
  KXgetDimensions(model, &nVars, &nCons, &nCones, &nNonz, &nQC, nullptr, nullptr, nullptr,
                  nullptr, nullptr, nullptr);
  KXgetVarTypeCount(model, &nBin, &nInt, nullptr);
  std::printf("model %s\n", o.model);
  std::printf("rows %d columns %d nonzeros %d\n", nCons, nVars, nNonz);
  if (nBin || nInt) std::printf("binaries %d integers %d\n", nBin, nInt);
  if (nQC) std::printf("quadratic nonzeros %d\n", nQC);
  if (nCones) std::printf("cones %d\n", nCones);

  if (o.writeMps && (rc = KXwriteMPSFile(model, o.writeMps, KX_MPS_FREE)) != 0)
    return finish(fail(env, rc, "cannot write the MPS file"));
  if (o.solutionForm >= 0 &&
      (rc = KXsetModelIntParameter(model, KX_IPARAM_SOL_REPORT_STYLE, o.solutionForm)) != 0)
    return finish(fail(env, rc, "cannot set the solution form"));

  // Solve, and map the model status to the word of the last line.
  int status = KX_STATUS_UNKNOWN;
  rc = KXoptimize(model, o.method, &status);
  const char *word = "unknown";
  bool haveObj = false;
  switch (status) {
    case KX_STATUS_OPTIMAL:
    case KX_STATUS_BASIC_OPTIMAL: word = "optimal"; haveObj = true; break;
    case KX_STATUS_INFEASIBLE: word = "infeasible"; break;
    case KX_STATUS_UNBOUNDED: word = "unbounded"; break;
    case KX_STATUS_INFORUNB: word = "infeasible_or_unbounded"; break;
    case KX_STATUS_FEASIBLE:
    case KX_STATUS_LOCAL_OPTIMAL: word = "feasible"; haveObj = true; break;
    default: break;
  }
  if (rc != 0 && rc != KXERR_ITER_LIMIT && rc != KXERR_TIME_LIMIT && rc != KXERR_USER_INTERRUPT) {
    char text[1024] = "";
    KXgetErrorMessage(env, rc, text);
    std::fprintf(stderr, "kxsolve: optimize: error %d: %s\n", rc, text);
    word = "error";
    haveObj = false;
  }
  if (o.writeSolution) {
    int wrc = KXwriteSolution(model, o.writeSolution);
    if (wrc) {
      char text[1024] = "";
      KXgetErrorMessage(env, wrc, text);
      std::fprintf(stderr, "kxsolve: write solution: error %d: %s\n", wrc, text);
    }
  }
  if (o.writeBasis) {
    int wrc = KXwriteBasis(model, o.writeBasis, -o.basisForm);
    if (wrc) {
      char text[1024] = "";
      KXgetErrorMessage(env, wrc, text);
      std::fprintf(stderr, "kxsolve: write basis: error %d: %s\n", wrc, text);
    }
  }
  double obj = 0.0;
  if (haveObj && KXgetObjective(model, &obj) != 0) haveObj = false;
  int iters = 0;
  KXgetInfo(model, KX_IINFO_SIM_ITER, &iters);
  last_line(word, haveObj, obj, iters);
  return finish(rc == 0 ? 0 : 1);
}
