// The list of an earth-pressure plane sweep read back from its fixed columns: per plane the
// angle (F9.1), the x where it meets the ground (F11.3), the earth pressure E2 (ES14.3), the
// wall friction T2 (ES16.3), the height H2 (F11.3) and the score (F9.3).

#pragma once

#include <cmath>
#include <string>
#include <vector>

namespace kalmo_test {

inline double radians(double degrees) { return degrees * 3.14159265358979323846 / 180.0; }

struct Listed {
    double angle = 0.0, xGround = 0.0, wallForce = 0.0, friction = 0.0, height = 0.0, score = 0.0;
    std::string text;
};

inline Listed parseListed(const std::string& line) {
    Listed l;
    l.text = line;
    l.angle = std::stod(line.substr(0, 9));
    l.xGround = std::stod(line.substr(9, 11));
    l.wallForce = std::stod(line.substr(20, 14));
    l.friction = std::stod(line.substr(34, 16));
    l.height = std::stod(line.substr(50, 11));
    l.score = std::stod(line.substr(61, 9));
    return l;
}

inline std::vector<double> anglesOf(const std::vector<Listed>& planes) {
    std::vector<double> angles;
    for (const Listed& p : planes) angles.push_back(p.angle);
    return angles;
}

// The heading of the list, and the line before the critical plane.
const std::string kPlaneHeading = "     ANGLE  X-SURFACE  EARTH PRESSURE  WALL FRICTION  HEIGHT H2  SCORE";
const std::string kCriticalLine = " CRITICAL PLANE :";

}  // namespace kalmo_test
