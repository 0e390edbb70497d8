// output/output.h
//
// Output: the result print of the last or the best surface and the post-processor file.

#pragma once

void PRINT();  // result print to the result file (channel NF16)
void POST();   // save for the post processor (KALMO.PLT)
