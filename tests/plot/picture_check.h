// Helpers of the picture tests: parsing a picture, its transform, and the points of a
// polyline or polygon.

#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "plot/xml_tree.h"

namespace kalmo_test {

// The drawing's transform as the picture states it on its drawing group.
struct PictureTransform {
    double xMin = 0.0, zMin = 0.0, left = 0.0, top = 0.0, scale = 0.0;
    double px(double x) const { return left + (x - xMin) * scale; }
    double py(double z) const { return top + (z - zMin) * scale; }
};

inline PictureTransform transformOf(const XmlElement& root) {
    PictureTransform view;
    const XmlElement* drawing = root.byId("drawing");
    EXPECT_NE(drawing, nullptr) << "no drawing group";
    if (!drawing) return view;
    view.xMin = std::stod(drawing->attribute("data-x-min"));
    view.zMin = std::stod(drawing->attribute("data-z-min"));
    view.left = std::stod(drawing->attribute("data-left"));
    view.top = std::stod(drawing->attribute("data-top"));
    view.scale = std::stod(drawing->attribute("data-scale"));
    return view;
}

// "x1,y1 x2,y2 ..." as a flat list x1, y1, x2, y2, ...
inline std::vector<double> pointList(const std::string& points) {
    std::vector<double> values;
    std::string text = points;
    for (char& c : text)
        if (c == ',') c = ' ';
    std::istringstream in(text);
    for (double value; in >> value;) values.push_back(value);
    return values;
}

inline std::string joinedLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

}  // namespace kalmo_test
