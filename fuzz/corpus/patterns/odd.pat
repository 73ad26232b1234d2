; c
*X
0,0,0,1,1e-9
*Y
0,0,z
*SOLID
