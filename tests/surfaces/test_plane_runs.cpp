// Whole runs of earth-pressure plane sweeps, in batch mode: the wall example as its answer file
// runs it (an active sweep, the critical plane printed), and a smooth wall retaining surcharged
// dry sand, swept for active and then for passive pressure. Besides the comparison with the
// expected files, the expected files themselves are checked: the list against the soil wedge
// balanced by hand plane by plane, the critical planes against Rankine's pressures and against
// the choice rule, and the result print of the best surface against the critical plane.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "support/wholerun.h"
#include "surfaces/plane_list.h"

using namespace kalmo_test;

namespace {

std::string expectedFile(const std::string& folder, const std::string& name) {
    return readFile(std::string(KALMO_TEST_DATA) + "/" + folder + "/expected/" + name);
}

// The sweeps of a dialogue record: the listed planes of each and its critical plane.
struct Sweep {
    std::vector<Listed> planes;
    Listed critical;
};

std::vector<Sweep> sweepsOf(const std::string& eko) {
    std::vector<Sweep> sweeps;
    std::istringstream in(eko);
    bool inList = false;
    for (std::string line; std::getline(in, line);) {
        if (line == kPlaneHeading) {
            sweeps.emplace_back();
            inList = true;
        } else if (inList && line == kCriticalLine) {
            std::getline(in, line);
            sweeps.back().critical = parseListed(line);
            inList = false;
        } else if (inList) {
            sweeps.back().planes.push_back(parseListed(line));
        }
    }
    return sweeps;
}

// The dialogue of one sweep, word for word: the angles asked for, an empty line, the heading.
const std::string kSweepStart =
    " GIVE SURFACE TYPE (1=GENERAL 2=CIRCLE 3=COMBINED 4=EP-PLANE 5=GENERAL AUTOSEARCH) .... \n"
    "\n GIVE EP-PLANE ANGLES (DEGRS)\n FIRST LAST STEP\n  \n\n"
    "     ANGLE  X-SURFACE  EARTH PRESSURE  WALL FRICTION  HEIGHT H2  SCORE\n";

std::vector<double> anglesFrom(double first, double last) {
    std::vector<double> angles;
    for (double a = first; a <= last; a += 1.0) angles.push_back(a);
    return angles;
}

// The result print of the best surface names the plane: "ACTIVE" or "PASSIVE", its angle and
// where it meets the ground, the wall's x and height.
std::string printedPlane(const std::string& mode, const Listed& plane, double xWall, double height) {
    return io::Line()
               .X(16)
               .A(mode)
               .X(24 - static_cast<int>(mode.size()))
               .F(plane.angle, 5, 2)
               .F(plane.xGround, 10, 3)
               .F(xWall, 9, 3)
               .F(height, 8, 3)
               .str() +
           "\n";
}

// ---------------------------------------------------------------------------------------------
// The wall example
// ---------------------------------------------------------------------------------------------

// The wedge of the wall example on a plane rising at `degrees` from the foot (x = 30, z = 6) of
// its 6 m wall, balanced by hand as one body: the fill weighs 19 kN/m3 above the water line
// (from z = 2 at x = 0 to z = 4 at the wall) and 21 below it, carries 10 kPa and, when the plane
// meets the ground left of x = 25, the 30 kN of the crane rail. The pore pressure is
// hydrostatic below the water line, on the plane (U) and on the wall (U2). The plane takes the
// effective normal force N' and N' tan 40 / F; the wall E' and the friction r E',
// r = 0.5 tan 40 / F. Horizontally E' + U2 = (N' + U) sin a - N' m cos a, vertically
// W = (N' + U) cos a + N' m sin a + r E' (m = tan 40 / F): E' = (k (W - U cos a) + U sin a - U2)
// / (1 + r k) with k = tan(a - atan m).
double wallExampleWedge(double degrees, double F) {
    const double a = radians(degrees);
    const double height = 6.0, xWall = 30.0, water = 9.81;
    const double xGround = xWall - height / std::tan(a);
    auto waterLine = [](double x) { return 2.0 + x / 15.0; };
    double weight = 0.0, baseWater = 0.0;
    const int strips = 20000;
    const double dx = (xWall - xGround) / strips;
    for (int k = 0; k < strips; ++k) {
        const double x = xGround + (k + 0.5) * dx;
        const double base = (x - xGround) * std::tan(a);
        const double dry = std::min(base, waterLine(x));
        const double wet = std::max(0.0, base - waterLine(x));
        weight += (19.0 * dry + 21.0 * wet) * dx;
        baseWater += water * wet * dx / std::cos(a);
    }
    weight += 10.0 * (xWall - xGround);
    if (xGround < 25.0) weight += 30.0;
    const double wallWater = 0.5 * water * (height - waterLine(xWall)) * (height - waterLine(xWall));
    const double m = std::tan(radians(40.0)) / F;
    const double k = std::tan(a - std::atan(m));
    const double r = 0.5 * std::tan(radians(40.0)) / F;
    return (k * (weight - baseWater * std::cos(a)) + baseWater * std::sin(a) - wallWater) / (1.0 + r * k);
}

TEST(PlaneRuns, TheWallExampleRunsAsItsFolderHoldsIt) {
    for (const char* name : {"KALMO.INP", "SVAR.TMP"}) {
        EXPECT_EQ(readFile(std::string(KALMO_TEST_DATA) + "/wall_planes/" + name),
                  readFile(std::string(KALMO_SOURCE_DIR) + "/examples/wall/" + name))
            << name;
    }
    checkCase("wall_planes");
}

TEST(PlaneRuns, TheWallExampleListsTheWedgesAndKeepsTheLargest) {
    const std::string eko = expectedFile("wall_planes", "SVAR.EKO");
    EXPECT_NE(eko.find(" EARTH PRESSURE PROBLEM , GIVE SAFETY FACTOR (ACTIVE+/PASSIVE-)...\n" + kSweepStart),
              std::string::npos);
    const std::vector<Sweep> sweeps = sweepsOf(eko);
    ASSERT_EQ(sweeps.size(), 1u);
    const Sweep& sweep = sweeps[0];
    ASSERT_EQ(anglesOf(sweep.planes), anglesFrom(45.0, 75.0));

    double largestByHand = -1.0E30, criticalByHand = 0.0;
    for (const Listed& p : sweep.planes) {
        // The program integrates the pore pressures on the faces at a few points: 3 %.
        const double byHand = wallExampleWedge(p.angle, 1.0);
        EXPECT_NEAR(p.wallForce, byHand, 0.03 * byHand) << p.text;
        if (byHand >= largestByHand) {
            largestByHand = byHand;
            criticalByHand = p.angle;
        }
        // The wall friction is half the friction of the fill on the wall face.
        EXPECT_NEAR(p.friction, 0.5 * std::tan(radians(40.0)) * p.wallForce, 0.001 * p.wallForce) << p.text;
        EXPECT_NEAR(p.xGround, 30.0 - 6.0 / std::tan(radians(p.angle)), 0.01) << p.text;
        EXPECT_EQ(p.height, 3.0) << p.text;
    }
    // The crane rail falls out of the wedge between 50 and 51 degrees: the force drops there.
    EXPECT_LT(sweep.planes[6].wallForce, sweep.planes[5].wallForce);

    // The critical plane: the largest force of the list (the last of equal ones), the same as
    // the wedge by hand picks.
    const Listed& critical = sweep.critical;
    EXPECT_EQ(critical.angle, criticalByHand);
    for (const Listed& p : sweep.planes) {
        if (p.angle < critical.angle) {
            EXPECT_LE(p.wallForce, critical.wallForce) << p.text;
        } else if (p.angle > critical.angle) {
            EXPECT_LT(p.wallForce, critical.wallForce) << p.text;
        } else {
            EXPECT_EQ(p.text, critical.text);
        }
    }

    // It is the best surface the solver kept; the result print shows it.
    const int surface = static_cast<int>(critical.angle) - 44;
    const std::string best = " BEST SURFACE (NUM=" + io::fmtI(surface, 12) + " SF=   1.000000    ) IS PRINTED\n";
    EXPECT_NE(eko.find(best), std::string::npos) << best;
    const std::string res = expectedFile("wall_planes", "KALMO.RES");
    EXPECT_NE(res.find(" SURFACE TYPE = EARTH PRESSURE PLANE    ANGLE  X-SURFACE  X-WALL  H-WALL\n" +
                       printedPlane("ACTIVE", critical, 30.0, 6.0)),
              std::string::npos)
        << printedPlane("ACTIVE", critical, 30.0, 6.0);
}

// ---------------------------------------------------------------------------------------------
// Rankine's pressures
// ---------------------------------------------------------------------------------------------

TEST(PlaneRuns, ASmoothWallInSurchargedSandSweptActiveThenPassive) { checkCase("plane_rankine"); }

TEST(PlaneRuns, TheSmoothWallCarriesRankinesPressures) {
    // 18 kN/m3, phi = 30, 6 m, 10 kPa: the wedge on a plane at a carries W = (0.5 gamma H^2 +
    // q H) / tan a and pushes with W tan(a - phi) (active) or W tan(a + phi) (passive). The
    // critical planes are Rankine's: 60 degrees with Ka = 1/3 (128 kN) and 30 degrees with
    // Kp = 3 (1152 kN).
    const double load = 0.5 * 18.0 * 36.0 + 10.0 * 6.0;
    const std::string eko = expectedFile("plane_rankine", "SVAR.EKO");
    const std::vector<Sweep> sweeps = sweepsOf(eko);
    ASSERT_EQ(sweeps.size(), 2u);

    const Sweep& active = sweeps[0];
    ASSERT_EQ(anglesOf(active.planes), anglesFrom(45.0, 75.0));
    for (const Listed& p : active.planes) {
        const double a = radians(p.angle);
        const double byHand = load / std::tan(a) * std::tan(a - radians(30.0));
        EXPECT_NEAR(p.wallForce, byHand, 0.001 * byHand) << p.text;
        EXPECT_NEAR(p.friction, 0.0, 1.0E-9) << p.text;
    }
    EXPECT_EQ(active.critical.angle, 60.0);
    EXPECT_NEAR(active.critical.wallForce, load / 3.0, 0.0005 * load / 3.0);

    const Sweep& passive = sweeps[1];
    ASSERT_EQ(anglesOf(passive.planes), anglesFrom(15.0, 45.0));
    for (const Listed& p : passive.planes) {
        const double a = radians(p.angle);
        const double byHand = load / std::tan(a) * std::tan(a + radians(30.0));
        EXPECT_NEAR(p.wallForce, byHand, 0.001 * byHand) << p.text;
    }
    EXPECT_EQ(passive.critical.angle, 30.0);
    EXPECT_NEAR(passive.critical.wallForce, load * 3.0, 0.0005 * load * 3.0);
    for (const Listed& p : passive.planes) EXPECT_GE(p.wallForce, passive.critical.wallForce) << p.text;

    // Each sweep's critical plane is the best surface printed after it: surfaces 16 and 31 + 16.
    EXPECT_NE(eko.find(" BEST SURFACE (NUM=          16 SF=   1.000000    ) IS PRINTED\n"), std::string::npos);
    EXPECT_NE(eko.find(" BEST SURFACE (NUM=          47 SF=  -1.000000    ) IS PRINTED\n"), std::string::npos);
    const std::string res = expectedFile("plane_rankine", "KALMO.RES");
    EXPECT_NE(res.find(printedPlane("ACTIVE", active.critical, 30.0, 6.0)), std::string::npos);
    EXPECT_NE(res.find(printedPlane("PASSIVE", passive.critical, 30.0, 6.0)), std::string::npos);
}

}  // namespace
