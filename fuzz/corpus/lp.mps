NAME t
ROWS
 N obj
 L c1
 E c2
COLUMNS
 x obj 1 c1 1
 y c2 -1
RHS
 rhs c1 4 obj 2
RANGES
 rng c2 -3
BOUNDS
 UP bnd x 4
 MI bnd y
ENDATA
