// A small soil section for the slice-load tests: a mesh of one element per ground segment,
// x -100..100, from the ground surface (z = 0 unless a test changes it) down to rock at
// z = 50; one material; no water within reach; the console, log-copy and log channels bound
// to files of a temporary folder; and helpers that place slices directly in the surface record.

#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "slices/slices.h"
#include "support/tempdir.h"

namespace kalmo_test {

constexpr double kEps = 1.0E-20f;

class SliceWorld {
public:
    SliceWorld() {
        io::resetAll();
        startRun();  // fresh records and run-long state; the constants and channel numbers
        MASTER.FCTSUC = 1.0;
        MASTER.FCTTAN = 1.0;
        MASTER.IDTYP = 1;
        MASTER.IDEFTO = 1;
        POSTGRAF.NFCOPY = 9;
        POSTGRAF.NOPT1 = 3;
        POSTGRAF.NOPT2 = 15;
        io::openNew(12, dir.path("SVAR.EKO"));
        io::openNew(18, dir.path("KALMO.LOG"));
        io::openNew(9, dir.path("COPY.TXT"));

        // One element over the whole section; the ground surface is z = 0.
        setGround({-100.0, 100.0}, {0.0, 0.0});

        ISOLPR.NMAT = 1;
        SOLPRP.MAT(GAMTOT, 1) = 20.0;
        SOLPRP.MAT(MAT18, 1) = 20.0;
        SOLPRP.MAT(COHESN, 1) = 10.0;
        SOLPRP.MAT(PHIANG, 1) = 0.5;
        isotropic(1);

        IWATER.IDPWP = 1;
        WATER1.ZWATER = 1000.0;  // far below every slice
        WATER1.GAMWAT = 10.0;
        WATER1.GAMPWP = 10.0;

        LOAD.LDAT(2) = 1.0;  // vertical load factor on the weight
    }
    ~SliceWorld() { io::resetAll(); }

    // Ground surface broken line over rock at z = 50: one column of one element (material 1)
    // between every two points, and the x-line tables that go with it.
    void setGround(const std::vector<double>& x, const std::vector<double>& z) {
        int n = static_cast<int>(x.size());
        IGEOMS.NX = n - 1;
        IGEOMS.NZ = 1;
        IGEOMS.NELEM = n - 1;
        IGEOMS.NNODE = 2 * n;
        IGEOMS.NXLINE = n;
        for (int k = 1; k <= n; ++k) {
            GEOMSH.XNOD(2 * k - 1) = x[k - 1];  // rock node of the column
            GEOMSH.ZNOD(2 * k - 1) = 50.0;
            GEOMSH.XNOD(2 * k) = x[k - 1];      // ground node
            GEOMSH.ZNOD(2 * k) = z[k - 1];
            GEOMSH.XSURF(k) = x[k - 1];
            GEOMSH.ZSURF(k) = z[k - 1];
            GEOMSH.ZROCK(k) = 50.0;
            GEOMSH.XLIN(k) = x[k - 1];
            GEOMSH.ZSLIN(k) = z[k - 1];
            GEOMSH.ZRLIN(k) = 50.0;
            IGEOMS.NUMX(k) = k < n ? 1 : 0;
        }
        for (int e = 1; e < n; ++e) {
            int lowerLeft = 2 * e - 1;
            IGEOMS.IELNOD(1, e) = lowerLeft + 1;
            IGEOMS.IELNOD(2, e) = lowerLeft + 3;
            IGEOMS.IELNOD(3, e) = lowerLeft + 2;
            IGEOMS.IELNOD(4, e) = lowerLeft;
            IGEOMS.IELMAT(e) = 1;
        }
    }

    static void isotropic(int m) {
        SOLPRP.MAT(SUASU0, m) = 1.0;
        SOLPRP.MAT(SUDSU0, m) = 1.0;
        SOLPRP.MAT(SUPSU0, m) = 1.0;
        SOLPRP.MAT(ISOTRP, m) = 1.0;
    }

    std::string console() const { return io::contents(12); }
    std::string log() const { return io::contents(18); }

    TempDir dir;
};

// Area and centroid of a polygon (shoelace), vertices in order.
struct Polygon {
    std::vector<double> x, z;
    double area() const {
        double twice = 0.0;
        for (size_t k = 0; k < x.size(); ++k) {
            size_t j = (k + 1) % x.size();
            twice += x[k] * z[j] - x[j] * z[k];
        }
        return std::fabs(twice) / 2.0;
    }
    void centroid(double& cx, double& cz) const {
        double twice = 0.0, sx = 0.0, sz = 0.0;
        for (size_t k = 0; k < x.size(); ++k) {
            size_t j = (k + 1) % x.size();
            double cross = x[k] * z[j] - x[j] * z[k];
            twice += cross;
            sx += (x[k] + x[j]) * cross;
            sz += (z[k] + z[j]) * cross;
        }
        cx = sx / (3.0 * twice);
        cz = sz / (3.0 * twice);
    }
    // The part with z between zUpper and zLower (clipped against both levels).
    Polygon between(double zUpper, double zLower) const {
        Polygon cut = clip(*this, zUpper, false);
        return clip(cut, zLower, true);
    }

private:
    // Keeps the side z >= level (keepAbove false) or z <= level (keepAbove true).
    static Polygon clip(const Polygon& in, double level, bool keepAbove) {
        Polygon out;
        size_t n = in.x.size();
        auto inside = [&](double z) { return keepAbove ? z <= level : z >= level; };
        for (size_t k = 0; k < n; ++k) {
            size_t j = (k + 1) % n;
            bool a = inside(in.z[k]);
            bool b = inside(in.z[j]);
            if (a) {
                out.x.push_back(in.x[k]);
                out.z.push_back(in.z[k]);
            }
            if (a != b) {
                double t = (level - in.z[k]) / (in.z[j] - in.z[k]);
                out.x.push_back(in.x[k] + t * (in.x[j] - in.x[k]));
                out.z.push_back(level);
            }
        }
        return out;
    }
};

// The quadrilateral of slice corners 1, 2, 3, 4.
inline Polygon slicePolygon(double x1, double x2, double zTop1, double zTop2, double zBase3, double zBase4) {
    return Polygon{{x1, x2, x2, x1}, {zTop1, zTop2, zBase3, zBase4}};
}

// Places slice I: corners 1..4, its area, and corner 5 at the centroid of its area.
inline void setSlice(int I, double x1, double x2, double zTop1, double zTop2, double zBase3, double zBase4) {
    SURF.XX(1, I) = x1;
    SURF.XX(2, I) = x2;
    SURF.XX(3, I) = x2;
    SURF.XX(4, I) = x1;
    SURF.ZZ(1, I) = zTop1;
    SURF.ZZ(2, I) = zTop2;
    SURF.ZZ(3, I) = zBase3;
    SURF.ZZ(4, I) = zBase4;
    Polygon shape = slicePolygon(x1, x2, zTop1, zTop2, zBase3, zBase4);
    SURF.AREA(I) = shape.area();
    shape.centroid(SURF.XX(5, I), SURF.ZZ(5, I));
}

// Base inclination terms of slice I, as the load routines expect them from BUILD.
inline void setBaseTerms(int I) {
    double dx = SURF.XX(3, I) - SURF.XX(4, I);
    double dz = SURF.ZZ(3, I) - SURF.ZZ(4, I);
    double length = std::hypot(dx, dz);
    SURF.SINB(I) = dz / length;
    SURF.COSB(I) = dx / length;
    SURF.L34(I) = length;
}

// Simpson's rule on [a, b]: exact for the polynomials of degree three and less met here.
template <typename F>
double simpson(F f, double a, double b) {
    return (b - a) / 6.0 * (f(a) + 4.0 * f((a + b) / 2.0) + f(b));
}

inline int occurrences(const std::string& text, const std::string& what) {
    int count = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++count;
    return count;
}

}  // namespace kalmo_test
