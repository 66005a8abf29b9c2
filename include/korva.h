/*
 * korva.h -- public interface of the Korva optimization library (libkorva64.so.6).
 *
 * Plain C (C99) and C++.  Every exported function returns an int: 0 on success,
 * else one of the KXERR_ codes below.  Functions that return a handle give their
 * code through an int pointer.  No function prints, raises or aborts.
 */
#ifndef KORVA_H
#define KORVA_H

#include <stddef.h>

#if defined(KORVA_BUILDING_LIBRARY)
#define KX_API __attribute__((visibility("default")))
#else
#define KX_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------ */
/* Handles and callbacks                                                    */
/* ------------------------------------------------------------------------ */
typedef struct KXenv_s *pEnv;
typedef struct KXmodel_s *pModel;

/* Log sink of a model: (model, text, user data).  Texts carry their own line ends. */
typedef void (*KXmodelLogfunc)(pModel model, char *text, void *userData);
/* Log sink of an environment: (env, text, user data). */
typedef void (*KXenvLogfunc)(pEnv env, char *text, void *userData);
/* Progress callback: (model, location, user data); a nonzero return stops the solver (2023). */
typedef int (*KXcallback)(pModel model, int location, void *userData);

/* ------------------------------------------------------------------------ */
/* Version                                                                  */
/* ------------------------------------------------------------------------ */
#define KX_VERSION_MAJOR 6
#define KX_VERSION_MINOR 1
#define KX_VERSION_BUILD 1
#define KX_VERSION_REVISION 627

/* ------------------------------------------------------------------------ */
/* Numbers                                                                  */
/* ------------------------------------------------------------------------ */
#define KX_INFINITY 1.0E+30

/* ------------------------------------------------------------------------ */
/* Solution status (model, primal, dual, basic, MIP and global status)      */
/* ------------------------------------------------------------------------ */
#define KX_STATUS_OPTIMAL           1
#define KX_STATUS_BASIC_OPTIMAL     2
#define KX_STATUS_INFEASIBLE        3
#define KX_STATUS_UNBOUNDED         4
#define KX_STATUS_FEASIBLE          5
#define KX_STATUS_INFORUNB          6
#define KX_STATUS_NEAR_OPTIMAL      7 /* not set by any solver; reports "unknown (7)" */
#define KX_STATUS_LOCAL_OPTIMAL     8
#define KX_STATUS_LOCAL_INFEASIBLE  9
#define KX_STATUS_CUTOFF           10
#define KX_STATUS_NUMERICAL_ERROR  11
#define KX_STATUS_UNKNOWN          12
#define KX_STATUS_UNLOADED         13
#define KX_STATUS_LOADED           14

/* Basis status of a column or a row's logical: >= 0 position in the basis. */
#define KX_BASIS_AT_LOWER   (-1)
#define KX_BASIS_AT_UPPER   (-2)
#define KX_BASIS_FREE_ZERO  (-3)
#define KX_BASIS_BY_BOUNDS  (-4)

/* Optimization methods for KXoptimize. */
#define KX_METHOD_FREE    0
#define KX_METHOD_PSIMPLEX 1
#define KX_METHOD_DSIMPLEX 2
#define KX_METHOD_BARRIER  3
#define KX_METHOD_NLP      4

/* Items of KXgetSolution. */
#define KX_SOL_X        11
#define KX_SOL_Y        12
#define KX_SOL_SLACK    13
#define KX_SOL_DJ       14
#define KX_SOL_IPM_X    15
#define KX_SOL_IPM_Y    16
#define KX_SOL_IPM_SLACK 17
#define KX_SOL_IPM_DJ   18

/* Callback locations. */
#define KX_CALLBACK_PRIMAL    0
#define KX_CALLBACK_DUAL      1
#define KX_CALLBACK_BARRIER   2
#define KX_CALLBACK_PRESOLVE  5
#define KX_CALLBACK_MIP      10
#define KX_CALLBACK_END      11
#define KX_CALLBACK_GOP      16

/* ------------------------------------------------------------------------ */
/* Error codes                                                              */
/* ------------------------------------------------------------------------ */
#define KXERR_NO_ERROR                  0
#define KXERR_OUT_OF_MEMORY          2001
#define KXERR_CANNOT_OPEN_FILE       2002
#define KXERR_BAD_MPS_FILE           2003
#define KXERR_BAD_CONSTRAINT_TYPE    2004
#define KXERR_BAD_MODEL              2005
#define KXERR_BAD_SOLVER_TYPE        2006
#define KXERR_BAD_OBJECTIVE_SENSE    2007
#define KXERR_BAD_MPI_FILE           2008
#define KXERR_INFO_NOT_AVAILABLE     2009
#define KXERR_ILLEGAL_NULL_POINTER   2010
#define KXERR_UNABLE_TO_SET_PARAM    2011
#define KXERR_INDEX_OUT_OF_RANGE     2012
#define KXERR_ERRMSG_FILE_NOT_FOUND  2013
#define KXERR_VARIABLE_NOT_FOUND     2014
#define KXERR_INTERNAL_ERROR         2015
#define KXERR_ITER_LIMIT             2016
#define KXERR_TIME_LIMIT             2017
#define KXERR_NOT_CONVEX             2018
#define KXERR_NUMERIC_INSTABILITY    2019
#define KXERR_STEP_TOO_SMALL         2021
#define KXERR_USER_INTERRUPT         2023
#define KXERR_PARAMETER_OUT_OF_RANGE 2024
#define KXERR_ERROR_IN_INPUT         2025
#define KXERR_NOT_SUPPORTED          2029
#define KXERR_ALREADY_LOADED         2030
#define KXERR_NO_MODEL_LOADED        2031
#define KXERR_INDEX_DUPLICATE        2032
#define KXERR_INSTRUCT_NOT_LOADED    2033
#define KXERR_BRANCH_LIMIT           2037
#define KXERR_GOP_FUNC_NOT_SUPPORTED 2038
#define KXERR_GOP_BRANCH_LIMIT       2039
#define KXERR_BAD_DECOMPOSITION_TYPE 2040
#define KXERR_BAD_VARIABLE_TYPE      2041
#define KXERR_BASIS_BOUND_MISMATCH   2042
#define KXERR_BASIS_COL_STATUS       2043
#define KXERR_BASIS_INVALID          2044
#define KXERR_BASIS_ROW_STATUS       2045
#define KXERR_BLOCK_OF_BLOCK         2046
#define KXERR_BAD_INPUT_VALUE        2047
#define KXERR_BAD_COLUMN_STARTS      2048
#define KXERR_COLUMN_INDEX_OUT_OF_RANGE 2049
#define KXERR_BAD_COLUMN_LENGTHS     2050
#define KXERR_ERRCODE_OUT_OF_RANGE   2051
#define KXERR_ROW_INDEX_OUT_OF_RANGE 2052
#define KXERR_TOTAL_NONZCOUNT        2053
#define KXERR_MODEL_NOTLINEAR        2054
#define KXERR_USER_FUNCTION_NOT_FOUND 2056
#define KXERR_STRING_OPERATION       2058
#define KXERR_STRING_ALREADY_LOADED  2059
#define KXERR_STRING_NOT_LOADED      2060
#define KXERR_INSTRUCT_BAD_COUNT     2064
#define KXERR_INSTRUCT_TOO_SHORT     2065
#define KXERR_INSTRUCT_BAD_BOUNDS    2066
#define KXERR_INSTRUCT_SYNTAX        2067
#define KXERR_COL_TOKEN_NOT_FOUND    2068
#define KXERR_ROW_TOKEN_NOT_FOUND    2069
#define KXERR_NAME_TOKEN_NOT_FOUND   2070
#define KXERR_STOC_CORE_FILE         2301
#define KXERR_STOC_TIME_FILE         2302
#define KXERR_STOC_STOC_FILE         2303
#define KXERR_STOC_CORE_MPI          2304
#define KXERR_STOC_STOC_MPI          2305
#define KXERR_STOC_OPEN_CORE         2306
#define KXERR_STOC_OPEN_TIME         2307
#define KXERR_STOC_OPEN_STOC         2308
#define KXERR_STOC_NOT_LOADED        2309
#define KXERR_STOC_PARAM_NOT_IN_STOC 2310
#define KXERR_STOC_PARAM_NOT_IN_TIME 2311
#define KXERR_STOC_SCENARIO_ORDER    2312
#define KXERR_STOC_ALREADY_LOADED    2313
#define KXERR_STOC_BAD_SCENARIO_CDF  2314
#define KXERR_STOC_NO_PARAMS_IN_CORE 2315
#define KXERR_STOC_CORE_TIME_COUNT   2316
#define KXERR_STOC_BAD_PARAM_INDEX   2317
#define KXERR_STOC_UNEXPECTED_PARAM  2318
#define KXERR_STOC_TIME_STOC_COUNT   2319
#define KXERR_STOC_NO_OUTCOME        2320
#define KXERR_STOC_INFO_UNAVAILABLE  2321
#define KXERR_STOC_BOUND_NAME        2322
#define KXERR_STOC_OBJ_NAME          2323
#define KXERR_STOC_RHS_NAME          2324
#define KXERR_STOC_RANGE_NAME        2325
#define KXERR_STOC_TOKEN             2326
#define KXERR_STOC_NO_ROOT           2327
#define KXERR_STOC_NODE_UNBOUNDED    2328
#define KXERR_STOC_NODE_INFEASIBLE   2329
#define KXERR_STOC_TOO_MANY_SCENARIOS 2330
#define KXERR_STOC_NODE_NUMERICS     2331
#define KXERR_STOC_AGGREGATION       2332
#define KXERR_STOC_TREE_NOT_READY    2333
#define KXERR_STOC_BAD_STAGE         2334
#define KXERR_STOC_BAD_ALGORITHM     2335
#define KXERR_STOC_BAD_CORE_STAGES   2336
#define KXERR_STOC_TEMPORAL_ORDER    2337
#define KXERR_STOC_BAD_TIME_STAGES   2338
#define KXERR_STOC_CORE_TIME         2339
#define KXERR_STOC_BAD_CDF           2340
#define KXERR_BAD_DISTRIBUTION_TYPE  2341
#define KXERR_DIST_SCALE             2342
#define KXERR_DIST_SHAPE             2343
#define KXERR_DIST_PROBABILITY       2344
#define KXERR_DIST_NO_DERIVATIVE     2345
#define KXERR_DIST_STDDEV            2346
#define KXERR_DIST_BAD_VALUE         2347
#define KXERR_DIST_BAD_PARAMS        2348
#define KXERR_DIST_ROOT_ITERLIMIT    2349
#define KXERR_ARRAY_OUT_OF_BOUNDS    2350
#define KXERR_DIST_NO_PDF_LIMIT      2351
#define KXERR_RG_NOT_SET             2352
#define KXERR_DIST_TRUNCATED         2353
#define KXERR_STOC_MISSING_PARAM     2354
#define KXERR_DIST_PARAM_COUNT       2355
#define KXERR_STOC_CORE_ORDER        2357
#define KXERR_SAMP_BAD_SIZE          2358
#define KXERR_STOC_CONT_PROBABILITY  2359
#define KXERR_STOC_TREE_TOO_BIG      2360
#define KXERR_BAD_CORRELATION_TYPE   2361
#define KXERR_STOC_STAGES_NOT_SET    2362
#define KXERR_STOC_SAMPLED_TREE      2363
#define KXERR_STOC_EVENTS_NOT_LOADED 2364
#define KXERR_STOC_TREE_ALREADY_INIT 2365
#define KXERR_RG_SEED_NOT_SET        2366
#define KXERR_SAMP_ALL_USED          2367
#define KXERR_SAMP_EXPLICIT          2368
#define KXERR_SAMP_NOT_GENERATED     2369
#define KXERR_SAMP_ALREADY_GENERATED 2370
#define KXERR_SAMP_TOO_SMALL         2371
#define KXERR_RG_ALREADY_SET         2372
#define KXERR_SAMP_BLOCK_DIST        2373
#define KXERR_STOC_STAGE_NO_PARAMS   2374
#define KXERR_STOC_STAGE_NO_ROWS     2375
#define KXERR_STOC_STAGE_NO_COLS     2376
#define KXERR_SAMP_SIZE_CONFLICT     2377
#define KXERR_STOC_EMPTY_SCENARIO    2378
#define KXERR_SAMP_NO_CORRELATION    2379
#define KXERR_DIST_NO_TABLE          2380
#define KXERR_SAMP_NO_CONTINUOUS     2381
#define KXERR_CHANCE_ROW_TAKEN       2382
#define KXERR_CHANCE_NONE_LOADED     2383

/* ------------------------------------------------------------------------ */
/* Information ids (KXgetInfo): IINFO reads an int, DINFO a double.         */
/* ------------------------------------------------------------------------ */
#define KX_IINFO_OBJSENSE               22
#define KX_IINFO_VER_MAJOR             990
#define KX_IINFO_VER_MINOR             991
#define KX_IINFO_VER_BUILD             992
#define KX_IINFO_VER_REVISION          993
#define KX_IINFO_NUM_CONS             1200
#define KX_IINFO_NUM_VARS             1201
#define KX_IINFO_NUM_NONZ             1202
#define KX_IINFO_NUM_BIN              1203
#define KX_IINFO_NUM_INT              1204
#define KX_IINFO_NUM_CONT             1205
#define KX_IINFO_NUM_QC_NONZ          1206
#define KX_IINFO_NUM_NLP_NONZ         1207
#define KX_IINFO_NUM_NLPOBJ_NONZ      1208
#define KX_IINFO_NUM_RDCONS           1209
#define KX_IINFO_NUM_RDVARS           1210
#define KX_IINFO_NUM_RDNONZ           1211
#define KX_IINFO_NUM_RDINT            1212
#define KX_IINFO_LEN_VARNAMES         1213
#define KX_IINFO_LEN_CONNAMES         1214
#define KX_IINFO_NUM_NLP_CONS         1215
#define KX_IINFO_NUM_NLP_VARS         1216
#define KX_IINFO_NUM_SUF_ROWS         1217
#define KX_IINFO_NUM_IIS_ROWS         1218
#define KX_IINFO_NUM_SUF_BNDS         1219
#define KX_IINFO_NUM_IIS_BNDS         1220
#define KX_IINFO_NUM_SUF_COLS         1221
#define KX_IINFO_NUM_IUS_COLS         1222
#define KX_IINFO_NUM_CONES            1223
#define KX_IINFO_NUM_CONE_NONZ        1224
#define KX_IINFO_LEN_CONENAMES        1225
#define KX_DINFO_INST_VAL_MIN_COEF    1226
#define KX_IINFO_INST_VARNDX_MIN_COEF 1227
#define KX_IINFO_INST_CONNDX_MIN_COEF 1228
#define KX_DINFO_INST_VAL_MAX_COEF    1229
#define KX_IINFO_INST_VARNDX_MAX_COEF 1230
#define KX_IINFO_INST_CONNDX_MAX_COEF 1231
/* Row counts by kind; numbers assigned by this library. */
#define KX_IINFO_NUM_CONS_L           1232
#define KX_IINFO_NUM_CONS_G           1233
#define KX_IINFO_NUM_CONS_E           1234
#define KX_IINFO_NUM_CONS_R           1235
#define KX_IINFO_NUM_CONS_N           1236
#define KX_IINFO_NUM_SPARS            1249
#define KX_IINFO_METHOD               1250
#define KX_DINFO_POBJ                 1251
#define KX_DINFO_DOBJ                 1252
#define KX_DINFO_PINFEAS              1253
#define KX_DINFO_DINFEAS              1254
#define KX_IINFO_MODEL_STATUS         1255
#define KX_IINFO_PRIMAL_STATUS        1256
#define KX_IINFO_DUAL_STATUS          1257
#define KX_IINFO_BASIC_STATUS         1258
#define KX_IINFO_BAR_ITER             1259
#define KX_IINFO_SIM_ITER             1260
#define KX_IINFO_NLP_ITER             1261
#define KX_IINFO_ELAPSED_TIME         1262
#define KX_DINFO_MSW_POBJ             1263
#define KX_IINFO_MSW_PASS             1264
#define KX_IINFO_MSW_NSOL             1265
#define KX_IINFO_IPM_STATUS           1266
#define KX_DINFO_IPM_POBJ             1267
#define KX_DINFO_IPM_DOBJ             1268
#define KX_DINFO_IPM_PINFEAS          1269
#define KX_DINFO_IPM_DINFEAS          1270
#define KX_IINFO_NLP_CALL_FUN         1271
#define KX_IINFO_NLP_CALL_DEV         1272
#define KX_IINFO_NLP_CALL_HES         1273
#define KX_IINFO_MIP_STATUS           1300
#define KX_DINFO_MIP_OBJ              1301
#define KX_DINFO_MIP_BESTBOUND        1302
#define KX_IINFO_MIP_SIM_ITER         1303
#define KX_IINFO_MIP_BAR_ITER         1304
#define KX_IINFO_MIP_NLP_ITER         1305
#define KX_IINFO_MIP_BRANCHCOUNT      1306
#define KX_IINFO_MIP_NEWIPSOL         1307
#define KX_IINFO_MIP_LPCOUNT          1308
#define KX_IINFO_MIP_ACTIVENODES      1309
#define KX_IINFO_MIP_LTYPE            1310
#define KX_IINFO_MIP_AOPTTIMETOSTOP   1311
#define KX_IINFO_MIP_NUM_TOTAL_CUTS   1312
#define KX_IINFO_MIP_GUB_COVER_CUTS   1313
#define KX_IINFO_MIP_FLOW_COVER_CUTS  1314
#define KX_IINFO_MIP_LIFT_CUTS        1315
#define KX_IINFO_MIP_PLAN_LOC_CUTS    1316
#define KX_IINFO_MIP_DISAGG_CUTS      1317
#define KX_IINFO_MIP_KNAPSUR_COVER_CUTS 1318
#define KX_IINFO_MIP_LATTICE_CUTS     1319
#define KX_IINFO_MIP_GOMORY_CUTS      1320
#define KX_IINFO_MIP_COEF_REDC_CUTS   1321
#define KX_IINFO_MIP_GCD_CUTS         1322
#define KX_IINFO_MIP_OBJ_CUT          1323
#define KX_IINFO_MIP_BASIS_CUTS       1324
#define KX_IINFO_MIP_CARDGUB_CUTS     1325
#define KX_IINFO_MIP_CLIQUE_CUTS      1326
#define KX_IINFO_MIP_CONTRA_CUTS      1327
#define KX_IINFO_MIP_GUB_CONS         1328
#define KX_IINFO_MIP_GLB_CONS         1329
#define KX_IINFO_MIP_PLANTLOC_CONS    1330
#define KX_IINFO_MIP_DISAGG_CONS      1331
#define KX_IINFO_MIP_SB_CONS          1332
#define KX_IINFO_MIP_IKNAP_CONS       1333
#define KX_IINFO_MIP_KNAP_CONS        1334
#define KX_IINFO_MIP_NLP_CONS         1335
#define KX_IINFO_MIP_CONT_CONS        1336
#define KX_DINFO_MIP_TOT_TIME         1347
#define KX_DINFO_MIP_OPT_TIME         1348
#define KX_DINFO_MIP_HEU_TIME         1349
#define KX_IINFO_MIP_SOLSTATUS_LAST_BRANCH 1350
#define KX_DINFO_MIP_SOLOBJVAL_LAST_BRANCH 1351
#define KX_IINFO_MIP_HEU_LEVEL        1352
#define KX_DINFO_MIP_PFEAS            1353
#define KX_DINFO_MIP_INTPFEAS         1354
#define KX_DINFO_GOP_OBJ              1650
#define KX_IINFO_GOP_SIM_ITER         1651
#define KX_IINFO_GOP_BAR_ITER         1652
#define KX_IINFO_GOP_NLP_ITER         1653
#define KX_DINFO_GOP_BESTBOUND        1654
#define KX_IINFO_GOP_STATUS           1655
#define KX_IINFO_GOP_LPCOUNT          1656
#define KX_IINFO_GOP_NLPCOUNT         1657
#define KX_IINFO_GOP_MIPCOUNT         1658
#define KX_IINFO_GOP_NEWSOL           1659
#define KX_IINFO_GOP_BOX              1660
#define KX_IINFO_GOP_BBITER           1661
#define KX_IINFO_GOP_SUBITER          1662
#define KX_IINFO_GOP_MIPBRANCH        1663
#define KX_IINFO_GOP_ACTIVEBOXES      1664
#define KX_IINFO_GOP_TOT_TIME         1665
#define KX_IINFO_GOP_MAXDEPTH         1666
#define KX_DINFO_GOP_SIM_ITER         1669
#define KX_DINFO_GOP_BAR_ITER         1670
#define KX_DINFO_GOP_NLP_ITER         1671
#define KX_DINFO_GOP_LPCOUNT          1672
#define KX_DINFO_GOP_NLPCOUNT         1673
#define KX_DINFO_GOP_MIPCOUNT         1674
#define KX_DINFO_GOP_BBITER           1675
#define KX_DINFO_GOP_SUBITER          1676
#define KX_DINFO_GOP_MIPBRANCH        1677
#define KX_DINFO_GOP_FIRST_TIME       1678
#define KX_DINFO_GOP_BEST_TIME        1679
#define KX_DINFO_SUB_OBJ              1700
#define KX_DINFO_SUB_PINF             1701
#define KX_DINFO_CUR_OBJ              1702
#define KX_IINFO_CUR_ITER             1703
#define KX_DINFO_CUR_BEST_BOUND       1704
#define KX_IINFO_CUR_STATUS           1705
#define KX_IINFO_CUR_LP_COUNT         1706
#define KX_IINFO_CUR_BRANCH_COUNT     1707
#define KX_IINFO_CUR_ACTIVE_COUNT     1708
#define KX_IINFO_CUR_NLP_COUNT        1709
#define KX_IINFO_CUR_MIP_COUNT        1710
#define KX_IINFO_CUR_CUT_COUNT        1711
#define KX_DINFO_GEN_PERCENT          1800
#define KX_IINFO_GEN_NONZ_TTL         1801
#define KX_IINFO_GEN_NONZ_NL          1802
#define KX_IINFO_GEN_ROW_NL           1803
#define KX_IINFO_GEN_VAR_NL           1804
#define KX_IINFO_IIS_BAR_ITER         1850
#define KX_IINFO_IIS_SIM_ITER         1851
#define KX_IINFO_IIS_TOT_TIME         1856
#define KX_IINFO_IIS_ACT_NODE         1857
#define KX_IINFO_IIS_LPCOUNT          1858
#define KX_IINFO_IIS_NLPCOUNT         1859
#define KX_IINFO_IIS_MIPCOUNT         1860
#define KX_IINFO_IUS_BAR_ITER         1861
#define KX_IINFO_IUS_SIM_ITER         1862
#define KX_IINFO_IUS_TOT_TIME         1867
#define KX_IINFO_IUS_ACT_NODE         1868
#define KX_IINFO_IUS_LPCOUNT          1869
#define KX_IINFO_IUS_NLPCOUNT         1870
#define KX_IINFO_IUS_MIPCOUNT         1871
#define KX_IINFO_ERR_OPTIM            1999
#define KX_DINFO_STOC_EVOBJ           2201
#define KX_DINFO_STOC_EVPI            2202
#define KX_DINFO_STOC_NUM_SCENARIOS   2221
#define KX_IINFO_STOC_NUM_STAGES      2222
#define KX_DINFO_STOC_NUM_COLS_DETEQI 2231
#define KX_DINFO_STOC_NUM_ROWS_DETEQI 2233

/* ------------------------------------------------------------------------ */
/* Parameter ids                                                            */
/* ------------------------------------------------------------------------ */
/* @@PARAMETER-IDS-BEGIN@@ */
/* @@PARAMETER-IDS-END@@ */

/* ------------------------------------------------------------------------ */
/* Environment and model                                                    */
/* ------------------------------------------------------------------------ */
/* Create an environment; null on failure with the code in *pnErrorcode. */
KX_API pEnv KXcreateEnv(int *pnErrorcode);
/* Delete an environment and every model it still holds; *ppEnv becomes null. */
KX_API int KXdeleteEnv(pEnv *ppEnv);
/* Create an empty model in env, with a copy of env's parameters at this moment. */
KX_API pModel KXcreateModel(pEnv env, int *pnErrorcode);
/* Delete a model; a null pointer is no error. */
KX_API int KXdeleteModel(pModel *ppModel);
/* Return a model to the unloaded state. */
KX_API int KXclearModel(pModel model);
/* Free the simplex state (warm-start data); the solution stays readable. */
KX_API int KXfreeSolverMemory(pModel model);
/* Free the LP, MIP or global solution record. */
KX_API int KXfreeSolutionMemory(pModel model);
KX_API int KXfreeMIPSolutionMemory(pModel model);
KX_API int KXfreeGOPSolutionMemory(pModel model);
/* Free the name hash tables. */
KX_API int KXfreeHashMemory(pModel model);

/*
 * Load a linear program.  Columns in the three-vector form (paiAcols of n+1 starts,
 * pacAcols null) or four-vector form (with lengths; gaps between columns are kept).
 * Negative nCons, nVars or nAnnz give 2024 and leave the model unloaded.
 */
KX_API int KXloadLPData(pModel model, int nCons, int nVars, int nObjSense, double dObjConst,
                        const double *padC, const double *padB, const char *pszConTypes,
                        int nAnnz, const int *paiAcols, const int *pacAcols,
                        const double *padAcoef, const int *paiArows,
                        const double *padL, const double *padU);

/* Plant a solution status by hand: nStatus in 1..7, 10, 11, 12, 14; nErrorcode 0 or 2001..2383. */
KX_API int KXloadModelStatus(pModel model, int nStatus, int nErrorcode);

/* ------------------------------------------------------------------------ */
/* Solutions                                                                */
/* ------------------------------------------------------------------------ */
KX_API int KXgetPrimalSolution(pModel model, double *padX);
KX_API int KXgetDualSolution(pModel model, double *padY);
KX_API int KXgetReducedCosts(pModel model, double *padDj);
KX_API int KXgetSlacks(pModel model, double *padS);
KX_API int KXgetObjective(pModel model, double *pdObjval);
/* Basis statuses of columns (n) and rows (m); either output may be null. */
KX_API int KXgetBasis(pModel model, int *panCstatus, int *panRstatus);
KX_API int KXgetSolutionStatus(pModel model, int *pnStatus);
/* One solution vector by item KX_SOL_X .. KX_SOL_IPM_DJ. */
KX_API int KXgetSolution(pModel model, int nItem, double *padValues);
/* Summary of the last solve; null outputs are skipped. */
KX_API int KXgetSolutionInfo(pModel model, int *pnMethod, int *pnElapsed, int *pnSpxIter,
                             int *pnBarIter, int *pnNlpIter, int *pnPrimStatus,
                             int *pnDualStatus, int *pnBasStatus, double *pdPobj,
                             double *pdDobj, double *pdPinfeas, double *pdDinfeas);
/* One information item; pResult points to an int (IINFO) or a double (DINFO). */
KX_API int KXgetInfo(pModel model, int nQuery, void *pResult);

/* ------------------------------------------------------------------------ */
/* Messages, file errors and logging                                         */
/* ------------------------------------------------------------------------ */
/* Copy the text of an error code into pachMessage (at least 1024 bytes). */
KX_API int KXgetErrorMessage(pEnv env, int nErrorcode, char *pachMessage);
/* Line number and text (at least 1024 bytes) of the last bad line a reader met. */
KX_API int KXgetFileError(pEnv env, int *pnLinenum, char *pachLinetxt);
/* Row index stored with the model's last row error. */
KX_API int KXgetErrorRowIndex(pModel model, int *pnRow);
KX_API int KXsetEnvLogfunc(pEnv env, KXenvLogfunc pfLogfunc, void *pvUserData);
KX_API int KXsetModelLogfunc(pModel model, KXmodelLogfunc pfLogfunc, void *pvUserData);
/* Re-arm the SIGINT handler that sets the interrupt flag polled by the solvers. */
KX_API int KXresetctrlc(void);

/* ------------------------------------------------------------------------ */
/* Parameters                                                               */
/* ------------------------------------------------------------------------ */
/* @@PARAMETER-API-BEGIN@@ */
/* @@PARAMETER-API-END@@ */

/* ------------------------------------------------------------------------ */
/* Extended model data, data getters and model files                        */
/* ------------------------------------------------------------------------ */
/* @@MODEL-DATA-API-BEGIN@@ */
/* @@MODEL-DATA-API-END@@ */

#ifdef __cplusplus
}
#endif

#endif /* KORVA_H */
