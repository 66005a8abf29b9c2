NAME          FIX
ROWS
 N  COST
 L  ROW 1
COLUMNS
    X 1       COST               1.   ROW 1               .5
RHS
    RHS       ROW 1              10.
BOUNDS
 FR BND       X 1
ENDATA
