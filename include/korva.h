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
/* General and LP */
#define KX_IPARAM_OBJSENSE                       22
#define KX_DPARAM_CALLBACKFREQ                   23
#define KX_DPARAM_OBJPRINTMUL                    24
#define KX_IPARAM_CHECK_FOR_ERRORS               25
#define KX_IPARAM_ALLOW_CNTRLBREAK               26
#define KX_IPARAM_DECOMPOSITION_TYPE             27
#define KX_IPARAM_LP_SCALE                       29
#define KX_IPARAM_LP_ITRLMT                      30
#define KX_IPARAM_SPLEX_PPRICING                 31
#define KX_IPARAM_SPLEX_REFACFRQ                 32
#define KX_IPARAM_BARRIER_SOLVER                 33
#define KX_IPARAM_PROB_TO_SOLVE                  34
#define KX_IPARAM_LP_PRINTLEVEL                  35
#define KX_IPARAM_MPS_OBJ_WRITESTYLE             36
#define KX_IPARAM_SPLEX_DPRICING                 37
#define KX_IPARAM_SOL_REPORT_STYLE               38
#define KX_IPARAM_INSTRUCT_LOADTYPE              39
#define KX_IPARAM_SPLEX_DUAL_PHASE               40
#define KX_IPARAM_LP_PRELEVEL                    41
#define KX_IPARAM_STRING_LENLMT                  42
#define KX_IPARAM_USE_NAMEDATA                   43
#define KX_IPARAM_SPLEX_USE_EXTERNAL             44
#define KX_IPARAM_SOLVER_IUSOL                   51
#define KX_IPARAM_SOLVER_TIMLMT                  52
#define KX_DPARAM_SOLVER_CUTOFFVAL               53
#define KX_DPARAM_SOLVER_FEASTOL                 54
#define KX_IPARAM_SOLVER_RESTART                 55
#define KX_IPARAM_SOLVER_IPMSOL                  56
#define KX_DPARAM_SOLVER_OPTTOL                  57
#define KX_IPARAM_SOLVER_USECUTOFFVAL            58
#define KX_IPARAM_SOLVER_PRE_ELIM_FILL           59
#define KX_DPARAM_SOLVER_TIMLMT                  60
#define KX_IPARAM_SOLVER_CONCURRENT_OPTMODE      61
#define KX_DPARAM_LP_MIN_FEASTOL                 4060
#define KX_DPARAM_LP_MAX_FEASTOL                 4061
#define KX_DPARAM_LP_MIN_OPTTOL                  4062
#define KX_DPARAM_LP_MAX_OPTTOL                  4063
#define KX_DPARAM_LP_AIJ_ZEROTOL                 4066
#define KX_DPARAM_LP_PIV_ZEROTOL                 4067
#define KX_DPARAM_LP_PIV_BIGTOL                  4068
#define KX_DPARAM_LP_BIGM                        4069
#define KX_DPARAM_LP_BNDINF                      4070
#define KX_DPARAM_LP_INFINITY                    4071
#define KX_IPARAM_LP_PPARTIAL                    4072
#define KX_IPARAM_LP_DRATIO                      4074
#define KX_IPARAM_LP_RATRANGE                    4076
#define KX_IPARAM_LP_DPSWITCH                    4077
#define KX_IPARAM_LP_PALLOC                      4078
#define KX_IPARAM_LP_PRTFG                       4079
#define KX_IPARAM_LP_OPRFREE                     4080
/* LU */
#define KX_IPARAM_LU_NUM_CANDITS                 4800
#define KX_IPARAM_LU_MAX_UPDATES                 4801
#define KX_IPARAM_LU_PRINT_LEVEL                 4802
#define KX_IPARAM_LU_UPDATE_TYPE                 4803
#define KX_IPARAM_LU_USE_PIVCOL                  4804
#define KX_IPARAM_LU_PIVMOD                      4806
#define KX_DPARAM_LU_EPS_DIAG                    4900
#define KX_DPARAM_LU_EPS_NONZ                    4901
#define KX_DPARAM_LU_EPS_PIVABS                  4902
#define KX_DPARAM_LU_EPS_PIVREL                  4903
#define KX_DPARAM_LU_INI_RCOND                   4904
#define KX_DPARAM_LU_SPVTOL_UPDATE               4905
#define KX_DPARAM_LU_SPVTOL_FTRAN                4906
#define KX_DPARAM_LU_SPVTOL_BTRAN                4907
/* Barrier */
#define KX_DPARAM_IPM_TOL_INFEAS                 150
#define KX_DPARAM_IPM_CO_TOL_INFEAS              162
#define KX_DPARAM_IPM_TOL_PATH                   151
#define KX_DPARAM_IPM_TOL_PFEAS                  152
#define KX_DPARAM_IPM_CO_TOL_PFEAS               163
#define KX_DPARAM_IPM_TOL_REL_STEP               153
#define KX_DPARAM_IPM_TOL_PSAFE                  154
#define KX_DPARAM_IPM_TOL_DFEAS                  155
#define KX_DPARAM_IPM_CO_TOL_DFEAS               164
#define KX_DPARAM_IPM_TOL_DSAFE                  156
#define KX_DPARAM_IPM_TOL_MU_RED                 157
#define KX_DPARAM_IPM_CO_TOL_MU_RED              165
#define KX_DPARAM_IPM_BASIS_REL_TOL_S            158
#define KX_DPARAM_IPM_BASIS_TOL_S                159
#define KX_DPARAM_IPM_BASIS_TOL_X                160
#define KX_DPARAM_IPM_BI_LU_TOL_REL_PIV          161
#define KX_IPARAM_IPM_MAX_ITERATIONS             166
#define KX_IPARAM_IPM_OFF_COL_TRH                167
#define KX_IPARAM_IPM_NUM_THREADS                168
/* Nonlinear */
#define KX_IPARAM_NLP_SOLVE_AS_LP                200
#define KX_IPARAM_NLP_SOLVER                     201
#define KX_IPARAM_NLP_SUBSOLVER                  202
#define KX_IPARAM_NLP_PRINTLEVEL                 203
#define KX_DPARAM_NLP_PSTEP_FINITEDIFF           204
#define KX_IPARAM_NLP_DERIV_DIFFTYPE             205
#define KX_DPARAM_NLP_FEASTOL                    206
#define KX_DPARAM_NLP_REDGTOL                    207
#define KX_IPARAM_NLP_USE_CRASH                  208
#define KX_IPARAM_NLP_USE_STEEPEDGE              209
#define KX_IPARAM_NLP_USE_SLP                    210
#define KX_IPARAM_NLP_USE_SELCONEVAL             211
#define KX_IPARAM_NLP_PRELEVEL                   212
#define KX_IPARAM_NLP_ITRLMT                     213
#define KX_IPARAM_NLP_LINEARZ                    214
#define KX_IPARAM_NLP_LINEARITY                  215
#define KX_IPARAM_NLP_STARTPOINT                 216
#define KX_IPARAM_NLP_CONVEXRELAX                217
#define KX_IPARAM_NLP_CR_ALG_REFORM              218
#define KX_IPARAM_NLP_QUADCHK                    219
#define KX_IPARAM_NLP_AUTODERIV                  220
#define KX_IPARAM_NLP_MAXLOCALSEARCH             221
#define KX_IPARAM_NLP_CONVEX                     222
#define KX_IPARAM_NLP_CONOPT_VER                 223
#define KX_IPARAM_NLP_USE_KORVA_CRASH            224
#define KX_IPARAM_NLP_STALL_ITRLMT               225
#define KX_IPARAM_NLP_AUTOHESS                   226
#define KX_IPARAM_NLP_FEASCHK                    227
/* Mixed-integer */
#define KX_IPARAM_MIP_TIMLIM                     300
#define KX_IPARAM_MIP_AOPTTIMLIM                 301
#define KX_IPARAM_MIP_LSOLTIMLIM                 302
#define KX_IPARAM_MIP_PRELEVEL                   303
#define KX_IPARAM_MIP_NODESELRULE                304
#define KX_DPARAM_MIP_INTTOL                     305
#define KX_DPARAM_MIP_RELINTTOL                  306
#define KX_DPARAM_MIP_RELOPTTOL                  307
#define KX_DPARAM_MIP_PEROPTTOL                  308
#define KX_IPARAM_MIP_MAXCUTPASS_TOP             309
#define KX_IPARAM_MIP_MAXCUTPASS_TREE            310
#define KX_DPARAM_MIP_ADDCUTPER                  311
#define KX_DPARAM_MIP_ADDCUTPER_TREE             312
#define KX_IPARAM_MIP_MAXNONIMP_CUTPASS          313
#define KX_IPARAM_MIP_CUTLEVEL_TOP               314
#define KX_IPARAM_MIP_CUTLEVEL_TREE              315
#define KX_IPARAM_MIP_CUTTIMLIM                  316
#define KX_IPARAM_MIP_CUTDEPTH                   317
#define KX_IPARAM_MIP_CUTFREQ                    318
#define KX_IPARAM_MIP_HEULEVEL                   319
#define KX_IPARAM_MIP_PRINTLEVEL                 320
#define KX_IPARAM_MIP_PREPRINTLEVEL              321
#define KX_IPARAM_MIP_USECUTOFFOBJ               323
#define KX_DPARAM_MIP_CUTOFFOBJ                  322
#define KX_IPARAM_MIP_STRONGBRANCHLEVEL          324
#define KX_IPARAM_MIP_TREEREORDERLEVEL           325
#define KX_IPARAM_MIP_BRANCHDIR                  326
#define KX_IPARAM_MIP_TOPOPT                     327
#define KX_IPARAM_MIP_REOPT                      328
#define KX_IPARAM_MIP_CONCURRENT_TOPOPTMODE      385
#define KX_IPARAM_MIP_CONCURRENT_REOPTMODE       386
#define KX_IPARAM_MIP_SOLVERTYPE                 329
#define KX_IPARAM_MIP_KEEPINMEM                  330
#define KX_IPARAM_MIP_BRANCHRULE                 331
#define KX_DPARAM_MIP_REDCOSTFIX_CUTOFF          332
#define KX_DPARAM_MIP_ADDCUTOBJTOL               333
#define KX_IPARAM_MIP_HEUMINTIMLIM               334
#define KX_IPARAM_MIP_BRANCH_PRIO                335
#define KX_IPARAM_MIP_SCALING_BOUND              336
#define KX_DPARAM_MIP_PSEUDOCOST_WEIGT           337
#define KX_DPARAM_MIP_LBIGM                      338
#define KX_DPARAM_MIP_DELTA                      339
#define KX_IPARAM_MIP_DUAL_SOLUTION              340
#define KX_IPARAM_MIP_BRANCH_LIMIT               341
#define KX_IPARAM_MIP_ITRLIM                     342
#define KX_IPARAM_MIP_AGGCUTLIM_TOP              343
#define KX_IPARAM_MIP_AGGCUTLIM_TREE             344
#define KX_DPARAM_MIP_SWITCHFAC_SIM_IPM_ITER     345
#define KX_IPARAM_MIP_ANODES_SWITCH_DF           346
#define KX_DPARAM_MIP_ABSOPTTOL                  347
#define KX_DPARAM_MIP_MINABSOBJSTEP              348
#define KX_IPARAM_MIP_PSEUDOCOST_RULE            349
#define KX_IPARAM_MIP_ENUM_HEUMODE               350
#define KX_IPARAM_MIP_PRELEVEL_TREE              351
#define KX_DPARAM_MIP_REDCOSTFIX_CUTOFF_TREE     352
#define KX_IPARAM_MIP_USE_INT_ZERO_TOL           353
#define KX_IPARAM_MIP_USE_CUTS_HEU               354
#define KX_DPARAM_MIP_BIGM_FOR_INTTOL            355
#define KX_IPARAM_MIP_STRONGBRANCHDONUM          366
#define KX_IPARAM_MIP_MAKECUT_INACTIVE_COUNT     367
#define KX_IPARAM_MIP_PRE_ELIM_FILL              368
#define KX_IPARAM_MIP_HEU_MODE                   369
#define KX_DPARAM_MIP_TIMLIM                     370
#define KX_DPARAM_MIP_AOPTTIMLIM                 371
#define KX_DPARAM_MIP_LSOLTIMLIM                 372
#define KX_DPARAM_MIP_CUTTIMLIM                  373
#define KX_DPARAM_MIP_HEUMINTIMLIM               374
#define KX_IPARAM_MIP_FP_MODE                    375
#define KX_DPARAM_MIP_FP_WEIGTH                  376
#define KX_IPARAM_MIP_FP_OPT_METHOD              377
#define KX_DPARAM_MIP_FP_TIMLIM                  378
#define KX_IPARAM_MIP_FP_ITRLIM                  379
#define KX_DPARAM_MIP_OBJ_THRESHOLD              380
#define KX_IPARAM_MIP_LOCALBRANCHNUM             381
#define KX_DPARAM_MIP_SWITCHFAC_SIM_IPM_TIME     382
#define KX_DPARAM_MIP_ITRLIM                     383
#define KX_IPARAM_MIP_MAXNUM_MIP_SOL_STORAGE     384
/* Global */
#define KX_DPARAM_GOP_OPTTOL                     400
#define KX_DPARAM_GOP_FLTTOL                     401
#define KX_DPARAM_GOP_BOXTOL                     402
#define KX_DPARAM_GOP_WIDTOL                     403
#define KX_DPARAM_GOP_DELTATOL                   404
#define KX_DPARAM_GOP_BNDLIM                     405
#define KX_IPARAM_GOP_TIMLIM                     406
#define KX_IPARAM_GOP_OPTCHKMD                   407
#define KX_IPARAM_GOP_BRANCHMD                   408
#define KX_IPARAM_GOP_MAXWIDMD                   409
#define KX_IPARAM_GOP_PRELEVEL                   410
#define KX_IPARAM_GOP_POSTLEVEL                  411
#define KX_IPARAM_GOP_BBSRCHMD                   412
#define KX_IPARAM_GOP_DECOMPPTMD                 413
#define KX_IPARAM_GOP_ALGREFORMMD                414
#define KX_IPARAM_GOP_RELBRNDMD                  415
#define KX_IPARAM_GOP_PRINTLEVEL                 416
#define KX_IPARAM_GOP_BNDLIM_MODE                417
#define KX_IPARAM_GOP_BRANCH_LIMIT               418
#define KX_IPARAM_GOP_CORELEVEL                  419
#define KX_IPARAM_GOP_OPT_MODE                   420
#define KX_IPARAM_GOP_HEU_MODE                   421
#define KX_IPARAM_GOP_SUBOUT_MODE                422
#define KX_IPARAM_GOP_USE_NLPSOLVE               423
#define KX_IPARAM_GOP_LSOLBRANLIM                424
#define KX_IPARAM_GOP_LPSOPT                     425
#define KX_DPARAM_GOP_TIMLIM                     426
#define KX_DPARAM_GOP_BRANCH_LIMIT               427
#define KX_IPARAM_GOP_QUADMD                     428
/* IIS and IUS */
#define KX_IPARAM_IIS_ANALYZE_LEVEL              550
#define KX_IPARAM_IUS_ANALYZE_LEVEL              551
#define KX_IPARAM_IIS_TOPOPT                     552
#define KX_IPARAM_IIS_REOPT                      553
#define KX_IPARAM_IIS_USE_SFILTER                554
#define KX_IPARAM_IIS_PRINT_LEVEL                555
#define KX_IPARAM_IIS_INFEAS_NORM                556
#define KX_IPARAM_IIS_ITER_LIMIT                 557
#define KX_IPARAM_IIS_TIME_LIMIT                 559
#define KX_IPARAM_IIS_METHOD                     560
#define KX_IPARAM_IIS_USE_EFILTER                561
#define KX_IPARAM_IIS_USE_GOP                    562
/* Stochastic */
#define KX_IPARAM_STOC_NSAMPLE_SPAR              600
#define KX_IPARAM_STOC_NSAMPLE_STAGE             601
#define KX_IPARAM_STOC_RG_SEED                   602
#define KX_IPARAM_STOC_METHOD                    603
#define KX_IPARAM_STOC_REOPT                     604
#define KX_IPARAM_STOC_TOPOPT                    605
#define KX_IPARAM_STOC_ITER_LIM                  606
#define KX_IPARAM_STOC_PRINT_LEVEL               607
#define KX_IPARAM_STOC_DETEQ_TYPE                608
#define KX_IPARAM_STOC_CALC_EVPI                 609
#define KX_IPARAM_STOC_SAMP_CONT_ONLY            611
#define KX_IPARAM_STOC_MAX_NUMSCENS              613
#define KX_IPARAM_STOC_SHARE_BEGSTAGE            614
#define KX_IPARAM_STOC_NODELP_PRELEVEL           615
#define KX_DPARAM_STOC_TIME_LIM                  616
#define KX_DPARAM_STOC_RELOPTTOL                 617
#define KX_DPARAM_STOC_ABSOPTTOL                 618
#define KX_IPARAM_STOC_DEBUG_MASK                619
#define KX_IPARAM_STOC_VARCONTROL_METHOD         620
#define KX_IPARAM_STOC_CORRELATION_TYPE          621
#define KX_IPARAM_STOC_WSBAS                     622
#define KX_DPARAM_STOC_SBD_OBJCUTVAL             638
#define KX_IPARAM_STOC_SBD_OBJCUTFLAG            639
#define KX_IPARAM_STOC_ALD_OUTER_ITER_LIM        623
#define KX_IPARAM_STOC_ALD_INNER_ITER_LIM        624
#define KX_DPARAM_STOC_ALD_DUAL_FEASTOL          625
#define KX_DPARAM_STOC_ALD_PRIMAL_FEASTOL        626
#define KX_DPARAM_STOC_ALD_DUAL_STEPLEN          627
#define KX_DPARAM_STOC_ALD_PRIMAL_STEPLEN        628
#define KX_IPARAM_CORE_ORDER_BY_STAGE            629
#define KX_IPARAM_STOC_MAP_MPI2LP                632
#define KX_IPARAM_STOC_AUTOAGGR                  633
#define KX_IPARAM_STOC_BENCHMARK_SCEN            634
#define KX_DPARAM_STOC_INFBND                    635
#define KX_IPARAM_STOC_ADD_MPI                   636
#define KX_IPARAM_STOC_ELIM_FXVAR                637
#define KX_IPARAM_STOC_SBD_NUMCANDID             640
#define KX_DPARAM_STOC_BIGM                      641
#define KX_IPARAM_STOC_NAMEDATA_LEVEL            642
/* Read-only */
#define KX_IPARAM_VER_MAJOR                      990
#define KX_IPARAM_VER_MINOR                      991
#define KX_IPARAM_VER_BUILD                      992
#define KX_IPARAM_VER_REVISION                   993
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
/* Solving                                                                  */
/* ------------------------------------------------------------------------ */
/* @@SOLVER-API-BEGIN@@ */
/*
 * KXoptimize solves a continuous model by nMethod (KX_METHOD_FREE, _PSIMPLEX,
 * _DSIMPLEX, _BARRIER, _NLP); *pnStatus receives the model status (KX_STATUS_).
 * The simplex state is kept on the model, so a second call on an unchanged or
 * slightly changed model starts warm.  Results besides 0: 2006 method not
 * usable for the model, 2016 iteration limit, 2017 time limit, 2019 numerical
 * trouble after every retry, 2023 stopped by the callback or an interrupt,
 * 2031 no model loaded.  After 2016, 2017 and 2023 the next call continues.
 */
KX_API int KXoptimize(pModel model, int nMethod, int *pnStatus);
/* Progress callback: called with a location (KX_CALLBACK_) at most every
 * KX_DPARAM_CALLBACKFREQ seconds, and once at the end of a solve; a nonzero
 * return stops the solve with 2023.  A null function removes the callback. */
KX_API int KXsetCallback(pModel model, KXcallback pfCallback, void *pvUserData);
/* @@SOLVER-API-END@@ */

/* @@PRESOLVE-API-BEGIN@@ */
/* Sizes of the model after the LP presolve at the model's KX_IPARAM_LP_PRELEVEL; null outputs are skipped. */
KX_API int KXgetReducedDim(pModel model, int *pnCons, int *pnVars, int *pnNonz);
/* Write the model after the LP presolve as an MPS file; nFormat as KXwriteMPSFile. */
KX_API int KXwriteReducedMPSFile(pModel model, const char *pszFname, int nFormat);
/* @@PRESOLVE-API-END@@ */

/* ------------------------------------------------------------------------ */
/* Parameters                                                               */
/* ------------------------------------------------------------------------ */
/* @@MODIFY-API-BEGIN@@ */
/* ------------------------------------------------------------------------ */
/* Model modification.  A count of 0 is a no-op; indices out of range give   */
/* 2012 and leave the model unchanged.  Changes of right-hand sides, bounds, */
/* costs and row types keep the simplex state, so the next solve is warm;    */
/* changes of the matrix's shape keep the basis of the last solution.        */
/* ------------------------------------------------------------------------ */
/* Right-hand sides of the nCons rows listed. */
KX_API int KXmodifyRHS(pModel model, int nCons, const int *paiCons, const double *padValues);
/* Lower bounds of the nVars columns listed (2047 for a semi-continuous column). */
KX_API int KXmodifyLowerBounds(pModel model, int nVars, const int *paiVars, const double *padL);
/* Upper bounds of the nVars columns listed (2047 for a semi-continuous column). */
KX_API int KXmodifyUpperBounds(pModel model, int nVars, const int *paiVars, const double *padU);
/* Costs of the nVars columns listed. */
KX_API int KXmodifyObjective(pModel model, int nVars, const int *paiVars, const double *padC);
/* The objective constant. */
KX_API int KXmodifyObjConstant(pModel model, double dObjConst);
/* Row types 'E', 'L', 'G', 'N' of the rows listed (2024 for another type). */
KX_API int KXmodifyConstraintType(pModel model, int nCons, const int *paiCons,
                                  const char *pszConTypes);
/* Variable types 'C', 'B', 'I' of the columns listed (2041 for another type). */
KX_API int KXmodifyVariableType(pModel model, int nVars, const int *paiVars,
                                const char *pszVarTypes);
/* Coefficients of column iVar in the nCons rows listed (entries added where absent). */
KX_API int KXmodifyAj(pModel model, int iVar, int nCons, const int *paiCons, const double *padAj);
/* One coefficient of A. */
KX_API int KXmodifyAij(pModel model, int iCon, int iVar, double dAij);
/* Remove the entries of column iVar in the nCons rows listed. */
KX_API int KXdeleteAj(pModel model, int iVar, int nCons, const int *paiCons);
/* Append nCons rows given by rows: types (null: all 'E', else 2004 for a bad one), names (null:
   none), starts paiArows[0..nCons] into padAcoef and the column indices paiAcols (null: empty rows;
   a column twice in a row gives 2032), right-hand sides (null: 0). */
KX_API int KXaddConstraints(pModel model, int nCons, const char *pszConTypes, char **paszConNames,
                            const int *paiArows, const double *padAcoef, const int *paiAcols,
                            const double *padB);
/* Append nVars columns: types (null: continuous, 2024 for a bad one), names, starts and lengths
   as in KXloadLPData (null starts: empty columns), costs (null: 0), bounds (null: 0 and 1e30). */
KX_API int KXaddVariables(pModel model, int nVars, const char *pszVarTypes, char **paszVarNames,
                          const int *paiAcols, const int *pacAcols, const double *padAcoef,
                          const int *paiArows, const double *padC, const double *padL,
                          const double *padU);
/* Remove the rows listed (2032 for a row listed twice). */
KX_API int KXdeleteConstraints(pModel model, int nCons, const int *paiCons);
/* Remove the columns listed (2032 for a column listed twice). */
KX_API int KXdeleteVariables(pModel model, int nVars, const int *paiVars);
/* Allocation sizes for rows, columns, nonzeroes of A, quadratic terms, cone members, sets and set
   members; -1 leaves a size alone and sizes below what is in use are ignored. */
KX_API int KXsetProbAllocSizes(pModel model, int nCons, int nVars, int nAnnz, int nQCnnz,
                               int nConeNnz, int nSets, int nSetNnz);
/* Make free room for at least paiColnnz[j] entries in each column j (n entries). */
KX_API int KXaddEmptySpacesAcolumns(pModel model, const int *paiColnnz);
/* Semi-continuous data of the nSC columns listed: true lower and upper bounds. */
KX_API int KXmodifySemiContVars(pModel model, int nSC, const int *paiVars, const double *padL,
                                const double *padU);
/* The columns listed stop being semi-continuous (their lower bound becomes the true one). */
KX_API int KXdeleteSemiContVars(pModel model, int nSC, const int *paiVars);
/* Append nSets sets as KXloadSETSData gives them. */
KX_API int KXaddSETS(pModel model, int nSets, const char *pszSETStype, const int *paiCARDnum,
                     const int *paiSETSbegcol, const int *paiSETScols);
/* Remove the sets listed. */
KX_API int KXdeleteSETS(pModel model, int nSets, const int *paiSets);
/* Replace set iSet by the type, cardinality and nCols members given. */
KX_API int KXmodifySET(pModel model, int iSet, char chType, int nCard, int nCols, const int *paiCols);
/* Append nCones cones as KXloadConeData gives them. */
KX_API int KXaddCones(pModel model, int nCones, const char *pszConeTypes, const int *paiConebegcol,
                      const int *paiConecols);
/* Remove the cones listed. */
KX_API int KXdeleteCones(pModel model, int nCones, const int *paiCones);
/* Replace cone iCone by the type and nCols members given. */
KX_API int KXmodifyCone(pModel model, int iCone, char chType, int nCols, const int *paiCols);
/* Add nQCnnz quadratic terms as KXloadQCData gives them (terms that meet are summed). */
KX_API int KXaddQCterms(pModel model, int nQCnnz, const int *paiQCrows, const int *paiQCcols1,
                        const int *paiQCcols2, const double *padQCcoef);
/* Remove every quadratic term of the nRows rows listed (-1 is the objective). */
KX_API int KXdeleteQCterms(pModel model, int nRows, const int *paiRows);
/* @@MODIFY-API-END@@ */

/* @@FILES-API-BEGIN@@ */
/* ------------------------------------------------------------------------ */
/* LP and KORVA text models; basis, start point, priority and solution files */
/* ------------------------------------------------------------------------ */
/*
 * Text model readers load an unloaded model (else 2030).  A syntax fault gives
 * 2025 (KXERR_ERROR_IN_INPUT) and KXgetFileError names its line; a file that
 * cannot be read gives 2002.  A failing read leaves the model unloaded.
 *
 * LP text: "\" comments; Maximize/Minimize (max, min, maximum, minimise...);
 * Subject To (st, s.t., such that); rows "[name:] expr rel expr" with terms and
 * constants on either side, or "[name:] c1 rel expr rel c2" for a ranged row;
 * sections Bounds, General(s)/Integers, Binary/Binaries, Semi-continuous/Semis,
 * SOS ("[name:] S1:: x:1 y:2", S1, S2, S3, or C<k>:: for a cardinality-k set)
 * in any order; End.  Section words count at the start of a line only; terms
 * after the first need a sign; the right-hand side of a row ends with its line.
 * Names in the sections that no row or objective holds are skipped with a log line.
 *
 * KORVA text (.kvx): "!" comments; optional TITLE line; MAX/MIN and the
 * objective; SUBJECT TO; rows "[name)] expr rel expr"; END; then statements
 * FREE name, SUB name value, SLB name value, GIN name (general integer),
 * INT name (binary) and RANGE row value (as in MPS RANGES).
 * A stream's model takes the title "stream_%x" (a checksum of the text), a
 * file's model its path (LP) or its TITLE line (KORVA).
 */
KX_API int KXreadLPFile(pModel model, const char *pszFname);
/* Read LP text of nStreamLen bytes (no terminator needed); below 3 bytes: 2025. */
KX_API int KXreadLPStream(pModel model, const char *pszStream, int nStreamLen);
KX_API int KXreadKORVAFile(pModel model, const char *pszFname);
/* Read KORVA text of nStreamLen bytes (no terminator needed); below 3 bytes: 2025. */
KX_API int KXreadKORVAStream(pModel model, const char *pszStream, int nStreamLen);
/*
 * Writers (gzip-compressed when the name ends in .gz).  Names are written as the
 * format can hold them: a character that cannot stand in a name becomes "_", a
 * bad first character gets a leading "_", and a name that clashes or reads as a
 * section word takes "C%07d" / "R%07d".  Numbers are exact.  2029 for data the
 * format cannot hold (quadratic, cone and nonlinear data; sets and
 * semi-continuous columns in KORVA text), 2031 for an unloaded model.
 */
KX_API int KXwriteLPFile(pModel model, const char *pszFname);
KX_API int KXwriteKORVAFile(pModel model, const char *pszFname);
/* Write the explicit dual of a linear model (integrality dropped) as KORVA text. */
KX_API int KXwriteDualKORVAFile(pModel model, const char *pszFname);

/* Basis file forms for KXwriteBasis: 1 binary (n column then m row statuses as
 * native ints, no header), 2 an MPS model of the basis matrix, 3 text.  A
 * negative form first brings the basis out of a live simplex state, so that a
 * stopped solve can be saved. */
#define KX_BASFILE_BIN 1
#define KX_BASFILE_MPS 2
#define KX_BASFILE_TXT 3
/* Write the basis in form nFormat (|nFormat| 1..3, else 2024). */
KX_API int KXwriteBasis(pModel model, const char *pszFname, int nFormat);
/* Read a binary basis (|nFormat| must be 1, else 2024) and load it with KXloadBasis;
 * a short file gives 2015. */
KX_API int KXreadBasis(pModel model, const char *pszFname, int nFormat);
/* Start point file: lines "name value [x status]", the n columns first, then rows;
 * statuses BAS, ATLO, ATUP, FNUL, SBAS on every line load a basis as well. */
KX_API int KXreadVarStartPoint(pModel model, const char *pszFname);
/* Priority file: lines "name priority"; an unknown name stops with 2068. */
KX_API int KXreadVarPriorities(pModel model, const char *pszFname);

/* Values of KX_IPARAM_SOL_REPORT_STYLE: the full report, the compact solution
 * file, the full report with ranges. */
#define KX_SOLREPORT_FULL    0
#define KX_SOLREPORT_COMPACT 1
#define KX_SOLREPORT_RANGES  2
/* Solution kinds for KXwriteSolutionOfType: the one KXwriteSolution takes (the
 * MIP solution when the model has integers and one exists, else the LP one),
 * the simplex (basic) solution, the interior-point solution, the MIP solution. */
#define KX_SOLTYPE_DEFAULT 0
#define KX_SOLTYPE_BASIC   1
#define KX_SOLTYPE_IPM     2
#define KX_SOLTYPE_MIP     3
/* Write the solution as KX_IPARAM_SOL_REPORT_STYLE says; 2009 without a solution. */
KX_API int KXwriteSolution(pModel model, const char *pszFname);
/* The same for solution kind nType (KX_SOLTYPE_, else 2024). */
KX_API int KXwriteSolutionOfType(pModel model, const char *pszFname, int nType);
/* @@FILES-API-END@@ */

/* @@QUERY-API-BEGIN@@ */
/* ------------------------------------------------------------------------ */
/* Queries, callbacks, direct basis calls, sensitivity and the dual          */
/* ------------------------------------------------------------------------ */
/* Further information ids.  SINFO reads a string into a buffer of at least
 * 256 bytes.  Numbers assigned by this library. */
#define KX_SINFO_MODEL_FILENAME       1237
#define KX_SINFO_MODEL_SOURCE         1238
#define KX_SINFO_STOC_FILENAME        1239
#define KX_IINFO_STOC_NUM_SCENARIOS   2223
#define KX_IINFO_STOC_NUM_NODES       2224
#define KX_IINFO_STOC_NUM_COLS_CORE   2225
#define KX_IINFO_STOC_NUM_ROWS_CORE   2226
#define KX_IINFO_STOC_SIM_ITER        2227
#define KX_IINFO_STOC_BAR_ITER        2228
#define KX_IINFO_STOC_NLP_ITER        2229
#define KX_IINFO_STOC_STATUS          2230

/* Differences found by KXcompareModels (bits of *pnDiffs). */
#define KX_COMPARE_DIMENSIONS   0x0001 /* rows, columns or nonzeros */
#define KX_COMPARE_OBJECTIVE    0x0002 /* sense or constant */
#define KX_COMPARE_COSTS        0x0004
#define KX_COMPARE_RHS          0x0008
#define KX_COMPARE_CONTYPES     0x0010
#define KX_COMPARE_MATRIX       0x0020 /* entries of A (order within a column ignored) */
#define KX_COMPARE_BOUNDS       0x0040
#define KX_COMPARE_VARTYPES     0x0080
#define KX_COMPARE_RANGES       0x0100
#define KX_COMPARE_NAMES        0x0200
#define KX_COMPARE_QUADRATIC    0x0400
#define KX_COMPARE_CONES        0x0800
#define KX_COMPARE_SETS         0x1000
#define KX_COMPARE_SEMICONT     0x2000

/* New integer solution (MIP) or new best point (global solver): (model, user data,
 * objective, primal values); a nonzero return stops the solver (2023). */
typedef int (*KXcallbackMIP)(pModel model, void *userData, double dObjval, double *padPrimal);

/* Number of models alive in env. */
KX_API int KXgetEnvModelCount(pEnv env, int *pnCount);
/* The models of env, newest first, into paModels (nMax entries; below the count: 2024). */
KX_API int KXgetEnvModelList(pEnv env, int nMax, pModel *paModels);
/* The environment that owns a model. */
KX_API int KXgetModelEnv(pModel model, pEnv *pEnvOut);
/* Version "major.minor.build.revision" and build date; buffers of 64 bytes, either may be null. */
KX_API int KXgetVersionInfo(char *pachVernum, char *pachBuildDate);
/* One information item as text by its report format (256 bytes), and its short key
 * (64 bytes, may be null); 2009 as KXgetInfo. */
KX_API int KXgetFormattedInfo(pModel model, int nQuery, char *pachKey, char *pachText);
/* Compare two models field by field; *pnDiffs gets the KX_COMPARE_ bits (0: equal). */
KX_API int KXcompareModels(pModel model1, pModel model2, int *pnDiffs);

/* Callback on each new integer solution of the MIP solver; null removes it. */
KX_API int KXsetMIPCallback(pModel model, KXcallbackMIP pfMIPCallback, void *pvUserData);
/* Callback on each new best point of the global solver; null removes it. */
KX_API int KXsetGOPCallback(pModel model, KXcallbackMIP pfGOPCallback, void *pvUserData);
/* Inside a callback only (else 2009): an information item of the running solver at
 * nLocation (KX_CALLBACK_); ids the solver doesn't know give 2009.  The simplex
 * knows KX_IINFO_CUR_ITER, KX_DINFO_CUR_OBJ, KX_IINFO_CUR_STATUS, KX_IINFO_SIM_ITER,
 * KX_DINFO_POBJ, KX_DINFO_PINFEAS, KX_DINFO_DINFEAS, KX_IINFO_METHOD. */
KX_API int KXgetCallbackInfo(pModel model, int nLocation, int nQuery, void *pvResult);
/* Short form: the same items of whatever solver runs now (inside a callback), or of
 * the last solve (outside one). */
KX_API int KXgetProgressInfo(pModel model, int nQuery, void *pvResult);

/*
 * Direct basis work on the live simplex state of the last solve (2009 without one).
 * B is the basis matrix of the model as loaded: column j of A at the position of a
 * basic column j, the unit column e_i at that of a basic logical of row i (from
 * KXgetBasis).  Sparse vectors are a count and index/value arrays; results have
 * room for m entries.  FTRAN solves B x = a (a by row, x by basis position); BTRAN
 * solves B' y = e (e by position, y by row).
 */
KX_API int KXdoFTRAN(pModel model, const int *pnInLen, const int *paiInd, const double *padVal,
                     int *pnOutLen, int *paiOutInd, double *padOutVal);
KX_API int KXdoBTRAN(pModel model, const int *pnInLen, const int *paiInd, const double *padVal,
                     int *pnOutLen, int *paiOutInd, double *padOutVal);
/* The same with dense arrays of m entries. */
KX_API int KXdoDenseFTRAN(pModel model, const double *padIn, double *padOut);
KX_API int KXdoDenseBTRAN(pModel model, const double *padIn, double *padOut);
/* Hand pivots on the live state.  Variables are numbered 0..n-1 for columns and n+i
 * for the logical of row i.  PivotIn: jEnter enters by the primal ratio test,
 * *pjLeave gets the leaving variable (-1: a bound flip; 2009 when nothing blocks).
 * PivotOut: basic jLeave leaves by the dual ratio test, *pjEnter gets the entering
 * variable (2009 when none qualifies).  Pivotij: jEnter replaces basic jLeave
 * (2012 for a bad pair, 2019 when the pivot is too small).  The solution record is
 * refreshed after each. */
KX_API int KXdoPivotIn(pModel model, int jEnter, int *pjLeave);
KX_API int KXdoPivotOut(pModel model, int jLeave, int *pjEnter);
KX_API int KXdoPivotij(pModel model, int jEnter, int jLeave);
/* Refactor the basis of the live state and refresh the solution: 2044 without a
 * state, 2019 for a singular basis. */
KX_API int KXfactorBasis(pModel model);
/* The ray of the last simplex run: n values for an unbounded model (a direction d
 * with A d within the row senses, d within the bound directions, improving the
 * objective), m values for an infeasible one (multipliers y: y_i > 0 takes row i at
 * its lower side, y_i < 0 at its upper side, and y'Ax over the bounds cannot reach
 * the sum of those sides).  2009 for any other end. */
KX_API int KXgetExtremeRay(pModel model, double *padRay);
/* Recompute the point and the duals from the live basis and test them against the
 * feasibility and optimality tolerances: 0 optimal, 2019 not optimal, 2009 no basis. */
KX_API int KXverifyOptimality(pModel model);

/*
 * Sensitivity after an optimal simplex solve (2009 otherwise): for each row, column
 * or column bound the allowed decrease and increase (1e30: no limit) that keeps
 * the optimal basis.  Rows: the right-hand side.  Costs: the objective coefficient,
 * in the model's sense (a maximisation's sides are those of its costs, not of the
 * minimisation the solver runs).  Bounds: for a nonbasic column the bound it rests
 * on; for a basic column how far its value may fall to its lower bound (decrease)
 * and rise to its upper bound (increase).  A model solved by presolve alone is
 * first solved again by the primal simplex from its basis, without presolve.
 */
KX_API int KXgetConstraintRanges(pModel model, double *padDec, double *padInc);
KX_API int KXgetObjectiveRanges(pModel model, double *padDec, double *padInc);
KX_API int KXgetBoundRanges(pModel model, double *padDec, double *padInc);
/* Load the explicit dual of a linear model (integrality dropped) into the empty
 * model dual: one row per column, named as the column; per row side a column
 * "Y_row" (or "YL_row" for the lower side of a ranged row), per nonzero finite
 * bound a column "BL_col" or "BU_col"; opposite sense, the same constant. */
KX_API int KXgetDualModel(pModel model, pModel dual);
/* Solve through the explicit dual (what KX_IPARAM_PROB_TO_SOLVE 2 does), then
 * bring the dual's basis back as a primal basis and finish with the primal simplex. */
KX_API int KXIoptimizeDual(pModel model, int nMethod, int *pnStatus);
/* @@QUERY-API-END@@ */

/* @@PARAMETER-API-BEGIN@@ */
/*
 * A parameter is read and set by its id, at the environment (a new model
 * copies the environment's values once, at KXcreateModel) or at a model.  The
 * Int and Dou forms give 2024 for an id of the other kind or none; the untyped
 * forms read and write an int or a double by the kind of the id, and give 2009
 * (get) or 2011 (set) for an id unknown at that level.  A value that fails the
 * parameter's test gives 2024 and leaves the old value.
 */
KX_API int KXgetEnvParameter(pEnv env, int nParameter, void *pvValue);
KX_API int KXsetEnvParameter(pEnv env, int nParameter, const void *pvValue);
KX_API int KXgetEnvIntParameter(pEnv env, int nParameter, int *pnValue);
KX_API int KXsetEnvIntParameter(pEnv env, int nParameter, int nValue);
KX_API int KXgetEnvDouParameter(pEnv env, int nParameter, double *pdValue);
KX_API int KXsetEnvDouParameter(pEnv env, int nParameter, double dValue);
KX_API int KXgetModelParameter(pModel model, int nParameter, void *pvValue);
KX_API int KXsetModelParameter(pModel model, int nParameter, const void *pvValue);
/* The model's Int and Dou forms also reach the stochastic ids 600 to 642. */
KX_API int KXgetModelIntParameter(pModel model, int nParameter, int *pnValue);
KX_API int KXsetModelIntParameter(pModel model, int nParameter, int nValue);
KX_API int KXgetModelDouParameter(pModel model, int nParameter, double *pdValue);
KX_API int KXsetModelDouParameter(pModel model, int nParameter, double dValue);

/*
 * Stochastic parameters of a model (ids 600 to 642).  The untyped forms also
 * read and write the name patterns 630 (nodes) and 631 (scenarios) as text: a
 * buffer of at least 256 bytes on get; on set at most 255 characters holding
 * one integer conversion such as "%06d".
 */
KX_API int KXgetModelStocParameter(pModel model, int nParameter, void *pvValue);
KX_API int KXsetModelStocParameter(pModel model, int nParameter, const void *pvValue);
KX_API int KXgetModelStocIntParameter(pModel model, int nParameter, int *pnValue);
KX_API int KXsetModelStocIntParameter(pModel model, int nParameter, int nValue);
KX_API int KXgetModelStocDouParameter(pModel model, int nParameter, double *pdValue);
KX_API int KXsetModelStocDouParameter(pModel model, int nParameter, double dValue);

/* Published range of an integer or double parameter; 0..0 for an id of the other
 * kind, an unknown id or a row without range.  Either output may be null. */
KX_API int KXgetIntParameterRange(pModel model, int nParameter, int *pnValMIN, int *pnValMAX);
KX_API int KXgetDouParameterRange(pModel model, int nParameter, double *pdValMIN,
                                  double *pdValMAX);
/* Log text of a parameter into pachDescription (at least 256 bytes); "NULL" when
 * there is none. */
KX_API int KXgetParamDescription(pEnv env, int nParameter, char *pachDescription);

/*
 * Parameter files: lines "NAME = value"; the first line of a name wins, other
 * lines are skipped, a missing file loads nothing and is no error.  The writer
 * also writes a CSV twin: "a.par" gives "a._param.csv".
 */
/* One row of a parameter table: id, constant name, log text or null, width
 * (4 for an integer, 8 for a double). */
typedef struct KXparamRow_s {
  int id;
  const char *name;
  const char *description;
  int width;
} KXparamRow;
KX_API int KXreadEnvParameter(pEnv env, const char *pszFname);
KX_API int KXreadModelParameter(pModel model, const char *pszFname);
/* Load the first nRows rows of paTable from a file (null: "korva.par"). */
KX_API int KXloadEnvParameter(pEnv env, const char *pszFname, int nRows,
                              const KXparamRow *paTable);
KX_API int KXloadModelParameter(pModel model, const char *pszFname, int nRows,
                                const KXparamRow *paTable);
KX_API int KXwriteEnvParameter(pEnv env, const char *pszFname);
KX_API int KXwriteModelParameter(pModel model, const char *pszFname);
/* @@PARAMETER-API-END@@ */

/* ------------------------------------------------------------------------ */
/* Extended model data, data getters and model files                        */
/* ------------------------------------------------------------------------ */
/* @@MODEL-DATA-API-BEGIN@@ */
/* Variable types (KXloadVarType, KXgetVarType). */
#define KX_VARTYPE_CONT   'C'
#define KX_VARTYPE_BIN    'B'
#define KX_VARTYPE_INT    'I'
/* Set types (KXloadSETSData): SOS1, SOS2, SOS3, cardinality. */
#define KX_SETTYPE_SOS1   1
#define KX_SETTYPE_SOS2   2
#define KX_SETTYPE_SOS3   3
#define KX_SETTYPE_CARD   4
/* Cone types (KXloadConeData). */
#define KX_CONETYPE_QUAD  'Q'
#define KX_CONETYPE_RQUAD 'R'
/* MPS layouts (KXreadMPSFile, KXwriteMPSFile); 2 and 3 add the marker mode flag. */
#define KX_MPS_FREE       0
#define KX_MPS_FIXED      1
#define KX_MPS_FREE_MODE  2
#define KX_MPS_FIXED_MODE 3

/* Types of the n columns: 'C', 'I' or 'B' each (else 2041); null makes all continuous. */
KX_API int KXloadVarType(pModel model, const char *pachVarTypes);
/* Sets: types 1..4, cardinalities (needed for type 4), nSETS+1 starts into paiSETScols. */
KX_API int KXloadSETSData(pModel model, int nSETS, const char *pszSETStype,
                          const int *paiCARDnum, const int *paiSETSbegcol,
                          const int *paiSETScols);
/* Semi-continuous columns with their lower and upper bounds (the model's lower becomes 0). */
KX_API int KXloadSemiContData(pModel model, int nSCVars, const int *paiVars, const double *padL,
                              const double *padU);
/* Cones: types 'Q' or 'R', nCone+1 starts into paiConecols; a column is in one cone at most. */
KX_API int KXloadConeData(pModel model, int nCone, const char *pszConeTypes,
                          const int *paiConebegcone, const int *paiConecols);
/* Quadratic terms (row -1 the objective): Q(j,k) = Q(k,j) = coef; a row's form is x'Qx/2. */
KX_API int KXloadQCData(pModel model, int nQCnnz, const int *paiQCrows, const int *paiQCcols1,
                        const int *paiQCcols2, const double *padQCcoef);
/* Ranges of the m rows as in MPS RANGES (KX_INFINITY: no range); null removes them all. */
KX_API int KXloadConstraintRanges(pModel model, const double *padR);
/* Names; a null argument leaves that name or list as it is. */
KX_API int KXloadNameData(pModel model, const char *pszTitle, const char *pszObjName,
                          const char *pszRhsName, const char *pszRngName,
                          const char *pszBndName, char **paszConNames, char **paszVarNames,
                          char **paszConeNames);
/* Delete all names. */
KX_API int KXfreeNameData(pModel model);
/* Branching priorities of the n columns (a negative entry is skipped: 2012); null deletes. */
KX_API int KXloadVarPriorities(pModel model, const int *panCprior);
KX_API int KXgetVarPriorities(pModel model, int *panCprior);
/* Start point of the n columns; null deletes. */
KX_API int KXloadVarStartPoint(pModel model, const double *padPrimal);
KX_API int KXgetVarStartPoint(pModel model, double *padPrimal);
/* Starting basis: column (n) and row (m) statuses as in KXgetBasis. */
KX_API int KXloadBasis(pModel model, const int *panCstatus, const int *panRstatus);

/* Index of a name (2068 for an unknown column, 2069 for a row, 2070 for a cone). */
KX_API int KXgetVariableIndex(pModel model, const char *pszName, int *pnIndex);
KX_API int KXgetConstraintIndex(pModel model, const char *pszName, int *pnIndex);
KX_API int KXgetConeIndex(pModel model, const char *pszName, int *pnIndex);
/* One name into pszName (room for the longest name plus 1). */
KX_API int KXgetConstraintNamei(pModel model, int iCon, char *pszName);
KX_API int KXgetVariableNamej(pModel model, int iVar, char *pszName);
KX_API int KXgetConeNamei(pModel model, int iCone, char *pszName);
/* All names: strings, then per list a pointer array and the text block it points into
   (sizes from KXgetDimensions); any output may be null. */
KX_API int KXgetNameData(pModel model, char *pszTitle, char *pszObjName, char *pszRhsName,
                         char *pszRngName, char *pszBndName, char **paszConNames,
                         char *pachConNameData, char **paszVarNames, char *pachVarNameData,
                         char **paszConeNames, char *pachConeNameData);

/* The LP as loaded, matrix compacted (n+1 starts); any output may be null. */
KX_API int KXgetLPData(pModel model, int *pnObjSense, double *pdObjConst, double *padC,
                       double *padB, char *pachConTypes, int *paiAcols, int *pacAcols,
                       double *padAcoef, int *paiArows, double *padL, double *padU);
/* One row: type, right-hand side, and its entries (columns and coefficients). */
KX_API int KXgetLPConstraintDatai(pModel model, int iCon, char *pchConType, double *pdB,
                                  int *pnNnz, int *paiVar, double *padAcoef);
/* One column: type, cost, bounds and its entries (rows and coefficients). */
KX_API int KXgetLPVariableDataj(pModel model, int iVar, char *pchVarType, double *pdC,
                                double *pdL, double *pdU, int *pnAnnz, int *paiArows,
                                double *padAcoef);
/* Type, nonlinear mark (0 or 1) and right-hand side of one row. */
KX_API int KXgetConstraintDatai(pModel model, int iCon, char *pchConType, char *pchIsNlp,
                                double *pdB);
KX_API int KXgetObjectivej(pModel model, int iVar, double *pdC);
KX_API int KXgetLowerBoundj(pModel model, int iVar, double *pdL);
KX_API int KXgetUpperBoundj(pModel model, int iVar, double *pdU);
/* Ranges of the m rows (KX_INFINITY for a row without range). */
KX_API int KXgetConstraintRangeValues(pModel model, double *padR);
/* Sizes: columns, rows, cones, nonzeros, quadratic, cone and nonlinear nonzeros, and the
   total name lengths with terminators; any output may be null. */
KX_API int KXgetDimensions(pModel model, int *pnVars, int *pnCons, int *pnCones, int *pnAnnz,
                           int *pnQCnnz, int *pnConennz, int *pnNLPnnz, int *pnNLPobjnnz,
                           int *pnVarNamelen, int *pnConNamelen, int *pnConeNamelen);
/* Column types, and their counts by kind. */
KX_API int KXgetVarType(pModel model, char *pachVarTypes);
KX_API int KXgetVarTypeCount(pModel model, int *pnBin, int *pnInt, int *pnCont);
/* Binary, integer and continuous columns that have an entry in row iCon; outputs may be null. */
KX_API int KXgetVarTypeCountByCons(pModel model, int iCon, int *pnBin, int *pnInt, int *pnCont);
/* All quadratic terms (lower triangle, by row) and those of one row (-1 the objective). */
KX_API int KXgetQCData(pModel model, int *pnQCnnz, int *paiQCrows, int *paiQCcols1,
                       int *paiQCcols2, double *padQCcoef);
KX_API int KXgetQCDatai(pModel model, int iCon, int *pnQCnnz, int *paiQCcols1,
                        int *paiQCcols2, double *padQCcoef);
/* Sets: counts, types, cardinalities, nSETS+1 starts and members; or one set. */
KX_API int KXgetSETSData(pModel model, int *pnSETS, int *pnSETnnz, char *pachSETtype,
                         int *paiCARDnum, int *paiSETSbegcol, int *paiSETScols);
KX_API int KXgetSETSDatai(pModel model, int iSet, char *pchSETtype, int *pnCARDnum,
                          int *pnSETnnz, int *paiSETScols);
/* Semi-continuous columns with their lower and upper bounds. */
KX_API int KXgetSemiContData(pModel model, int *pnSCVars, int *paiVars, double *padL,
                             double *padU);
/* One cone: type, length and columns. */
KX_API int KXgetConeDatai(pModel model, int iCone, char *pchConeType, int *pnNnz, int *paiCols);

/* Read an MPS file (plain or .gz) into an unloaded model; nFormat a KX_MPS_ layout.
   A bad file gives 2003 and KXgetFileError names its line. */
KX_API int KXreadMPSFile(pModel model, const char *pszFname, int nFormat);
/* Write the model as MPS (gzip-compressed when the name ends in .gz). */
KX_API int KXwriteMPSFile(pModel model, const char *pszFname, int nFormat);
/* @@MODEL-DATA-API-END@@ */

#ifdef __cplusplus
}
#endif

#endif /* KORVA_H */
