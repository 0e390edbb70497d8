// surfaces/surfaces.h
//
// Shear surfaces: the five surface types offered at the central decision point. Each routine
// asks for its surfaces, hands every trial surface to the solver and returns to the menu.

#pragma once

void GENRAL();    // type 1: general surfaces of the input file
void CIRCLE();    // type 2: circles
void COMBND();    // type 3: combined circle-and-plane surfaces
void PLANE();     // type 4: earth-pressure planes
void GENRALZI();  // type 5: general surface autosearch
