NAME q
ROWS
 N obj
 L q1
COLUMNS
 x obj 1 q1 1
 y q1 1
 u q1 1
 v q1 1
QUADOBJ
 x x 2
 y x 1
QSECTION q1
 y y 1
CSECTION k 0 RQUAD
 u
 v
ENDATA
