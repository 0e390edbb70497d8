// The picture of a saved surface over a section built in the records by hand: what each piece
// draws, and that no record content, however odd, spoils the picture's XML or its bounds.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "output/readplt.h"
#include "plot/picture_check.h"
#include "plot/plot.h"
#include "plot/xml_tree.h"
#include "records.h"

namespace kalmo_test {
namespace {

// A section 20 m wide: ground at 0 from x 0 to 10, falling to 5 at x 20; rock at 10. Two
// horizontal layers (material 2 down to 4 m, material 1 below), a triangle of material 3, one
// nail, one point force and one strip load; a total stress analysis of three materials.
class Picture : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        MASTER.PI = 4.0 * std::atan(1.0);
        MASTER.IDTYP = 1;
        MASTER.IDEFTO = 2;
        IGEOMS.NX = 2;
        const double xs[] = {0.0, 10.0, 20.0}, grounds[] = {0.0, 0.0, 5.0};
        for (int c = 1; c <= 3; ++c) {
            GEOMSH.XSURF(c) = xs[c - 1];
            GEOMSH.ZSURF(c) = grounds[c - 1];
            GEOMSH.ZROCK(c) = 10.0;
        }
        IGEOMS.NLAYER = 2;
        GEOMSH.ZLAYER(1) = 4.0;
        IGEOMS.LAYMAT(1) = 2;
        GEOMSH.ZLAYER(2) = 10.0;
        IGEOMS.LAYMAT(2) = 1;
        IGEOMS.NTRI = 1;
        IGEOMS.ITRMAT(1) = 3;
        const double tx[] = {12.0, 14.0, 16.0}, tz[] = {6.0, 8.0, 6.0};
        for (int v = 1; v <= 3; ++v) {
            GEOMSH.XTRI(v, 1) = tx[v - 1];
            GEOMSH.ZTRI(v, 1) = tz[v - 1];
        }
        ISOLPR.NMAT = 3;
        for (int m = 1; m <= 3; ++m) {
            SOLPRP.MAT(GAMTOT, m) = 17.0 + m;
            SOLPRP.MAT(MAT14, m) = 10.0 * m;
        }
        ISNAIL.NNAILS = 1;
        SNAILS.SN(1, 1) = 18.0;
        SNAILS.SN(1, 2) = 4.0;
        SNAILS.SN(1, 3) = 12.0;
        SNAILS.SN(1, 4) = 7.0;
        ILOA.NPF = 1;
        LOAD.XZPF(1, 1) = 5.0;
        LOAD.XZPF(2, 1) = 0.0;
        LOAD.FPF(1, 1) = 0.0;
        LOAD.FPF(2, 1) = 30.0;
        LOAD.LDAT(4) = 1.0;
        ILOA.NSTRIP = 1;
        LOAD.XSTRIP(1, 1) = 2.0;
        LOAD.XSTRIP(2, 1) = 8.0;
        LOAD.QSTRV(1, 1) = 20.0;
        LOAD.QSTRV(2, 1) = 20.0;
        LOAD.LDAT(5) = 1.0;
        IWATER.IDPWP = 1;
        WATER1.ZWATER = 3.0;

        block.TITLE = {"SLOPE & BANK <TEST>", "SECOND LINE"};
        block.NUMSRF = 7;
        block.NTYP = 2;
        block.NUMSLC = 2;
        block.METHOD = 1;
        block.IDEFTO = 2;
        block.SF = 1.23456;
        block.geometry.present = true;
        block.geometry.rows = {side(0, 2.0, 0.0, 0.5), side(1, 10.0, 0.0, 6.0), side(2, 17.0, 3.5, 4.0)};
    }

    static plt::Row side(int number, double x, double top, double base) {
        plt::Row row;
        row.number = number;
        row.values = {x, top, base};
        if (number > 0) row.values.insert(row.values.end(), {x - 1.0, (top + base) / 2.0, 0.5});
        return row;
    }

    // Draws the picture and parses it; a picture that is no well-formed XML fails the test.
    void draw() {
        lines.clear();
        SVGPIC(block, lines);
        XmlReader reader;
        std::string why;
        svg = XmlElement();
        ASSERT_TRUE(reader.parse(joinedLines(lines), svg, why)) << why;
    }

    plt::Block block;
    kalmo_test::XmlElement svg;
    ::Picture lines;
};

TEST_F(Picture, TheSurfaceRunsThroughTheBaseCornersOfTheSlices) {
    draw();
    const PictureTransform view = transformOf(svg);
    const std::vector<double> points = pointList(svg.byId("shear-surface")->attribute("points"));
    const double expected[] = {2.0, 0.5, 10.0, 6.0, 17.0, 4.0};
    ASSERT_EQ(points.size(), 6u);
    for (size_t k = 0; k < 6; k += 2) {
        EXPECT_NEAR(points[k], view.px(expected[k]), 0.006);
        EXPECT_NEAR(points[k + 1], view.py(expected[k + 1]), 0.006);
    }
    // One scale across and down: the section keeps its shape. The drawing spans x 0..20 and
    // depths 0..10, so the width rules: 20 m on the width the page leaves.
    EXPECT_NEAR(view.px(20.0) - view.px(0.0), 2.0 * (view.py(10.0) - view.py(0.0)), 1.0e-9);

    // Slice 2 is the quadrilateral (10, 0), (17, 3.5), (17, 4), (10, 6).
    std::vector<const XmlElement*> slices;
    svg.collect("polygon", "slice", slices);
    ASSERT_EQ(slices.size(), 2u);
    const std::vector<double> second = pointList(slices[1]->attribute("points"));
    const double corners[] = {10.0, 0.0, 17.0, 3.5, 17.0, 4.0, 10.0, 6.0};
    ASSERT_EQ(second.size(), 8u);
    for (size_t k = 0; k < 8; k += 2) {
        EXPECT_NEAR(second[k], view.px(corners[k]), 0.006);
        EXPECT_NEAR(second[k + 1], view.py(corners[k + 1]), 0.006);
    }
}

TEST_F(Picture, LayersAreFilledFromTheLevelAboveDownToTheirOwnAndTheTriangleOnTop) {
    draw();
    const PictureTransform view = transformOf(svg);
    const XmlElement* materials = svg.byId("materials");
    ASSERT_NE(materials, nullptr);
    EXPECT_EQ(materials->attribute("clip-path"), "url(#section-clip)");
    std::vector<const XmlElement*> bands, triangles;
    materials->collect("rect", "", bands);
    materials->collect("polygon", "boundary", triangles);
    ASSERT_EQ(bands.size(), 2u);
    // Layer 1 (material 2) reaches down to 4 m, layer 2 (material 1) from 4 m on.
    EXPECT_EQ(bands[0]->attribute("fill"), svg::materialColour(2));
    EXPECT_NEAR(std::stod(bands[0]->attribute("y")) + std::stod(bands[0]->attribute("height")), view.py(4.0), 0.006);
    EXPECT_EQ(bands[1]->attribute("fill"), svg::materialColour(1));
    EXPECT_NEAR(std::stod(bands[1]->attribute("y")), view.py(4.0), 0.006);
    ASSERT_EQ(triangles.size(), 1u);
    EXPECT_EQ(triangles[0]->attribute("fill"), svg::materialColour(3));
    EXPECT_NE(svg::materialColour(1), svg::materialColour(2));
    EXPECT_NE(svg::materialColour(2), svg::materialColour(3));
}

TEST_F(Picture, EveryMaterialIsInTheLegendWithItsUndrainedStrengthInATotalStressAnalysis) {
    draw();
    for (int m = 1; m <= 3; ++m) {
        const XmlElement* row = svg.byId("legend-material-" + std::to_string(m));
        ASSERT_NE(row, nullptr);
        std::vector<const XmlElement*> texts;
        row->collect("text", "legend", texts);
        ASSERT_EQ(texts.size(), 1u);
        const std::string gamma = std::to_string(17 + m) + ".0";
        EXPECT_EQ(texts[0]->text, "MATERIAL " + std::to_string(m) + ":  \xce\xb3 = " + gamma +
                                      " kN/m\xc2\xb3,  su = " + std::to_string(10 * m) + ".0 kPa");
    }
    // With undrained-strength profiles, a base value of 0.1 or less only switches to them; a
    // material whose profile switch is set adds them to its base value.
    ISOLPR.NSUX = 1;
    SOLPRP.MAT(MAT14, 1) = 0.1;
    SOLPRP.MAT(MAT16, 2) = 1.0;
    draw();
    auto legendText = [this](int m) {
        std::vector<const XmlElement*> texts;
        svg.byId("legend-material-" + std::to_string(m))->collect("text", "legend", texts);
        return texts.empty() ? std::string() : texts[0]->text;
    };
    EXPECT_EQ(legendText(1), "MATERIAL 1:  \xce\xb3 = 18.0 kN/m\xc2\xb3,  su from the profiles");
    EXPECT_EQ(legendText(2), "MATERIAL 2:  \xce\xb3 = 19.0 kN/m\xc2\xb3,  su = 20.0 kPa + profiles");
    EXPECT_EQ(legendText(3), "MATERIAL 3:  \xce\xb3 = 20.0 kN/m\xc2\xb3,  su = 30.0 kPa");
    // A combined analysis shows both strengths.
    MASTER.IDEFTO = 3;
    SOLPRP.MAT(COHESN, 3) = 5.0;
    SOLPRP.MAT(PHIANG, 3) = 1.0;  // tan 45 degrees
    draw();
    EXPECT_EQ(legendText(3), "MATERIAL 3:  \xce\xb3 = 20.0 kN/m\xc2\xb3,  c' = 5.0 kPa,  \xcf\x86' = 45.0\xc2\xb0,  su = 30.0 kPa");

    // Twelve materials go in two columns, all of them.
    ISOLPR.NMAT = 12;
    draw();
    for (int m = 1; m <= 12; ++m) EXPECT_NE(svg.byId("legend-material-" + std::to_string(m)), nullptr) << m;
    EXPECT_EQ(svg.byId("legend-material-13"), nullptr);
}

TEST_F(Picture, TitlesAreEscapedAndTheSafetyFactorReadsAsItsFileField) {
    draw();
    bool titled = false;
    for (const auto& child : svg.children)
        if (child->name == "title") titled = child->text == "SLOPE & BANK <TEST>";
    EXPECT_TRUE(titled);
    // F9.4 of 1.23456 is 1.2346.
    EXPECT_EQ(svg.byId("safety-factor")->text, "SAFETY FACTOR = 1.2346");
    EXPECT_EQ(sfText(block), "1.2346");
    // A factor too large for its field came back from the file as not a number: asterisks.
    block.SF = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(sfText(block), "*********");
}

TEST_F(Picture, LoadsNailsAndWaterAreDrawnWhereTheyAct) {
    draw();
    const PictureTransform view = transformOf(svg);
    // The point force of 30 downward ends at (5, 0), coming from straight above.
    std::vector<const XmlElement*> forces;
    svg.collect("line", "point-force", forces);
    ASSERT_EQ(forces.size(), 1u);
    EXPECT_NEAR(std::stod(forces[0]->attribute("x2")), view.px(5.0), 0.006);
    EXPECT_NEAR(std::stod(forces[0]->attribute("y2")), view.py(0.0), 0.006);
    EXPECT_NEAR(std::stod(forces[0]->attribute("x1")), view.px(5.0), 0.006);
    EXPECT_LT(std::stod(forces[0]->attribute("y1")), view.py(0.0));
    // The strip load stands on the ground between 2 and 8.
    std::vector<const XmlElement*> bands;
    svg.collect("polygon", "load-band", bands);
    ASSERT_EQ(bands.size(), 1u);
    const std::vector<double> band = pointList(bands[0]->attribute("points"));
    EXPECT_NEAR(band[0], view.px(2.0), 0.006);
    EXPECT_NEAR(band[1], view.py(0.0), 0.006);
    EXPECT_NEAR(band[6], view.px(8.0), 0.006);
    // A load whose magnitude factor is zero does not act and is not drawn.
    LOAD.LDAT(5) = 0.0;
    LOAD.LDAT(4) = 0.0;
    draw();
    bands.clear();
    forces.clear();
    svg.collect("polygon", "load-band", bands);
    svg.collect("line", "point-force", forces);
    EXPECT_TRUE(bands.empty());
    EXPECT_TRUE(forces.empty());

    std::vector<const XmlElement*> nails;
    svg.collect("line", "nail", nails);
    ASSERT_EQ(nails.size(), 1u);
    EXPECT_NEAR(std::stod(nails[0]->attribute("x1")), view.px(18.0), 0.006);
    EXPECT_NEAR(std::stod(nails[0]->attribute("y2")), view.py(7.0), 0.006);
    const std::vector<double> water = pointList(svg.byId("water")->attribute("points"));
    ASSERT_EQ(water.size(), 4u);
    EXPECT_NEAR(water[1], view.py(3.0), 0.006);
    EXPECT_NEAR(water[3], view.py(3.0), 0.006);
}

TEST_F(Picture, TheWallOfAnEarthPressureProblemStandsOnTheSideAwayFromTheSlices) {
    MASTER.IDTYP = 2;
    GEOMSH.XWALL = 20.0;
    GEOMSH.DWALL = 4.0;
    GEOMSH.ZWALL = 9.0;  // ground 5 at x 20, wall 4 high
    block.NTYP = 4;
    block.SF = 1.0;
    block.forces.present = true;
    for (int i = 1; i <= 2; ++i) {
        plt::Row row;
        row.number = i;
        row.values = {1.0, 1.0, 10.0 * i + 0.5, 0.0, 0.0, 0.5};
        block.forces.rows.push_back(row);
    }
    draw();
    const PictureTransform view = transformOf(svg);
    const XmlElement* wall = svg.byId("wall");
    ASSERT_NE(wall, nullptr);
    // The slices lie left of the wall, so its body reaches to the right of x 20.
    EXPECT_NEAR(std::stod(wall->attribute("x")), view.px(20.0), 0.006);
    EXPECT_NEAR(std::stod(wall->attribute("y")), view.py(5.0), 0.006);
    EXPECT_NEAR(std::stod(wall->attribute("height")), view.py(9.0) - view.py(5.0), 0.006);
    // The force on the wall is E2 of the last slice, to the five digits the file keeps
    // (E12.4 with scale 1: 2.0500E+01).
    EXPECT_EQ(svg.byId("earth-pressure")->text, "EARTH PRESSURE = 20.500 kN/m");
    EXPECT_EQ(svg.byId("safety-factor")->text, "SAFETY FACTOR = 1.0000 (ACTIVE)");
}

TEST_F(Picture, CountsBeyondTheArraysAndUnreadableValuesStillGiveAWellFormedPicture) {
    IGEOMS.NX = 100000;
    IGEOMS.NLAYER = 99;
    IGEOMS.NTRI = -4;
    IGEOMS.NELEM = 99999;
    ISOLPR.NMAT = 500;
    ISNAIL.NNAILS = 1000;
    ILOA.NPF = -3;
    ILOA.NSTRIP = 77;
    IWATER.IDPWP = 2;
    IWATER.NUMXPW = 9999;
    block.geometry.rows[1].values[2] = std::numeric_limits<double>::quiet_NaN();
    // A strip load reaching far beyond the section, one with no numbers at all.
    LOAD.XSTRIP(2, 1) = 1.0e30;
    LOAD.XSTRIP(1, 2) = std::numeric_limits<double>::quiet_NaN();
    LOAD.QSTRV(1, 2) = std::numeric_limits<double>::quiet_NaN();
    block.SF = std::numeric_limits<double>::quiet_NaN();
    draw();
    EXPECT_NE(svg.byId("shear-surface"), nullptr);
    // Mesh elements with node numbers outside the mesh are left out.
    IGEOMS.NX = 2;
    IGEOMS.NLAYER = 0;
    IGEOMS.NELEM = 2;
    IGEOMS.NNODE = 4;
    ISOLPR.NMAT = 2;
    IGEOMS.IELMAT(1) = 1;
    IGEOMS.IELMAT(2) = 2;
    for (int corner = 1; corner <= 4; ++corner) {
        IGEOMS.IELNOD(corner, 1) = corner;
        IGEOMS.IELNOD(corner, 2) = 100 + corner;
    }
    draw();
    std::vector<const XmlElement*> paths;
    svg.byId("materials")->collect("path", "", paths);
    EXPECT_EQ(paths.size(), 1u);
    // No slices at all: no surface, still a picture.
    block.geometry.rows.clear();
    draw();
    EXPECT_EQ(svg.byId("shear-surface"), nullptr);
}

}  // namespace
}  // namespace kalmo_test
