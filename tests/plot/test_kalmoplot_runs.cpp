// Whole runs of the picture program: the slope and wall examples are analysed by the program
// in batch mode, then kalmoplot draws the saved surface in the same folder.
//
// What the pictures must show is checked against the input files and the post-processor file
// themselves: the ground line through the x-lines of the input, the axis ticks where the
// transform puts those metres, the surface through the slice corners of KALMO.PLT, every
// material with its unit weight and friction angle as the input gives them, and the safety
// factor or the earth-pressure force as the file writes them. The run folder keeps every file
// it had, byte for byte: kalmoplot adds its picture and nothing else.

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "output/readplt.h"
#include "plot/picture_check.h"
#include "plot/xml_tree.h"
#include "support/tempdir.h"
#include "support/wholerun.h"

namespace kalmo_test {
namespace {

namespace fs = std::filesystem;

// Runs a program in a folder; returns its exit status, the standard output in `screen`.
int runIn(const std::string& folder, const std::string& program, const std::string& arguments, std::string& screen) {
    const std::string screenFile = folder + "/../screen.txt";
    const std::string command = "cd " + shellQuoted(folder) + " && timeout 60 " + shellQuoted(program) + " " + arguments +
                                " < /dev/null > " + shellQuoted(screenFile) + " 2>&1";
    const int status = std::system(command.c_str());
    screen = readFile(screenFile);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::map<std::string, std::string> folderFiles(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        files[entry.path().filename().string()] = readFile(entry.path());
    return files;
}

class PictureRun : public ::testing::Test {
protected:
    // Copies the example into a fresh run folder and runs the analysis of its answer file.
    void analyse(const std::string& example) {
        fs::create_directory(run);
        for (const char* file : {"KALMO.INP", "SVAR.TMP"})
            fs::copy_file(fs::path(KALMO_SOURCE_DIR) / "examples" / example / file, fs::path(run) / file);
        std::string screen;
        ASSERT_EQ(runIn(run, KALMO_EXE, "0", screen), 0) << screen;
        ASSERT_TRUE(fs::exists(fs::path(run) / "KALMO.PLT"));
    }

    // Runs kalmoplot; checks that it added exactly the named pictures and changed nothing else.
    void draw(const std::string& arguments, const std::vector<std::string>& pictures) {
        const auto before = folderFiles(run);
        std::string screen;
        ASSERT_EQ(runIn(run, KALMOPLOT_EXE, arguments, screen), 0) << screen;
        auto after = folderFiles(run);
        for (const std::string& picture : pictures) {
            ASSERT_EQ(after.count(picture), 1u) << picture;
            svgText[picture] = after[picture];
            after.erase(picture);
        }
        EXPECT_EQ(after, before) << "kalmoplot changed the run folder";
    }

    void parse(const std::string& picture, XmlElement& root) {
        XmlReader reader;
        std::string why;
        ASSERT_TRUE(reader.parse(svgText[picture], root, why)) << why;
        ASSERT_EQ(root.name, "svg");
    }

    std::vector<plt::Block> savedBlocks() {
        std::vector<plt::Block> blocks;
        std::string error;
        EXPECT_EQ(plt::readPltFile(run + "/KALMO.PLT", blocks, error), 0) << error;
        return blocks;
    }

    TempDir root;
    std::string run = root.path("run");
    std::map<std::string, std::string> svgText;
};

// The safety factor field of the last values record of KALMO.PLT, as written (F9.4).
std::string lastSafetyFactorField(const std::string& plt) {
    std::istringstream lines(plt);
    std::string line, field;
    bool next = false;
    while (std::getline(lines, line)) {
        if (next) {
            field = line.substr(0, 9);
            while (!field.empty() && field.front() == ' ') field.erase(0, 1);
        }
        next = line.rfind(" SAFETY.FCT", 0) == 0;
    }
    return field;
}

TEST_F(PictureRun, SlopeExampleDrawsItsSectionSurfaceLegendAndSafetyFactor) {
    analyse("slope");
    draw("", {"KALMO.SVG"});
    XmlElement svg;
    parse("KALMO.SVG", svg);
    const PictureTransform view = transformOf(svg);
    ASSERT_GT(view.scale, 0.0);
    std::string screen;
    ASSERT_EQ(runIn(run, KALMOPLOT_EXE, "", screen), 0);
    EXPECT_EQ(screen, " KALMOPLOT : KALMO.SVG WRITTEN, SURFACE    1\n");

    // The ground line runs through the x-lines of the input: (0, 0), (20, 0), (40, 10), (60, 10),
    // with the mesh's node columns between them; the rock line lies at 25 throughout.
    const XmlElement* ground = svg.byId("ground");
    ASSERT_NE(ground, nullptr);
    const std::vector<double> groundPoints = pointList(ground->attribute("points"));
    ASSERT_EQ(groundPoints.size(), 2u * 31u);  // 30 element columns, 31 node columns
    const double xLines[][2] = {{0.0, 0.0}, {20.0, 0.0}, {40.0, 10.0}, {60.0, 10.0}};
    for (int k = 0; k < 4; ++k) {
        EXPECT_NEAR(groundPoints[static_cast<size_t>(20 * k)], view.px(xLines[k][0]), 0.006) << "x-line " << k + 1;
        EXPECT_NEAR(groundPoints[static_cast<size_t>(20 * k + 1)], view.py(xLines[k][1]), 0.006) << "x-line " << k + 1;
    }
    const std::vector<double> rockPoints = pointList(svg.byId("rock")->attribute("points"));
    for (size_t k = 1; k < rockPoints.size(); k += 2) EXPECT_NEAR(rockPoints[k], view.py(25.0), 0.006);

    // The x ticks stand where the transform puts their metres; 20 is the crest edge of the
    // ground line.
    std::vector<const XmlElement*> ticks;
    svg.collect("text", "tick-x", ticks);
    ASSERT_GE(ticks.size(), 4u);
    bool crest = false;
    for (const XmlElement* tick : ticks) {
        const double metres = std::stod(tick->text);
        EXPECT_NEAR(std::stod(tick->attribute("x")), view.px(metres), 0.006) << tick->text;
        if (tick->text == "20") {
            crest = true;
            EXPECT_NEAR(std::stod(tick->attribute("x")), groundPoints[20], 0.006);
        }
    }
    EXPECT_TRUE(crest);

    // The surface runs through the base corners of the slices as the post-processor file gives
    // them: corner 4 of slice 1 (row 0), then corner 3 of every slice.
    const std::vector<plt::Block> blocks = savedBlocks();
    ASSERT_EQ(blocks.size(), 1u);
    const plt::Block& block = blocks.back();
    const XmlElement* surface = svg.byId("shear-surface");
    ASSERT_NE(surface, nullptr);
    const std::vector<double> surfacePoints = pointList(surface->attribute("points"));
    ASSERT_EQ(surfacePoints.size(), 2u * block.geometry.rows.size());
    ASSERT_EQ(block.geometry.rows.size(), static_cast<size_t>(block.NUMSLC) + 1);
    for (size_t k = 0; k < block.geometry.rows.size(); ++k) {
        const std::vector<double>& side = block.geometry.rows[k].values;
        EXPECT_NEAR(surfacePoints[2 * k], view.px(side[0]), 0.006) << "side " << k;
        EXPECT_NEAR(surfacePoints[2 * k + 1], view.py(side[2]), 0.006) << "side " << k;
    }
    std::vector<const XmlElement*> slices;
    svg.collect("polygon", "slice", slices);
    EXPECT_EQ(slices.size(), static_cast<size_t>(block.NUMSLC));

    // Every material of the section, with the unit weight and friction angle of the input.
    const char* const rows[] = {"MATERIAL 1:  \xce\xb3 = 19.0 kN/m\xc2\xb3,  c' = 0.0 kPa,  \xcf\x86' = 36.0\xc2\xb0",
                                "MATERIAL 2:  \xce\xb3 = 18.5 kN/m\xc2\xb3,  c' = 6.0 kPa,  \xcf\x86' = 28.0\xc2\xb0",
                                "MATERIAL 3:  \xce\xb3 = 21.0 kN/m\xc2\xb3,  c' = 5.0 kPa,  \xcf\x86' = 38.0\xc2\xb0"};
    for (int m = 1; m <= 3; ++m) {
        const XmlElement* legend = svg.byId("legend-material-" + std::to_string(m));
        ASSERT_NE(legend, nullptr) << "material " << m;
        std::vector<const XmlElement*> texts;
        legend->collect("text", "legend", texts);
        ASSERT_EQ(texts.size(), 1u);
        EXPECT_EQ(texts[0]->text, rows[m - 1]);
    }
    EXPECT_EQ(svg.byId("legend-material-4"), nullptr);

    // The safety factor as the file writes it.
    const XmlElement* factor = svg.byId("safety-factor");
    ASSERT_NE(factor, nullptr);
    const std::string fileField = lastSafetyFactorField(readFile(run + "/KALMO.PLT"));
    EXPECT_FALSE(fileField.empty());
    EXPECT_EQ(factor->text, "SAFETY FACTOR = " + fileField);

    // One strip load (20 kPa on the crest from x 5 to 15) and the water table at 11.
    const XmlElement* water = svg.byId("water");
    ASSERT_NE(water, nullptr);
    const std::vector<double> waterPoints = pointList(water->attribute("points"));
    ASSERT_EQ(waterPoints.size(), 4u);
    EXPECT_NEAR(waterPoints[1], view.py(11.0), 0.006);
    EXPECT_NE(svgText["KALMO.SVG"].find("S1 q = 20 kPa"), std::string::npos);
    EXPECT_EQ(svg.byId("wall"), nullptr);
}

TEST_F(PictureRun, WallExampleShowsTheWallAndTheForceOnIt) {
    analyse("wall");
    draw("all", {"KALMO-001.SVG"});
    XmlElement svg;
    parse("KALMO-001.SVG", svg);
    const PictureTransform view = transformOf(svg);

    // The wall of record 2200 stands at x 30 from the ground (0) to its foot at 6.
    const XmlElement* wall = svg.byId("wall");
    ASSERT_NE(wall, nullptr);
    const double wallX = std::stod(wall->attribute("x")), wallWidth = std::stod(wall->attribute("width"));
    EXPECT_TRUE(std::fabs(wallX - view.px(30.0)) < 0.006 || std::fabs(wallX + wallWidth - view.px(30.0)) < 0.006);
    EXPECT_NEAR(std::stod(wall->attribute("y")), view.py(0.0), 0.006);
    EXPECT_NEAR(std::stod(wall->attribute("y")) + std::stod(wall->attribute("height")), view.py(6.0), 0.006);

    // The force on the wall is E2 of the last slice; the sweep lists the critical plane with
    // 70.4 kN per metre of wall.
    const std::vector<plt::Block> blocks = savedBlocks();
    ASSERT_EQ(blocks.size(), 1u);
    const double force = blocks.back().forces.rows.back().values[2];
    EXPECT_NEAR(force, 70.4, 0.05);
    const XmlElement* pressure = svg.byId("earth-pressure");
    ASSERT_NE(pressure, nullptr);
    EXPECT_EQ(pressure->text, "EARTH PRESSURE = 70.383 kN/m");
    EXPECT_EQ(svg.byId("safety-factor")->text,
              "SAFETY FACTOR = " + lastSafetyFactorField(readFile(run + "/KALMO.PLT")) + " (ACTIVE)");

    // Two materials; the pore-pressure level of the two x-lines (free water at 2 and 4 m).
    EXPECT_NE(svg.byId("legend-material-1"), nullptr);
    EXPECT_NE(svg.byId("legend-material-2"), nullptr);
    const std::vector<double> water = pointList(svg.byId("water")->attribute("points"));
    ASSERT_GE(water.size(), 4u);
    EXPECT_NEAR(water[1], view.py(2.0), 0.006);
    EXPECT_NEAR(water.back(), view.py(4.0), 0.006);
}

TEST_F(PictureRun, WithoutASavedSurfaceItSaysSoInOneLineAndFails) {
    fs::create_directory(run);
    fs::copy_file(fs::path(KALMO_SOURCE_DIR) / "examples" / "slope" / "KALMO.INP", fs::path(run) / "KALMO.INP");
    std::string screen;
    EXPECT_EQ(runIn(run, KALMOPLOT_EXE, "", screen), 1);
    EXPECT_EQ(screen, " **** KALMOPLOT : NO KALMO.PLT IN THIS FOLDER: SAVE A SURFACE WITH KALMO FIRST\n");

    root.write("run/KALMO.PLT", "");
    EXPECT_EQ(runIn(run, KALMOPLOT_EXE, "", screen), 1);
    EXPECT_EQ(screen, " **** KALMOPLOT : KALMO.PLT HOLDS NO SAVED SURFACE: SAVE A SURFACE WITH KALMO FIRST\n");
    EXPECT_FALSE(fs::exists(fs::path(run) / "KALMO.SVG"));
    EXPECT_EQ(folderFiles(run).size(), 2u);
}

TEST_F(PictureRun, ASurfaceSavedFromAnotherInputIsDrawnAfterAWarning) {
    analyse("slope");
    fs::copy_file(fs::path(KALMO_SOURCE_DIR) / "examples" / "wall" / "KALMO.INP", fs::path(run) / "KALMO.INP",
                  fs::copy_options::overwrite_existing);
    std::string screen;
    EXPECT_EQ(runIn(run, KALMOPLOT_EXE, "", screen), 0);
    EXPECT_EQ(screen,
              " KALMOPLOT : THE TITLES OF A BLOCK OF KALMO.PLT DIFFER FROM THOSE OF KALMO.INP:\n"
              " KALMOPLOT : THE SURFACE MAY HAVE BEEN SAVED FROM ANOTHER INPUT\n"
              " KALMOPLOT : KALMO.SVG WRITTEN, SURFACE    1\n");
}

TEST_F(PictureRun, AnInputTheReaderRefusesEndsWithItsCode) {
    analyse("slope");
    // Fewer than 50 lines: the reader refuses the file with IERR 1.
    root.write("run/KALMO.INP", "TITLE\nTITLE\n\nEND\n");
    std::string screen;
    EXPECT_EQ(runIn(run, KALMOPLOT_EXE, "", screen), 2);
    EXPECT_EQ(screen, " **** KALMOPLOT : KALMO.INP IS REFUSED BY THE INPUT READER, IERR =           1 (RUN KALMO TO SEE WHY)\n");
    EXPECT_FALSE(fs::exists(fs::path(run) / "KALMO.SVG"));

    fs::remove(fs::path(run) / "KALMO.INP");
    EXPECT_EQ(runIn(run, KALMOPLOT_EXE, "", screen), 2);
    EXPECT_EQ(screen, " **** KALMOPLOT : NO KALMO.INP IN THIS FOLDER\n");
}

}  // namespace
}  // namespace kalmo_test
