// info.cpp - the table of information ids and KXgetInfo, one call over all
// information items of a model, with the formatted form for reports.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "base/kx.h"
#include "base/query.h"
#include "presolve/presolve.h"

namespace {

const KXinfoRow kInfoRows[] = {
    {KX_IINFO_OBJSENSE, "KX_IINFO_OBJSENSE", 'I', "OBJSENSE", "%6d,"},
    {KX_IINFO_VER_MAJOR, "KX_IINFO_VER_MAJOR", 'I', "VER_MAJOR", "%6d,"},
    {KX_IINFO_VER_MINOR, "KX_IINFO_VER_MINOR", 'I', "VER_MINOR", "%6d,"},
    {KX_IINFO_VER_BUILD, "KX_IINFO_VER_BUILD", 'I', "VER_BUILD", "%6d,"},
    {KX_IINFO_VER_REVISION, "KX_IINFO_VER_REVISION", 'I', "VER_REVISION", "%6d,"},
    {KX_IINFO_NUM_CONS, "KX_IINFO_NUM_CONS", 'I', "NUM_CONS", "%6d,"},
    {KX_IINFO_NUM_VARS, "KX_IINFO_NUM_VARS", 'I', "NUM_VARS", "%6d,"},
    {KX_IINFO_NUM_NONZ, "KX_IINFO_NUM_NONZ", 'I', "NUM_NONZ", "%6d,"},
    {KX_IINFO_NUM_BIN, "KX_IINFO_NUM_BIN", 'I', "NUM_BIN", "%6d,"},
    {KX_IINFO_NUM_INT, "KX_IINFO_NUM_INT", 'I', "NUM_INT", "%6d,"},
    {KX_IINFO_NUM_CONT, "KX_IINFO_NUM_CONT", 'I', "NUM_CONT", "%6d,"},
    {KX_IINFO_NUM_QC_NONZ, "KX_IINFO_NUM_QC_NONZ", 'I', "NUM_QC_NONZ", "%6d,"},
    {KX_IINFO_NUM_NLP_NONZ, "KX_IINFO_NUM_NLP_NONZ", 'I', "NUM_NLP_NONZ", "%6d,"},
    {KX_IINFO_NUM_NLPOBJ_NONZ, "KX_IINFO_NUM_NLPOBJ_NONZ", 'I', "NUM_NLPOBJ_NONZ", "%6d,"},
    {KX_IINFO_NUM_RDCONS, "KX_IINFO_NUM_RDCONS", 'I', "NUM_RDCONS", "%6d,"},
    {KX_IINFO_NUM_RDVARS, "KX_IINFO_NUM_RDVARS", 'I', "NUM_RDVARS", "%6d,"},
    {KX_IINFO_NUM_RDNONZ, "KX_IINFO_NUM_RDNONZ", 'I', "NUM_RDNONZ", "%6d,"},
    {KX_IINFO_NUM_RDINT, "KX_IINFO_NUM_RDINT", 'I', "NUM_RDINT", "%6d,"},
    {KX_IINFO_LEN_VARNAMES, "KX_IINFO_LEN_VARNAMES", 'I', "LEN_VARNAMES", "%6d,"},
    {KX_IINFO_LEN_CONNAMES, "KX_IINFO_LEN_CONNAMES", 'I', "LEN_CONNAMES", "%6d,"},
    {KX_IINFO_NUM_NLP_CONS, "KX_IINFO_NUM_NLP_CONS", 'I', "NUM_NLP_CONS", "%6d,"},
    {KX_IINFO_NUM_NLP_VARS, "KX_IINFO_NUM_NLP_VARS", 'I', "NUM_NLP_VARS", "%6d,"},
    {KX_IINFO_NUM_SUF_ROWS, "KX_IINFO_NUM_SUF_ROWS", 'I', "NUM_SUF_ROWS", "%6d,"},
    {KX_IINFO_NUM_IIS_ROWS, "KX_IINFO_NUM_IIS_ROWS", 'I', "NUM_IIS_ROWS", "%6d,"},
    {KX_IINFO_NUM_SUF_BNDS, "KX_IINFO_NUM_SUF_BNDS", 'I', "NUM_SUF_BNDS", "%6d,"},
    {KX_IINFO_NUM_IIS_BNDS, "KX_IINFO_NUM_IIS_BNDS", 'I', "NUM_IIS_BNDS", "%6d,"},
    {KX_IINFO_NUM_SUF_COLS, "KX_IINFO_NUM_SUF_COLS", 'I', "NUM_SUF_COLS", "%6d,"},
    {KX_IINFO_NUM_IUS_COLS, "KX_IINFO_NUM_IUS_COLS", 'I', "NUM_IUS_COLS", "%6d,"},
    {KX_IINFO_NUM_CONES, "KX_IINFO_NUM_CONES", 'I', "NUM_CONES", "%6d,"},
    {KX_IINFO_NUM_CONE_NONZ, "KX_IINFO_NUM_CONE_NONZ", 'I', "NUM_CONE_NONZ", "%6d,"},
    {KX_IINFO_LEN_CONENAMES, "KX_IINFO_LEN_CONENAMES", 'I', "LEN_CONENAMES", "%6d,"},
    {KX_DINFO_INST_VAL_MIN_COEF, "KX_DINFO_INST_VAL_MIN_COEF", 'D', "INST_VAL_MIN_COEF", "%22g,"},
    {KX_IINFO_INST_VARNDX_MIN_COEF, "KX_IINFO_INST_VARNDX_MIN_COEF", 'I', "INST_VARNDX_MIN_COEF", "%6d,"},
    {KX_IINFO_INST_CONNDX_MIN_COEF, "KX_IINFO_INST_CONNDX_MIN_COEF", 'I', "INST_CONNDX_MIN_COEF", "%6d,"},
    {KX_DINFO_INST_VAL_MAX_COEF, "KX_DINFO_INST_VAL_MAX_COEF", 'D', "INST_VAL_MAX_COEF", "%22g,"},
    {KX_IINFO_INST_VARNDX_MAX_COEF, "KX_IINFO_INST_VARNDX_MAX_COEF", 'I', "INST_VARNDX_MAX_COEF", "%6d,"},
    {KX_IINFO_INST_CONNDX_MAX_COEF, "KX_IINFO_INST_CONNDX_MAX_COEF", 'I', "INST_CONNDX_MAX_COEF", "%6d,"},
    {KX_IINFO_NUM_CONS_L, "KX_IINFO_NUM_CONS_L", 'I', "NUM_CONS_L", "%6d,"},
    {KX_IINFO_NUM_CONS_G, "KX_IINFO_NUM_CONS_G", 'I', "NUM_CONS_G", "%6d,"},
    {KX_IINFO_NUM_CONS_E, "KX_IINFO_NUM_CONS_E", 'I', "NUM_CONS_E", "%6d,"},
    {KX_IINFO_NUM_CONS_R, "KX_IINFO_NUM_CONS_R", 'I', "NUM_CONS_R", "%6d,"},
    {KX_IINFO_NUM_CONS_N, "KX_IINFO_NUM_CONS_N", 'I', "NUM_CONS_N", "%6d,"},
    {KX_SINFO_MODEL_FILENAME, "KX_SINFO_MODEL_FILENAME", 'S', "MODEL_FILENAME", "%s,"},
    {KX_SINFO_MODEL_SOURCE, "KX_SINFO_MODEL_SOURCE", 'S', "MODEL_SOURCE", "%s,"},
    {KX_SINFO_STOC_FILENAME, "KX_SINFO_STOC_FILENAME", 'S', "STOC_FILENAME", "%s,"},
    {KX_IINFO_NUM_SPARS, "KX_IINFO_NUM_SPARS", 'I', "NUM_SPARS", "%6d,"},
    {KX_IINFO_METHOD, "KX_IINFO_METHOD", 'I', "METHOD", "%6d,"},
    {KX_DINFO_POBJ, "KX_DINFO_POBJ", 'D', "POBJ", "%22g,"},
    {KX_DINFO_DOBJ, "KX_DINFO_DOBJ", 'D', "DOBJ", "%22g,"},
    {KX_DINFO_PINFEAS, "KX_DINFO_PINFEAS", 'D', "PINFEAS", "%22g,"},
    {KX_DINFO_DINFEAS, "KX_DINFO_DINFEAS", 'D', "DINFEAS", "%22g,"},
    {KX_IINFO_MODEL_STATUS, "KX_IINFO_MODEL_STATUS", 'I', "MODEL_STATUS", "%6d,"},
    {KX_IINFO_PRIMAL_STATUS, "KX_IINFO_PRIMAL_STATUS", 'I', "PRIMAL_STATUS", "%6d,"},
    {KX_IINFO_DUAL_STATUS, "KX_IINFO_DUAL_STATUS", 'I', "DUAL_STATUS", "%6d,"},
    {KX_IINFO_BASIC_STATUS, "KX_IINFO_BASIC_STATUS", 'I', "BASIC_STATUS", "%6d,"},
    {KX_IINFO_BAR_ITER, "KX_IINFO_BAR_ITER", 'I', "BAR_ITER", "%6d,"},
    {KX_IINFO_SIM_ITER, "KX_IINFO_SIM_ITER", 'I', "SIM_ITER", "%6d,"},
    {KX_IINFO_NLP_ITER, "KX_IINFO_NLP_ITER", 'I', "NLP_ITER", "%6d,"},
    {KX_IINFO_ELAPSED_TIME, "KX_IINFO_ELAPSED_TIME", 'I', "ELAPSED_TIME", "%6d,"},
    {KX_DINFO_MSW_POBJ, "KX_DINFO_MSW_POBJ", 'D', "MSW_POBJ", "%22g,"},
    {KX_IINFO_MSW_PASS, "KX_IINFO_MSW_PASS", 'I', "MSW_PASS", "%6d,"},
    {KX_IINFO_MSW_NSOL, "KX_IINFO_MSW_NSOL", 'I', "MSW_NSOL", "%6d,"},
    {KX_IINFO_IPM_STATUS, "KX_IINFO_IPM_STATUS", 'I', "IPM_STATUS", "%6d,"},
    {KX_DINFO_IPM_POBJ, "KX_DINFO_IPM_POBJ", 'D', "IPM_POBJ", "%22g,"},
    {KX_DINFO_IPM_DOBJ, "KX_DINFO_IPM_DOBJ", 'D', "IPM_DOBJ", "%22g,"},
    {KX_DINFO_IPM_PINFEAS, "KX_DINFO_IPM_PINFEAS", 'D', "IPM_PINFEAS", "%22g,"},
    {KX_DINFO_IPM_DINFEAS, "KX_DINFO_IPM_DINFEAS", 'D', "IPM_DINFEAS", "%22g,"},
    {KX_IINFO_NLP_CALL_FUN, "KX_IINFO_NLP_CALL_FUN", 'I', "NLP_CALL_FUN", "%6d,"},
    {KX_IINFO_NLP_CALL_DEV, "KX_IINFO_NLP_CALL_DEV", 'I', "NLP_CALL_DEV", "%6d,"},
    {KX_IINFO_NLP_CALL_HES, "KX_IINFO_NLP_CALL_HES", 'I', "NLP_CALL_HES", "%6d,"},
    {KX_IINFO_MIP_STATUS, "KX_IINFO_MIP_STATUS", 'I', "MIP_STATUS", "%6d,"},
    {KX_DINFO_MIP_OBJ, "KX_DINFO_MIP_OBJ", 'D', "MIP_OBJ", "%22g,"},
    {KX_DINFO_MIP_BESTBOUND, "KX_DINFO_MIP_BESTBOUND", 'D', "MIP_BESTBOUND", "%22g,"},
    {KX_IINFO_MIP_SIM_ITER, "KX_IINFO_MIP_SIM_ITER", 'I', "MIP_SIM_ITER", "%6d,"},
    {KX_IINFO_MIP_BAR_ITER, "KX_IINFO_MIP_BAR_ITER", 'I', "MIP_BAR_ITER", "%6d,"},
    {KX_IINFO_MIP_NLP_ITER, "KX_IINFO_MIP_NLP_ITER", 'I', "MIP_NLP_ITER", "%6d,"},
    {KX_IINFO_MIP_BRANCHCOUNT, "KX_IINFO_MIP_BRANCHCOUNT", 'I', "MIP_BRANCHCOUNT", "%6d,"},
    {KX_IINFO_MIP_NEWIPSOL, "KX_IINFO_MIP_NEWIPSOL", 'I', "MIP_NEWIPSOL", "%6d,"},
    {KX_IINFO_MIP_LPCOUNT, "KX_IINFO_MIP_LPCOUNT", 'I', "MIP_LPCOUNT", "%6d,"},
    {KX_IINFO_MIP_ACTIVENODES, "KX_IINFO_MIP_ACTIVENODES", 'I', "MIP_ACTIVENODES", "%6d,"},
    {KX_IINFO_MIP_LTYPE, "KX_IINFO_MIP_LTYPE", 'I', "MIP_LTYPE", "%6d,"},
    {KX_IINFO_MIP_AOPTTIMETOSTOP, "KX_IINFO_MIP_AOPTTIMETOSTOP", 'I', "MIP_AOPTTIMETOSTOP", "%6d,"},
    {KX_IINFO_MIP_NUM_TOTAL_CUTS, "KX_IINFO_MIP_NUM_TOTAL_CUTS", 'I', "MIP_NUM_TOTAL_CUTS", "%6d,"},
    {KX_IINFO_MIP_GUB_COVER_CUTS, "KX_IINFO_MIP_GUB_COVER_CUTS", 'I', "MIP_GUB_COVER_CUTS", "%6d,"},
    {KX_IINFO_MIP_FLOW_COVER_CUTS, "KX_IINFO_MIP_FLOW_COVER_CUTS", 'I', "MIP_FLOW_COVER_CUTS", "%6d,"},
    {KX_IINFO_MIP_LIFT_CUTS, "KX_IINFO_MIP_LIFT_CUTS", 'I', "MIP_LIFT_CUTS", "%6d,"},
    {KX_IINFO_MIP_PLAN_LOC_CUTS, "KX_IINFO_MIP_PLAN_LOC_CUTS", 'I', "MIP_PLAN_LOC_CUTS", "%6d,"},
    {KX_IINFO_MIP_DISAGG_CUTS, "KX_IINFO_MIP_DISAGG_CUTS", 'I', "MIP_DISAGG_CUTS", "%6d,"},
    {KX_IINFO_MIP_KNAPSUR_COVER_CUTS, "KX_IINFO_MIP_KNAPSUR_COVER_CUTS", 'I', "MIP_KNAPSUR_COVER_CUTS", "%6d,"},
    {KX_IINFO_MIP_LATTICE_CUTS, "KX_IINFO_MIP_LATTICE_CUTS", 'I', "MIP_LATTICE_CUTS", "%6d,"},
    {KX_IINFO_MIP_GOMORY_CUTS, "KX_IINFO_MIP_GOMORY_CUTS", 'I', "MIP_GOMORY_CUTS", "%6d,"},
    {KX_IINFO_MIP_COEF_REDC_CUTS, "KX_IINFO_MIP_COEF_REDC_CUTS", 'I', "MIP_COEF_REDC_CUTS", "%6d,"},
    {KX_IINFO_MIP_GCD_CUTS, "KX_IINFO_MIP_GCD_CUTS", 'I', "MIP_GCD_CUTS", "%6d,"},
    {KX_IINFO_MIP_OBJ_CUT, "KX_IINFO_MIP_OBJ_CUT", 'I', "MIP_OBJ_CUT", "%6d,"},
    {KX_IINFO_MIP_BASIS_CUTS, "KX_IINFO_MIP_BASIS_CUTS", 'I', "MIP_BASIS_CUTS", "%6d,"},
    {KX_IINFO_MIP_CARDGUB_CUTS, "KX_IINFO_MIP_CARDGUB_CUTS", 'I', "MIP_CARDGUB_CUTS", "%6d,"},
    {KX_IINFO_MIP_CLIQUE_CUTS, "KX_IINFO_MIP_CLIQUE_CUTS", 'I', "MIP_CLIQUE_CUTS", "%6d,"},
    {KX_IINFO_MIP_CONTRA_CUTS, "KX_IINFO_MIP_CONTRA_CUTS", 'I', "MIP_CONTRA_CUTS", "%6d,"},
    {KX_IINFO_MIP_GUB_CONS, "KX_IINFO_MIP_GUB_CONS", 'I', "MIP_GUB_CONS", "%6d,"},
    {KX_IINFO_MIP_GLB_CONS, "KX_IINFO_MIP_GLB_CONS", 'I', "MIP_GLB_CONS", "%6d,"},
    {KX_IINFO_MIP_PLANTLOC_CONS, "KX_IINFO_MIP_PLANTLOC_CONS", 'I', "MIP_PLANTLOC_CONS", "%6d,"},
    {KX_IINFO_MIP_DISAGG_CONS, "KX_IINFO_MIP_DISAGG_CONS", 'I', "MIP_DISAGG_CONS", "%6d,"},
    {KX_IINFO_MIP_SB_CONS, "KX_IINFO_MIP_SB_CONS", 'I', "MIP_SB_CONS", "%6d,"},
    {KX_IINFO_MIP_IKNAP_CONS, "KX_IINFO_MIP_IKNAP_CONS", 'I', "MIP_IKNAP_CONS", "%6d,"},
    {KX_IINFO_MIP_KNAP_CONS, "KX_IINFO_MIP_KNAP_CONS", 'I', "MIP_KNAP_CONS", "%6d,"},
    {KX_IINFO_MIP_NLP_CONS, "KX_IINFO_MIP_NLP_CONS", 'I', "MIP_NLP_CONS", "%6d,"},
    {KX_IINFO_MIP_CONT_CONS, "KX_IINFO_MIP_CONT_CONS", 'I', "MIP_CONT_CONS", "%6d,"},
    {KX_DINFO_MIP_TOT_TIME, "KX_DINFO_MIP_TOT_TIME", 'D', "MIP_TOT_TIME", "%22g,"},
    {KX_DINFO_MIP_OPT_TIME, "KX_DINFO_MIP_OPT_TIME", 'D', "MIP_OPT_TIME", "%22g,"},
    {KX_DINFO_MIP_HEU_TIME, "KX_DINFO_MIP_HEU_TIME", 'D', "MIP_HEU_TIME", "%22g,"},
    {KX_IINFO_MIP_SOLSTATUS_LAST_BRANCH, "KX_IINFO_MIP_SOLSTATUS_LAST_BRANCH", 'I', "MIP_SOLSTATUS_LAST_BRANCH", "%6d,"},
    {KX_DINFO_MIP_SOLOBJVAL_LAST_BRANCH, "KX_DINFO_MIP_SOLOBJVAL_LAST_BRANCH", 'D', "MIP_SOLOBJVAL_LAST_BRANCH", "%22g,"},
    {KX_IINFO_MIP_HEU_LEVEL, "KX_IINFO_MIP_HEU_LEVEL", 'I', "MIP_HEU_LEVEL", "%6d,"},
    {KX_DINFO_MIP_PFEAS, "KX_DINFO_MIP_PFEAS", 'D', "MIP_PFEAS", "%22g,"},
    {KX_DINFO_MIP_INTPFEAS, "KX_DINFO_MIP_INTPFEAS", 'D', "MIP_INTPFEAS", "%22g,"},
    {KX_DINFO_GOP_OBJ, "KX_DINFO_GOP_OBJ", 'D', "GOP_OBJ", "%22g,"},
    {KX_IINFO_GOP_SIM_ITER, "KX_IINFO_GOP_SIM_ITER", 'I', "GOP_SIM_ITER", "%6d,"},
    {KX_IINFO_GOP_BAR_ITER, "KX_IINFO_GOP_BAR_ITER", 'I', "GOP_BAR_ITER", "%6d,"},
    {KX_IINFO_GOP_NLP_ITER, "KX_IINFO_GOP_NLP_ITER", 'I', "GOP_NLP_ITER", "%6d,"},
    {KX_DINFO_GOP_BESTBOUND, "KX_DINFO_GOP_BESTBOUND", 'D', "GOP_BESTBOUND", "%22g,"},
    {KX_IINFO_GOP_STATUS, "KX_IINFO_GOP_STATUS", 'I', "GOP_STATUS", "%6d,"},
    {KX_IINFO_GOP_LPCOUNT, "KX_IINFO_GOP_LPCOUNT", 'I', "GOP_LPCOUNT", "%6d,"},
    {KX_IINFO_GOP_NLPCOUNT, "KX_IINFO_GOP_NLPCOUNT", 'I', "GOP_NLPCOUNT", "%6d,"},
    {KX_IINFO_GOP_MIPCOUNT, "KX_IINFO_GOP_MIPCOUNT", 'I', "GOP_MIPCOUNT", "%6d,"},
    {KX_IINFO_GOP_NEWSOL, "KX_IINFO_GOP_NEWSOL", 'I', "GOP_NEWSOL", "%6d,"},
    {KX_IINFO_GOP_BOX, "KX_IINFO_GOP_BOX", 'I', "GOP_BOX", "%6d,"},
    {KX_IINFO_GOP_BBITER, "KX_IINFO_GOP_BBITER", 'I', "GOP_BBITER", "%6d,"},
    {KX_IINFO_GOP_SUBITER, "KX_IINFO_GOP_SUBITER", 'I', "GOP_SUBITER", "%6d,"},
    {KX_IINFO_GOP_MIPBRANCH, "KX_IINFO_GOP_MIPBRANCH", 'I', "GOP_MIPBRANCH", "%6d,"},
    {KX_IINFO_GOP_ACTIVEBOXES, "KX_IINFO_GOP_ACTIVEBOXES", 'I', "GOP_ACTIVEBOXES", "%6d,"},
    {KX_IINFO_GOP_TOT_TIME, "KX_IINFO_GOP_TOT_TIME", 'I', "GOP_TOT_TIME", "%6d,"},
    {KX_IINFO_GOP_MAXDEPTH, "KX_IINFO_GOP_MAXDEPTH", 'I', "GOP_MAXDEPTH", "%6d,"},
    {KX_DINFO_GOP_SIM_ITER, "KX_DINFO_GOP_SIM_ITER", 'D', "GOP_SIM_ITER", "%13g,"},
    {KX_DINFO_GOP_BAR_ITER, "KX_DINFO_GOP_BAR_ITER", 'D', "GOP_BAR_ITER", "%13g,"},
    {KX_DINFO_GOP_NLP_ITER, "KX_DINFO_GOP_NLP_ITER", 'D', "GOP_NLP_ITER", "%13g,"},
    {KX_DINFO_GOP_LPCOUNT, "KX_DINFO_GOP_LPCOUNT", 'D', "GOP_LPCOUNT", "%13g,"},
    {KX_DINFO_GOP_NLPCOUNT, "KX_DINFO_GOP_NLPCOUNT", 'D', "GOP_NLPCOUNT", "%13g,"},
    {KX_DINFO_GOP_MIPCOUNT, "KX_DINFO_GOP_MIPCOUNT", 'D', "GOP_MIPCOUNT", "%13g,"},
    {KX_DINFO_GOP_BBITER, "KX_DINFO_GOP_BBITER", 'D', "GOP_BBITER", "%13g,"},
    {KX_DINFO_GOP_SUBITER, "KX_DINFO_GOP_SUBITER", 'D', "GOP_SUBITER", "%13g,"},
    {KX_DINFO_GOP_MIPBRANCH, "KX_DINFO_GOP_MIPBRANCH", 'D', "GOP_MIPBRANCH", "%13g,"},
    {KX_DINFO_GOP_FIRST_TIME, "KX_DINFO_GOP_FIRST_TIME", 'D', "GOP_FIRST_TIME", "%22g,"},
    {KX_DINFO_GOP_BEST_TIME, "KX_DINFO_GOP_BEST_TIME", 'D', "GOP_BEST_TIME", "%22g,"},
    {KX_DINFO_SUB_OBJ, "KX_DINFO_SUB_OBJ", 'D', "SUB_OBJ", "%22g,"},
    {KX_DINFO_SUB_PINF, "KX_DINFO_SUB_PINF", 'D', "SUB_PINF", "%22g,"},
    {KX_DINFO_CUR_OBJ, "KX_DINFO_CUR_OBJ", 'D', "CUR_OBJ", "%22g,"},
    {KX_IINFO_CUR_ITER, "KX_IINFO_CUR_ITER", 'I', "CUR_ITER", "%6d,"},
    {KX_DINFO_CUR_BEST_BOUND, "KX_DINFO_CUR_BEST_BOUND", 'D', "CUR_BEST_BOUND", "%22g,"},
    {KX_IINFO_CUR_STATUS, "KX_IINFO_CUR_STATUS", 'I', "CUR_STATUS", "%6d,"},
    {KX_IINFO_CUR_LP_COUNT, "KX_IINFO_CUR_LP_COUNT", 'I', "CUR_LP_COUNT", "%6d,"},
    {KX_IINFO_CUR_BRANCH_COUNT, "KX_IINFO_CUR_BRANCH_COUNT", 'I', "CUR_BRANCH_COUNT", "%6d,"},
    {KX_IINFO_CUR_ACTIVE_COUNT, "KX_IINFO_CUR_ACTIVE_COUNT", 'I', "CUR_ACTIVE_COUNT", "%6d,"},
    {KX_IINFO_CUR_NLP_COUNT, "KX_IINFO_CUR_NLP_COUNT", 'I', "CUR_NLP_COUNT", "%6d,"},
    {KX_IINFO_CUR_MIP_COUNT, "KX_IINFO_CUR_MIP_COUNT", 'I', "CUR_MIP_COUNT", "%6d,"},
    {KX_IINFO_CUR_CUT_COUNT, "KX_IINFO_CUR_CUT_COUNT", 'I', "CUR_CUT_COUNT", "%6d,"},
    {KX_DINFO_GEN_PERCENT, "KX_DINFO_GEN_PERCENT", 'D', "GEN_PERCENT", "%22g,"},
    {KX_IINFO_GEN_NONZ_TTL, "KX_IINFO_GEN_NONZ_TTL", 'I', "GEN_NONZ_TTL", "%6d,"},
    {KX_IINFO_GEN_NONZ_NL, "KX_IINFO_GEN_NONZ_NL", 'I', "GEN_NONZ_NL", "%6d,"},
    {KX_IINFO_GEN_ROW_NL, "KX_IINFO_GEN_ROW_NL", 'I', "GEN_ROW_NL", "%6d,"},
    {KX_IINFO_GEN_VAR_NL, "KX_IINFO_GEN_VAR_NL", 'I', "GEN_VAR_NL", "%6d,"},
    {KX_IINFO_IIS_BAR_ITER, "KX_IINFO_IIS_BAR_ITER", 'I', "IIS_BAR_ITER", "%6d,"},
    {KX_IINFO_IIS_SIM_ITER, "KX_IINFO_IIS_SIM_ITER", 'I', "IIS_SIM_ITER", "%6d,"},
    {KX_IINFO_IIS_TOT_TIME, "KX_IINFO_IIS_TOT_TIME", 'I', "IIS_TOT_TIME", "%6d,"},
    {KX_IINFO_IIS_ACT_NODE, "KX_IINFO_IIS_ACT_NODE", 'I', "IIS_ACT_NODE", "%6d,"},
    {KX_IINFO_IIS_LPCOUNT, "KX_IINFO_IIS_LPCOUNT", 'I', "IIS_LPCOUNT", "%6d,"},
    {KX_IINFO_IIS_NLPCOUNT, "KX_IINFO_IIS_NLPCOUNT", 'I', "IIS_NLPCOUNT", "%6d,"},
    {KX_IINFO_IIS_MIPCOUNT, "KX_IINFO_IIS_MIPCOUNT", 'I', "IIS_MIPCOUNT", "%6d,"},
    {KX_IINFO_IUS_BAR_ITER, "KX_IINFO_IUS_BAR_ITER", 'I', "IUS_BAR_ITER", "%6d,"},
    {KX_IINFO_IUS_SIM_ITER, "KX_IINFO_IUS_SIM_ITER", 'I', "IUS_SIM_ITER", "%6d,"},
    {KX_IINFO_IUS_TOT_TIME, "KX_IINFO_IUS_TOT_TIME", 'I', "IUS_TOT_TIME", "%6d,"},
    {KX_IINFO_IUS_ACT_NODE, "KX_IINFO_IUS_ACT_NODE", 'I', "IUS_ACT_NODE", "%6d,"},
    {KX_IINFO_IUS_LPCOUNT, "KX_IINFO_IUS_LPCOUNT", 'I', "IUS_LPCOUNT", "%6d,"},
    {KX_IINFO_IUS_NLPCOUNT, "KX_IINFO_IUS_NLPCOUNT", 'I', "IUS_NLPCOUNT", "%6d,"},
    {KX_IINFO_IUS_MIPCOUNT, "KX_IINFO_IUS_MIPCOUNT", 'I', "IUS_MIPCOUNT", "%6d,"},
    {KX_IINFO_ERR_OPTIM, "KX_IINFO_ERR_OPTIM", 'I', "ERR_OPTIM", "%6d,"},
    {KX_DINFO_STOC_EVOBJ, "KX_DINFO_STOC_EVOBJ", 'D', "STOC_EVOBJ", "%22g,"},
    {KX_DINFO_STOC_EVPI, "KX_DINFO_STOC_EVPI", 'D', "STOC_EVPI", "%22g,"},
    {KX_DINFO_STOC_NUM_SCENARIOS, "KX_DINFO_STOC_NUM_SCENARIOS", 'D', "STOC_NUM_SCENARIOS", "%13g,"},
    {KX_IINFO_STOC_NUM_STAGES, "KX_IINFO_STOC_NUM_STAGES", 'I', "STOC_NUM_STAGES", "%6d,"},
    {KX_IINFO_STOC_NUM_SCENARIOS, "KX_IINFO_STOC_NUM_SCENARIOS", 'I', "STOC_NUM_SCENARIOS", "%6d,"},
    {KX_IINFO_STOC_NUM_NODES, "KX_IINFO_STOC_NUM_NODES", 'I', "STOC_NUM_NODES", "%6d,"},
    {KX_IINFO_STOC_NUM_COLS_CORE, "KX_IINFO_STOC_NUM_COLS_CORE", 'I', "STOC_NUM_COLS_CORE", "%6d,"},
    {KX_IINFO_STOC_NUM_ROWS_CORE, "KX_IINFO_STOC_NUM_ROWS_CORE", 'I', "STOC_NUM_ROWS_CORE", "%6d,"},
    {KX_IINFO_STOC_SIM_ITER, "KX_IINFO_STOC_SIM_ITER", 'I', "STOC_SIM_ITER", "%6d,"},
    {KX_IINFO_STOC_BAR_ITER, "KX_IINFO_STOC_BAR_ITER", 'I', "STOC_BAR_ITER", "%6d,"},
    {KX_IINFO_STOC_NLP_ITER, "KX_IINFO_STOC_NLP_ITER", 'I', "STOC_NLP_ITER", "%6d,"},
    {KX_IINFO_STOC_STATUS, "KX_IINFO_STOC_STATUS", 'I', "STOC_STATUS", "%6d,"},
    {KX_DINFO_STOC_NUM_COLS_DETEQI, "KX_DINFO_STOC_NUM_COLS_DETEQI", 'D', "STOC_NUM_COLS_DETEQI", "%13g,"},
    {KX_DINFO_STOC_NUM_ROWS_DETEQI, "KX_DINFO_STOC_NUM_ROWS_DETEQI", 'D', "STOC_NUM_ROWS_DETEQI", "%13g,"},
};
constexpr int kInfoCount = static_cast<int>(sizeof kInfoRows / sizeof kInfoRows[0]);

constexpr int kNA = KXERR_INFO_NOT_AVAILABLE;

// Smallest and largest |a_ij| of the matrix with their column and row.
bool coef_extremes(const Model *m, double *vmin, int *jmin, int *imin, double *vmax, int *jmax,
                   int *imax) {
  bool any = false;
  for (int j = 0; j < m->nVars; j++)
    for (int k = m->Abeg[j]; k < m->Abeg[j] + m->Alen[j]; k++) {
      const double a = std::fabs(m->Acoef[k]);
      if (a == 0.0) continue;
      if (!any || a < *vmin) *vmin = a, *jmin = j, *imin = m->Arow[k];
      if (!any || a > *vmax) *vmax = a, *jmax = j, *imax = m->Arow[k];
      any = true;
    }
  return any;
}

bool has_instructions(const Model *m) { return m->instr && m->instr->codeLen > 0; }

// Items that need nothing but the model record.
int frame_int(const Model *m, int id, int *out) {
  switch (id) {
    case KX_IINFO_OBJSENSE: *out = m->objSense; return 0;
    case KX_IINFO_VER_MAJOR: *out = KX_VERSION_MAJOR; return 0;
    case KX_IINFO_VER_MINOR: *out = KX_VERSION_MINOR; return 0;
    case KX_IINFO_VER_BUILD: *out = KX_VERSION_BUILD; return 0;
    case KX_IINFO_VER_REVISION: *out = KX_VERSION_REVISION; return 0;
    case KX_IINFO_ERR_OPTIM: *out = m->lastError; return 0;
    default: return -1;
  }
}

// Counts of the loaded model.
int model_int(const Model *m, int id, int *out) {
  switch (id) {
    case KX_IINFO_NUM_CONS: *out = m->nCons; return 0;
    case KX_IINFO_NUM_VARS: *out = m->nVars; return 0;
    case KX_IINFO_NUM_NONZ: *out = m->nNonz; return 0;
    case KX_IINFO_NUM_CONS_L: *out = m->stats.nL; return 0;
    case KX_IINFO_NUM_CONS_G: *out = m->stats.nG; return 0;
    case KX_IINFO_NUM_CONS_E: *out = m->stats.nE; return 0;
    case KX_IINFO_NUM_CONS_N: *out = m->stats.nN; return 0;
    case KX_IINFO_NUM_CONS_R: *out = m->stats.nR; return 0;
    case KX_IINFO_NUM_BIN: *out = m->nBin; return 0;
    case KX_IINFO_NUM_INT: *out = m->nInt; return 0;
    case KX_IINFO_NUM_CONT: *out = m->nVars - m->nBin - m->nInt; return 0;
    case KX_IINFO_NUM_QC_NONZ: *out = m->nQCNonz; return 0;
    case KX_IINFO_NUM_CONES: *out = m->nCones; return 0;
    case KX_IINFO_NUM_CONE_NONZ: *out = m->nConeNonz; return 0;
    case KX_IINFO_LEN_VARNAMES: *out = m->varNames ? m->varNameLen : 9 * m->nVars; return 0;
    case KX_IINFO_LEN_CONNAMES: *out = m->conNames ? m->conNameLen : 9 * m->nCons; return 0;
    case KX_IINFO_LEN_CONENAMES: *out = m->coneNames ? m->coneNameLen : 9 * m->nCones; return 0;
    // Nonlinear counts: none without an instruction list; with one they come
    // from the nonlinear analysis.
    case KX_IINFO_NUM_NLP_NONZ:
    case KX_IINFO_NUM_NLPOBJ_NONZ:
    case KX_IINFO_NUM_NLP_CONS:
    case KX_IINFO_NUM_NLP_VARS:
      if (has_instructions(m)) return kNA;
      *out = 0;
      return 0;
    case KX_IINFO_NUM_RDCONS:
    case KX_IINFO_NUM_RDVARS:
    case KX_IINFO_NUM_RDNONZ: {
      if (!m->poststack) return kNA;
      int r = 0, c = 0, z = 0;
      genpre_reduced_size(m->poststack, &r, &c, &z);
      *out = id == KX_IINFO_NUM_RDCONS ? r : id == KX_IINFO_NUM_RDVARS ? c : z;
      return 0;
    }
    case KX_IINFO_NUM_RDINT:
      if (!m->poststack) return kNA;
      *out = m->presolved ? m->presolved->nBin + m->presolved->nInt : 0;
      return 0;
    case KX_IINFO_NUM_IIS_ROWS:
      if (!m->iis) return kNA;
      *out = m->iis->nRows;
      return 0;
    case KX_IINFO_NUM_IIS_BNDS:
      if (!m->iis) return kNA;
      *out = m->iis->nBnds;
      return 0;
    case KX_IINFO_NUM_IUS_COLS:
      if (!m->ius) return kNA;
      *out = m->ius->nBnds;
      return 0;
    case KX_IINFO_INST_VARNDX_MIN_COEF:
    case KX_IINFO_INST_CONNDX_MIN_COEF:
    case KX_IINFO_INST_VARNDX_MAX_COEF:
    case KX_IINFO_INST_CONNDX_MAX_COEF: {
      double vmin = 0, vmax = 0;
      int jmin = 0, imin = 0, jmax = 0, imax = 0;
      if (!coef_extremes(m, &vmin, &jmin, &imin, &vmax, &jmax, &imax)) return kNA;
      *out = id == KX_IINFO_INST_VARNDX_MIN_COEF   ? jmin
             : id == KX_IINFO_INST_CONNDX_MIN_COEF ? imin
             : id == KX_IINFO_INST_VARNDX_MAX_COEF ? jmax
                                                   : imax;
      return 0;
    }
    default: return -1;
  }
}

// Items of the LP solution record.
int sol_int(const Model *m, int id, int *out) {
  const Sol *s = m->sol;
  switch (id) {
    case KX_IINFO_METHOD:
    case KX_IINFO_MODEL_STATUS:
    case KX_IINFO_PRIMAL_STATUS:
    case KX_IINFO_DUAL_STATUS:
    case KX_IINFO_BASIC_STATUS:
    case KX_IINFO_IPM_STATUS:
    case KX_IINFO_BAR_ITER:
    case KX_IINFO_SIM_ITER:
    case KX_IINFO_NLP_ITER:
    case KX_IINFO_ELAPSED_TIME:
    case KX_IINFO_CUR_ITER:
    case KX_IINFO_CUR_STATUS:
      break;
    default: return -1;
  }
  if (!s) return kNA;
  switch (id) {
    case KX_IINFO_METHOD: *out = s->method; return 0;
    case KX_IINFO_MODEL_STATUS: *out = s->model_status; return 0;
    case KX_IINFO_PRIMAL_STATUS: *out = s->primal_status; return 0;
    case KX_IINFO_DUAL_STATUS: *out = s->dual_status; return 0;
    case KX_IINFO_BASIC_STATUS: *out = s->basic_status; return 0;
    case KX_IINFO_IPM_STATUS: *out = s->ipm_status; return 0;
    case KX_IINFO_BAR_ITER: *out = static_cast<int>(s->barIter); return 0;
    case KX_IINFO_SIM_ITER: *out = static_cast<int>(s->simIter); return 0;
    case KX_IINFO_NLP_ITER: *out = static_cast<int>(s->nlpIter); return 0;
    case KX_IINFO_ELAPSED_TIME: *out = static_cast<int>(s->elapsed.wall); return 0;
    // Outside a solve the current values are those the last solve ended with.
    case KX_IINFO_CUR_ITER:
      if (s->model_status == KX_STATUS_LOADED || s->model_status == KX_STATUS_UNLOADED) return kNA;
      *out = static_cast<int>(s->simIter + s->barIter + s->nlpIter);
      return 0;
    case KX_IINFO_CUR_STATUS:
      if (s->model_status == KX_STATUS_UNLOADED) return kNA;
      *out = s->model_status;
      return 0;
    default: return kNA;
  }
}

// A finished solve leaves objective values to read.
bool solved(const Sol *s) {
  return s && s->model_status != KX_STATUS_UNLOADED && s->model_status != KX_STATUS_LOADED &&
         s->model_status != KX_STATUS_UNKNOWN && s->primal_status != KX_STATUS_UNLOADED;
}

int get_double(Model *m, int id, double *out) {
  const Sol *s = m->sol;
  if (m->modelState == KX_STATUS_UNLOADED) return kNA;
  switch (id) {
    case KX_DINFO_INST_VAL_MIN_COEF:
    case KX_DINFO_INST_VAL_MAX_COEF: {
      double vmin = 0, vmax = 0;
      int a, b, c, d;
      if (!coef_extremes(m, &vmin, &a, &b, &vmax, &c, &d)) return kNA;
      *out = id == KX_DINFO_INST_VAL_MIN_COEF ? vmin : vmax;
      return 0;
    }
    case KX_DINFO_POBJ:
    case KX_DINFO_DOBJ:
    case KX_DINFO_PINFEAS:
    case KX_DINFO_DINFEAS:
      if (!s) return kNA;
      *out = id == KX_DINFO_POBJ ? s->pobj : id == KX_DINFO_DOBJ ? s->dobj
                                   : id == KX_DINFO_PINFEAS     ? s->pinfeas
                                                                : s->dinfeas;
      return 0;
    case KX_DINFO_CUR_OBJ:
      if (!solved(s)) return kNA;
      *out = s->pobj;
      return 0;
    case KX_DINFO_MIP_OBJ:
    case KX_DINFO_MIP_BESTBOUND:
      if (!m->mipsol) return kNA;
      *out = id == KX_DINFO_MIP_OBJ ? m->mipsol->obj : m->mipsol->bestBound;
      return 0;
    case KX_DINFO_GOP_OBJ:
      if (!m->gopsol) return kNA;
      *out = m->gopsol->obj;
      return 0;
    // Interior-point values exist only after a barrier solve, which this build
    // lacks; multistart, MIP, global, stochastic, IIS and nonlinear items come
    // with those solvers.
    default: return kNA;
  }
}

int get_int(Model *m, int id, int *out) {
  int rc = frame_int(m, id, out);
  if (rc >= 0) return rc;
  if (m->modelState == KX_STATUS_UNLOADED) return kNA;
  rc = model_int(m, id, out);
  if (rc >= 0) return rc;
  rc = sol_int(m, id, out);
  if (rc >= 0) return rc;
  switch (id) {
    case KX_IINFO_MIP_STATUS:
      if (!m->mipsol) return kNA;
      *out = m->mipsol->MIPstatus;
      return 0;
    case KX_IINFO_GOP_STATUS:
      if (!m->gopsol) return kNA;
      *out = m->gopsol->GOPstatus;
      return 0;
    default: return kNA;
  }
}

int get_string(Model *m, int id, char *out) {
  if (m->modelState == KX_STATUS_UNLOADED) return kNA;
  switch (id) {
    case KX_SINFO_MODEL_SOURCE:
      // The title the model was loaded with (a file's NAME or TITLE line).
      if (!m->modelName || !*m->modelName) return kNA;
      std::snprintf(out, 256, "%s", m->modelName);
      return 0;
    default: return kNA;  // file names are not recorded by the readers
  }
}

}  // namespace

const KXinfoRow *kxi_info_rows(int *count) {
  if (count) *count = kInfoCount;
  return kInfoRows;
}

const KXinfoRow *kxi_info_find(int id) {
  const KXinfoRow *end = kInfoRows + kInfoCount;
  const KXinfoRow *r =
      std::lower_bound(kInfoRows, end, id, [](const KXinfoRow &a, int v) { return a.id < v; });
  return r != end && r->id == id ? r : nullptr;
}

int kxi_get_info(Model *model, int id, void *out) {
  const KXinfoRow *row = kxi_info_find(id);
  if (!row) return kNA;
  // Inside a callback the current values come from the running solver.
  if (model->inCallback) {
    const int rc = kxi_progress_info(model, -1, id, out, true);
    if (rc == 0) return 0;
  }
  switch (row->type) {
    case 'D': return get_double(model, id, static_cast<double *>(out));
    case 'S': return get_string(model, id, static_cast<char *>(out));
    default: return get_int(model, id, static_cast<int *>(out));
  }
}

extern "C" KX_API int KXgetInfo(pModel model, int nQuery, void *pResult) {
  return kx::guard([&]() -> int {
    if (!model || !pResult) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->cbLevel < 0) return KXERR_INFO_NOT_AVAILABLE;
    return kxi_get_info(model, nQuery, pResult);
  });
}

extern "C" KX_API int KXgetFormattedInfo(pModel model, int nQuery, char *pachKey, char *pachText) {
  return kx::guard([&]() -> int {
    if (!model || !pachText) return KXERR_ILLEGAL_NULL_POINTER;
    if (model->cbLevel < 0) return KXERR_INFO_NOT_AVAILABLE;
    const KXinfoRow *row = kxi_info_find(nQuery);
    if (!row) return KXERR_INFO_NOT_AVAILABLE;
    char text[256];
    if (row->type == 'D') {
      double v = 0;
      KX_CALL(kxi_get_info(model, nQuery, &v));
      std::snprintf(pachText, 256, row->format, v);
    } else if (row->type == 'S') {
      KX_CALL(kxi_get_info(model, nQuery, text));
      std::snprintf(pachText, 256, row->format, text);
    } else {
      int v = 0;
      KX_CALL(kxi_get_info(model, nQuery, &v));
      std::snprintf(pachText, 256, row->format, v);
    }
    if (pachKey) std::snprintf(pachKey, 64, "%s", row->key);
    return 0;
  });
}
