// slices/build.cpp
//
// BUILD — slice loads, strengths and initial values of the current surface.
//
// Turns the slice geometry into what the equilibrium methods need per slice: base inclination
// terms; strengths on the base (five points along it) and on the right face (three points,
// weighted 1/4, 1/2, 1/4) for the kind of analysis (IDEFTO 1 effective stress, 2 total stress,
// 3 combined); pore water forces (PWP) and centre loads (LOADER); end-face shear; initial
// interslice roughness and initial force positions. Then it sets the force tolerance when it is
// not given, checks the slice weights and writes the slice data table when tracing.
//
// While the loads are built, E1/E2 and P hold the heights and the position of the water-force
// resultants (see PWP); they are handed to the next slice with U2 as U1.
//
// Reads:  SURF XX, ZZ, AREA; MASTER NUMSLC, IDEFTO, IDTYP, FCTSUC, FCTTAN, FCTSS, R1, R2, R3,
//         H3, JPRINT, PI, EPS, E2TOL, NFIN, NF18; SOLPRP MAT, NSUX/XSU/NSUPT/ZSU/SUPRF (cohesion
//         profiles); GEOMSH RWALL; POSTGRAF NFCOPY (6 in batch mode)
// Writes: SURF SINB, COSB, TANB, L34, BETA, C3, TAN3, DPAR, C2, TAN2, SU3, SU2, SS, HS, H20,
//         H30, R0 of every slice; H1, E1, C1, TAN1, U1 of slices 2..NUMSLC (slice 1: C1, TAN1,
//         H1, U1 zero); in total stress also U2, U3, P, E2 (zero); through PWP and LOADER U2,
//         U3, E2, P, WX, WZ, WM, AREAU, WZEXT, H30; MASTER E2TOL when not set, IUPDAT and
//         IDILAT when a base lies in a material with a B factor
// IERR:   0 ok; 1 the surface cannot be analysed (message written). IREJ = 1 (with IERR 0)
//         when a negative strength was met: the surface is skipped without a message.

#include <algorithm>
#include <cmath>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kFifth = 0.2f;
constexpr double kFrictionShare = 0.67f;
constexpr double kEndShearOff = 1.0E-6f;
constexpr double kH3Zero = 0.001f;
constexpr double kTolFactor = 1.0E-4f;
constexpr double kPercent = 0.01f;

bool gWarningsNeglected = false;  // the negative-weight warnings were accepted for the run

void fail() { MASTER.IERR = 1; }

// Material at a point; false (IERR = 1, message) when it cannot be found.
bool materialAt(int I, double x, double z, int& m) {
    m = 0;
    LOCATE(x, z, m);
    if (MASTER.IERR != 0 || m < 1 || m > MAXMAT) {
        int code = MASTER.IERR;
        say(io::Line().A(" **** SR/BUILD : ERROR FROM SR/LOCATE  NS,XX,ZZ,IERR=").Free(I).Free(x).Free(z).Free(code).str());
        fail();
        return false;
    }
    return true;
}

// Undrained strength su for a plane at angle beta; false (IERR = 1, message) on error.
bool undrainedAt(int I, double x, double z, double beta, double& su) {
    double su0 = 0.0;
    su = 0.0;
    SUXZ(x, z, beta, su0, su);
    if (MASTER.IERR != 0) {
        int code = MASTER.IERR;
        say(io::Line()
                .A(" **** SR/BUILD : ERROR FROM SR/SUXZ  NS,XX,ZZ,BETA,IER")
                .A("R=")
                .Free(I)
                .Free(x)
                .Free(z)
                .Free(beta)
                .Free(code)
                .str());
        fail();
        return false;
    }
    return true;
}

// Value of the cohesion profile at a point (percent of the material's reference cohesion).
bool cohesionProfileAt(int I, double x, double z, double& value) {
    int ierr = 0;
    value = 0.0;
    if (ISOLPR.NSUX < 1 || ISOLPR.NSUX > MAXSUX) {
        ierr = 1;
    } else {
        INTPRF(ISOLPR.NSUX, SOLPRP.XSU.data(), ISOLPR.NSUPT.data(), MAXSUP, SOLPRP.ZSU.data(), SOLPRP.SUPRF.data(), x, z,
               value, ierr);
    }
    if (ierr != 0) {
        say(io::Line().A(" **** SR/BUILD : ERROR FROM SR/INTPRF  NS,XX,ZZ,IERR=").Free(I).Free(x).Free(z).Free(ierr).str());
        fail();
        return false;
    }
    return true;
}

void baseTerms(int n) {
    for (int I = 1; I <= n; ++I) {
        double dx = SURF.XX(2, I) - SURF.XX(1, I);
        double dz = SURF.ZZ(3, I) - SURF.ZZ(4, I);
        double length = std::sqrt(dx * dx + dz * dz);
        SURF.SINB(I) = dz / length;
        SURF.COSB(I) = dx / length;
        SURF.TANB(I) = SURF.SINB(I) / SURF.COSB(I);
        SURF.L34(I) = dx / SURF.COSB(I);
        SURF.BETA(I) = std::asin(SURF.SINB(I));
    }
}

// Base sample point k (1..5): the midpoints of five equal parts from corner 4 to corner 3.
void basePoint(int I, int k, double& x, double& z) {
    double stepX = (SURF.XX(3, I) - SURF.XX(4, I)) * kFifth;
    double stepZ = (SURF.ZZ(3, I) - SURF.ZZ(4, I)) * kFifth;
    x = SURF.XX(4, I) + (k - 0.5) * stepX;
    z = SURF.ZZ(4, I) + (k - 0.5) * stepZ;
}

// Face-2 sample point k (1 top, 2 middle, 3 bottom) and its weight in the mean.
void facePoint(int I, int k, double& x, double& z, double& weight) {
    x = SURF.XX(2, I);
    if (k == 1) {
        z = SURF.ZZ(2, I);
        weight = 0.25;
    } else if (k == 2) {
        z = (SURF.ZZ(2, I) + SURF.ZZ(3, I)) / 2.0;
        weight = 0.5;
    } else {
        z = SURF.ZZ(3, I);
        weight = 0.25;
    }
}

// The material LOCATE gives every strength point of slice I (five on the base, three on face
// 2) when it is one and the same without a look at triangles or the mesh: no triangles, the
// slice within the mesh, and its shallowest and its deepest corner of the base and face 2 in
// one horizontal layer (or no layers and a single material). The strength points lie between
// those corners. 0 when the points must be located one by one.
int oneMaterial(int I) {
    if (IGEOMS.NTRI != 0) return 0;
    if (IGEOMS.NLAYER <= 0 && ISOLPR.NMAT > 1) return 0;
    const double x2 = SURF.XX(2, I), x3 = SURF.XX(3, I), x4 = SURF.XX(4, I);
    const double z2 = SURF.ZZ(2, I), z3 = SURF.ZZ(3, I), z4 = SURF.ZZ(4, I);
    if (!insideMesh(x2) || !insideMesh(x3) || !insideMesh(x4)) return 0;
    if (IGEOMS.NLAYER <= 0) return 1;
    if (!std::isfinite(z2) || !std::isfinite(z3) || !std::isfinite(z4)) return 0;
    const int layer = layerAt(std::min({z2, z3, z4}));
    if (layerAt(std::max({z2, z3, z4})) != layer) return 0;
    const int m = IGEOMS.LAYMAT(layer);
    return m >= 1 && m <= MAXMAT ? m : 0;
}

// Material at strength point (x, z) of slice I: the slice's one material when it has one.
bool sliceMaterialAt(int I, int known, double x, double z, int& m) {
    if (known != 0) {
        m = known;
        return true;
    }
    return materialAt(I, x, z, m);
}

// The base and face-2 strengths of a slice of one material m with a plain drained strength: a
// cohesion that refers to no profile and not both strength parameters zero. The sums are those
// of the eight strength points one by one, every point giving the same values. False when the
// material is not plain (its points must be looked at one by one); IREJ = 1 for a negative
// strength.
bool plainDrainedStrengths(int m, int& IREJ, double& sumCohesion, double& sumFriction, double& faceCohesion,
                           double& faceFriction) {
    const double eps = MASTER.EPS;
    const double materialCohesion = SOLPRP.MAT(COHESN, m);
    const double materialFriction = SOLPRP.MAT(PHIANG, m);
    const double cohesion = MASTER.FCTSUC * materialCohesion;
    const double friction = MASTER.FCTTAN * materialFriction;
    if (cohesion < 0.0 || materialCohesion < 0.0) return false;
    if (friction < -eps) {
        IREJ = 1;
        return true;
    }
    if (cohesion <= eps && friction <= eps) return false;
    if (std::fabs(materialCohesion) + std::fabs(materialFriction) <= eps) return false;
    for (int k = 1; k <= 5; ++k) {
        sumCohesion += cohesion;
        sumFriction += friction;
    }
    for (const double weight : {0.25, 0.5, 0.25}) {
        faceCohesion += weight * std::fabs(materialCohesion);
        faceFriction += weight * std::fabs(materialFriction);
    }
    return true;
}

// Drained strengths of slice I and its pore pressures. The base uses signed properties with
// the strength factors applied per point; face 2 uses magnitudes with the factors applied to
// the mean.
void drainedSlice(int I, int& IREJ) {
    const double eps = MASTER.EPS;
    double sumCohesion = 0.0;
    double sumFriction = 0.0;
    double faceCohesion = 0.0;
    double faceFriction = 0.0;
    const int known = oneMaterial(I);
    int m = known;
    const bool plain = known != 0 && plainDrainedStrengths(known, IREJ, sumCohesion, sumFriction, faceCohesion, faceFriction);
    if (IREJ != 0) return;
    for (int k = 1; k <= 5 && !plain; ++k) {
        // The point itself is only worked out where something is looked up at it.
        double x = 0.0, z = 0.0;
        bool placed = false;
        const auto place = [&] {
            if (!placed) basePoint(I, k, x, z);
            placed = true;
        };
        if (known == 0) place();
        if (!sliceMaterialAt(I, known, x, z, m)) return;
        double cohesion = MASTER.FCTSUC * SOLPRP.MAT(COHESN, m);
        if (cohesion < 0.0) {
            // A negative cohesion refers to the strength profiles, in percent.
            place();
            double profile = 0.0;
            if (!cohesionProfileAt(I, x, z, profile)) return;
            cohesion = std::fabs(SOLPRP.MAT(COHESN, m)) * profile * kPercent * MASTER.FCTSUC;
        }
        double friction = MASTER.FCTTAN * SOLPRP.MAT(PHIANG, m);
        if (cohesion < -eps || friction < -eps) {
            IREJ = 1;
            return;
        }
        if (cohesion <= eps && friction <= eps) {
            if (MASTER.IDEFTO == 3) {
                say(io::Line()
                        .A(" **** SR/BUILD : BOTH C AND PHI ARE ZERO, MATERIAL =")
                        .Free(m)
                        .Free(", THIS IS NOT ALLOWED FOR A COMBINED ANALYSIS")
                        .str());
                fail();
                return;
            }
            place();
            double su = 0.0;
            if (!undrainedAt(I, x, z, SURF.BETA(I), su)) return;
            if (su < -eps) {
                IREJ = 1;
                return;
            }
            cohesion = su * MASTER.FCTSUC;
        }
        sumCohesion += cohesion;
        sumFriction += friction;
    }
    SURF.C3(I) = sumCohesion * kFifth;
    SURF.TAN3(I) = sumFriction * kFifth;
    SURF.DPAR(I) = 0.0;

    // The material of the last base point decides on dilatancy.
    if (SOLPRP.MAT(BFCT, m) >= eps) {
        MASTER.IUPDAT = 1;
        MASTER.IDILAT = 1;
        double x = 0.0, z = 0.0;
        basePoint(I, 3, x, z);
        double su = 0.0;
        if (!undrainedAt(I, x, z, SURF.BETA(I), su)) return;
        if (su < eps) su = 1.0;
        SURF.DPAR(I) = su * SOLPRP.MAT(DSUB, m);
        if (SOLPRP.MAT(PHIANG, m) < eps) {
            say(io::Line()
                    .A(" **** SR/BUILD : NS,MAT,PWPB,TANPHI=")
                    .Free(I)
                    .Free(m)
                    .Free(SOLPRP.MAT(BFCT, m))
                    .Free(SOLPRP.MAT(PHIANG, m))
                    .str());
            fail();
            return;
        }
    }

    for (int k = 1; k <= 3 && !plain; ++k) {
        double x = 0.0, z = 0.0, weight = 0.0;
        facePoint(I, k, x, z, weight);
        if (!sliceMaterialAt(I, known, x, z, m)) return;
        const double materialCohesion = SOLPRP.MAT(COHESN, m);
        double cohesion = std::fabs(materialCohesion);
        if (materialCohesion < 0.0) {
            double profile = 0.0;
            if (!cohesionProfileAt(I, x, z, profile)) return;
            cohesion = std::fabs(SOLPRP.MAT(COHESN, m)) * profile * kPercent;
        }
        double friction = std::fabs(SOLPRP.MAT(PHIANG, m));
        if (cohesion + friction <= eps) {
            double su = 0.0;
            if (!undrainedAt(I, x, z, MASTER.PI / 2.0, su)) return;
            cohesion = std::fabs(su);
        }
        faceCohesion += weight * cohesion;
        faceFriction += weight * friction;
    }
    SURF.C2(I) = faceCohesion * MASTER.FCTSUC;
    SURF.TAN2(I) = faceFriction * MASTER.FCTTAN;

    PWP(I);
    if (MASTER.IERR != 0) {
        int code = MASTER.IERR;
        say(io::Line().A(" **** SR/BUILD : ERROR FROM SR/PWP  NS,IERR=").Free(I).Free(code).str());
        fail();
    }
}

void zeroSuMessage(int I) {
    if (MASTER.IDEFTO == 3) {
        say(io::Line()
                .A(" **** SR/BUILD : ZERO SU FOR FACE 2 OR 3, SLICE =")
                .Free(I)
                .Free(", THIS IS NOT ALLOWED FOR A COMBINED ANALYSIS")
                .str());
    } else {
        say(io::Line()
                .A(" **** SR/BUILD : ZERO SU FOR FACE 2 OR 3, SLICE =")
                .Free(I)
                .Free(" THIS IS NOT ALLOWED FOR A TOTAL STRESS ANALYSIS")
                .str());
    }
    fail();
}

// Undrained strengths of slice I (total stress and combined analyses).
void undrainedSlice(int I, int& IREJ) {
    const double eps = MASTER.EPS;
    double sumStrength = 0.0;
    for (int k = 1; k <= 5; ++k) {
        double x = 0.0, z = 0.0, su = 0.0;
        basePoint(I, k, x, z);
        if (!undrainedAt(I, x, z, SURF.BETA(I), su)) return;
        if (su < -eps) {
            IREJ = 1;
            return;
        }
        if (MASTER.IDEFTO == 3 && su * MASTER.FCTSUC <= eps) {
            zeroSuMessage(I);
            return;
        }
        sumStrength += su;
    }
    SURF.SU3(I) = kFifth * sumStrength * MASTER.FCTSUC;

    double faceStrength = 0.0;
    for (int k = 1; k <= 3; ++k) {
        double x = 0.0, z = 0.0, weight = 0.0, su = 0.0;
        facePoint(I, k, x, z, weight);
        if (!undrainedAt(I, x, z, MASTER.PI / 2.0, su)) return;
        faceStrength += weight * std::fabs(su);
    }
    SURF.SU2(I) = faceStrength * MASTER.FCTSUC;

    if (SURF.SU2(I) < eps || SURF.SU3(I) < eps) {
        zeroSuMessage(I);
        return;
    }
    if (MASTER.IDEFTO == 2) {
        // Total stress: undrained strength only, and no pore pressures (the water-force arms
        // that P and E2 carry at this stage are cleared with them).
        SURF.C3(I) = SURF.SU3(I);
        SURF.TAN3(I) = 0.0;
        SURF.C2(I) = SURF.SU2(I);
        SURF.TAN2(I) = 0.0;
        SURF.U2(I) = 0.0;
        SURF.U3(I) = 0.0;
        SURF.P(I) = 0.0;
        SURF.E2(I) = 0.0;
    }
}

// Centre loads, end-face shear and initial values of slice I; hands face 2 to slice I + 1.
void loadsAndInitialValues(int I, int n, double totalWidth) {
    LOADER(I);
    if (MASTER.IERR != 0) {
        int code = MASTER.IERR;
        say(io::Line().A(" **** SR/BUILD : ERROR FROM SR/LOADER  NS,IERR=").Free(I).Free(code).str());
        fail();
        return;
    }

    double dx = SURF.XX(2, I) - SURF.XX(1, I);
    SURF.SS(I) = 0.0;
    SURF.HS(I) = 0.0;
    if (std::fabs(MASTER.FCTSS) >= kEndShearOff) {
        // Only a check that the soil is known there: corner 3, or corner 4 for the last slice,
        // whose corner 3 lies on the soil surface.
        int corner = I == n ? 4 : 3;
        int m = 0;
        if (!materialAt(I, SURF.XX(corner, I), SURF.ZZ(corner, I), m)) return;
        double meanHeight = ((SURF.ZZ(3, I) + SURF.ZZ(4, I)) - (SURF.ZZ(1, I) + SURF.ZZ(2, I))) / 2.0;
        // Cohesion plus friction under a lateral stress of 0.67 times half the mean vertical
        // stress, on the two end faces of the sliding body.
        double verticalStress = SURF.WZ(I) / (dx * meanHeight);
        SURF.SS(I) = (std::fabs(SURF.C2(I)) * SURF.AREA(I) +
                      std::fabs(SURF.TAN2(I)) * verticalStress * meanHeight * 0.5 * kFrictionShare * SURF.AREA(I)) *
                     MASTER.FCTSS;
        SURF.HS(I) = meanHeight / 3.0 * SURF.COSB(I);
        if (MASTER.IDEFTO == 3) SURF.SS(I) = std::min(SURF.SS(I), std::fabs(SURF.SU2(I)) * SURF.AREA(I));
    }

    double xi = (SURF.XX(2, I) - SURF.XX(1, 1)) / totalWidth;
    SURF.H20(I) = (SURF.ZZ(3, I) - SURF.ZZ(2, I)) / 2.0;
    double h3Left = MASTER.H3(1);
    double h3Right = MASTER.H3(2);
    if (std::fabs(h3Left + h3Right) >= kH3Zero) {
        SURF.H30(I) = (SURF.XX(3, I) - SURF.XX(4, I)) / SURF.COSB(I) * (h3Left + (h3Right - h3Left) * xi);
    }
    double rightRoughness = MASTER.IDTYP == 2 ? GEOMSH.RWALL : MASTER.R2;
    SURF.R0(I) = MASTER.R1 + (rightRoughness - MASTER.R1) * xi;

    if (I < n) {
        SURF.H1(I + 1) = SURF.H20(I);
        SURF.E1(I + 1) = SURF.E2(I);
        SURF.C1(I + 1) = SURF.C2(I);
        SURF.TAN1(I + 1) = SURF.TAN2(I);
        SURF.U1(I + 1) = SURF.U2(I);
    }
}

// Roughness grows with the face height; the last face, the exit, has none.
void roughnessByFaceHeight(int n) {
    if (MASTER.IDTYP == 2) return;
    if (std::fabs(MASTER.R3) >= MASTER.EPS) {
        double highest = 0.0;
        for (int I = 1; I <= n - 1; ++I) highest = std::max(highest, SURF.ZZ(3, I) - SURF.ZZ(2, I));
        if (highest > 0.0) {
            for (int I = 1; I <= n - 1; ++I) SURF.R0(I) += (SURF.ZZ(3, I) - SURF.ZZ(2, I)) / highest * MASTER.R3;
        }
    }
    SURF.R0(n) = 0.0;
}

// Every slice must weigh something; the user may accept it once for the whole run.
void weightCheck(int n) {
    for (int I = 1; I <= n; ++I) {
        if (SURF.WZ(I) <= MASTER.EPS) {
            say(io::Line().A(" **** SR/BUILD : NEGATIVE WEIGHT  N,WZ,U3=").Free(I).Free(SURF.WZ(I)).Free(SURF.U3(I)).str());
            MASTER.IERR = 1;
        }
    }
    if (MASTER.IERR == 0) return;
    if (gWarningsNeglected) {
        MASTER.IERR = 0;
        return;
    }
    int answer = 1;
    if (!batchMode()) {
        sayPrompt("SHALL ABOVE WARNING(S) BE NEGLECTED (Y/N) ......");
        YESNO(answer, MASTER.NFIN);
    }
    if (answer == 1) {
        MASTER.IERR = 0;
        gWarningsNeglected = true;
    }
}

void tracePrint(int n) {
    auto both = [](const std::string& text) {
        io::writeLine(MASTER.NF18, text);
        io::writeLine(POSTGRAF.NFCOPY, text);
    };
    both(" SR/BUILD : SLICE DATA PRINT");
    both(io::Line()
             .A(" SLC  X(1)    X(2)  ")
             .A("   SINB    U1        U2        U3        TAN1   TAN2   TAN3 ")
             .A("    R0    DPAR")
             .str());
    both(io::Line()
             .A(" SLC  Z(2)    Z(3)    COSB    WX        WZ        WM ")
             .A("         C1     C2     C3     H30")
             .str());
    for (int I = 1; I <= n; ++I) {
        both(io::Line()
                 .I(I, 4)
                 .F(SURF.XX(1, I), 8, 2)
                 .F(SURF.XX(2, I), 8, 2)
                 .F(SURF.SINB(I), 8, 4)
                 .E(SURF.U1(I), 10, 3)
                 .E(SURF.U2(I), 10, 3)
                 .E(SURF.U3(I), 10, 3)
                 .F(SURF.TAN1(I), 7, 3)
                 .F(SURF.TAN2(I), 7, 3)
                 .F(SURF.TAN3(I), 7, 3)
                 .F(SURF.R0(I), 7, 3)
                 .F(SURF.DPAR(I), 8, 3)
                 .str());
        both(io::Line()
                 .I(I, 4)
                 .F(SURF.ZZ(2, I), 8, 2)
                 .F(SURF.ZZ(3, I), 8, 2)
                 .F(SURF.COSB(I), 8, 4)
                 .E(SURF.WX(I), 10, 3)
                 .E(SURF.WZ(I), 10, 3)
                 .E(SURF.WM(I), 10, 3)
                 .F(SURF.C1(I), 7, 3)
                 .F(SURF.C2(I), 7, 3)
                 .F(SURF.C3(I), 7, 3)
                 .F(SURF.H30(I), 7, 3)
                 .str());
    }
}

}  // namespace

void resetBuildWarningAnswer() { gWarningsNeglected = false; }

void BUILD(int& IREJ) {
    IREJ = 0;
    MASTER.IERR = 0;
    int n = MASTER.NUMSLC;
    if (n < 1 || n > MAXSLC) {
        say(io::Line().A(" **** SR/BUILD : NUMBER OF SLICES OUT OF RANGE  NUMSLC=").Free(n).str());
        fail();
        return;
    }

    // Base terms.
    baseTerms(n);
    double totalWidth = SURF.XX(2, n) - SURF.XX(1, 1);

    // Face 1 of the first slice carries nothing.
    SURF.C1(1) = 0.0;
    SURF.TAN1(1) = 0.0;
    SURF.H1(1) = 0.0;
    SURF.U1(1) = 0.0;

    // Strengths, and pore pressures where they count.
    if (MASTER.IDEFTO == 1 || MASTER.IDEFTO == 3) {
        for (int I = 1; I <= n; ++I) {
            drainedSlice(I, IREJ);
            if (IREJ != 0 || MASTER.IERR != 0) return;
        }
    }
    if (MASTER.IDEFTO == 1) {
        for (int I = 1; I <= n; ++I) {
            SURF.SU2(I) = 0.0;
            SURF.SU3(I) = 0.0;
        }
    }
    if (MASTER.IDEFTO == 2) {
        for (int I = 1; I <= n; ++I) SURF.DPAR(I) = 0.0;
    }
    if (MASTER.IDEFTO == 2 || MASTER.IDEFTO == 3) {
        for (int I = 1; I <= n; ++I) {
            undrainedSlice(I, IREJ);
            if (IREJ != 0 || MASTER.IERR != 0) return;
        }
    }

    // Loads and initial values.
    for (int I = 1; I <= n; ++I) {
        loadsAndInitialValues(I, n, totalWidth);
        if (MASTER.IERR != 0) return;
    }

    // Roughness by face height.
    roughnessByFaceHeight(n);

    // Force tolerance.
    if (MASTER.E2TOL <= MASTER.EPS) {
        double sumWeight = 0.0;
        for (int I = 1; I <= n; ++I) sumWeight += SURF.WZ(I);
        MASTER.E2TOL = std::fabs(sumWeight) * kTolFactor;
    }

    // Weight check (a total stress analysis has no pore pressures to lift a slice).
    if (MASTER.IDEFTO != 2) {
        weightCheck(n);
        if (MASTER.IERR != 0) return;
    }

    // Trace print.
    if (MASTER.JPRINT > 2) tracePrint(n);
}
