// output/output.h
//
// Output: the result print of the last or the best surface, its sketches, its nail table and the
// post-processor file.

#pragma once

void PRINT();  // result print to the result file (channel NF16)
void POST();   // save for the post processor (KALMO.PLT)
// The two character sketches of the surface numbered NUMSRF of type NTYP with NS slices, at
// the end of the result print.
void PLOT(int NUMSRF, int NTYP, int NS);
// A new page on channel nf: the page top line, an empty line and the two title lines.
void PAGHED(int nf);
void NAILSP();  // soil nail table of the result print (channel NF16)
