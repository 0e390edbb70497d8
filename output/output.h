// output/output.h
//
// Output: the result print of the last or the best surface, its nail table and the
// post-processor file.

#pragma once

void PRINT();  // result print to the result file (channel NF16)
void POST();   // save for the post processor (KALMO.PLT)
void NAILSP();  // soil nail table of the result print (channel NF16)
