// plot/kalmoplot.cpp
//
// kalmoplot — the picture program. Started in a run folder, it reads the input file KALMO.INP
// through the program's own reader (quietly: nothing in the folder changes but the pictures)
// and the post-processor file KALMO.PLT, and draws the section with a saved surface as an
// SVG picture: KALMO.SVG for the last block of the file, or with the argument "all" one file
// per block, KALMO-001.SVG, KALMO-002.SVG, ...
//
// Exit status: 0 pictures written; 1 no KALMO.PLT, an empty one, one that cannot be read, or
// an unknown argument; 2 KALMO.INP missing or refused by the reader; 3 a picture file could
// not be written. Every failure is said in one line on the standard output. A saved block
// whose titles are not those of the input is drawn all the same, after a warning that it may
// belong to another input.

#include <string>
#include <vector>

#include "io/channels.h"
#include "io/fmt.h"
#include "output/readplt.h"
#include "plot/plot.h"
#include "records.h"

namespace {

constexpr int kScreen = 6;
constexpr int kPicture = 20;

int fail(int status, const std::string& message) {
    io::bindStdout(kScreen);
    io::writeLine(kScreen, " **** KALMOPLOT : " + message);
    io::closeAll();
    return status;
}

// Three digits, more when a file holds more than 999 blocks.
std::string pictureName(int number) {
    return "KALMO-" + io::fmtI(number, number > 999 ? 7 : 3, 3).substr(number > 999 ? 7 - std::to_string(number).size() : 0) + ".SVG";
}

bool writePicture(const plt::Block& block, const std::string& name) {
    Picture picture;
    SVGPIC(block, picture);
    if (io::openNew(kPicture, name) != 0) return false;
    for (const std::string& line : picture) io::writeLine(kPicture, line);
    io::close(kPicture);
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    TEXT.VERSION.set("12 Jan 2017");
    io::bindStdout(kScreen);

    const std::string argument = argc > 1 ? argv[1] : "";
    const bool all = argument == "all" || argument == "ALL";
    if (!argument.empty() && !all) return fail(1, "UNKNOWN ARGUMENT " + argument + " (GIVE NONE, OR all)");

    std::vector<plt::Block> blocks;
    std::string error;
    const int status = plt::readPltFile("KALMO.PLT", blocks, error);
    if (status == 1) return fail(1, "NO KALMO.PLT IN THIS FOLDER: SAVE A SURFACE WITH KALMO FIRST");
    if (status != 0) return fail(1, "KALMO.PLT CANNOT BE READ: " + error);
    if (blocks.empty()) return fail(1, "KALMO.PLT HOLDS NO SAVED SURFACE: SAVE A SURFACE WITH KALMO FIRST");

    const int inputStatus = READQ();
    if (inputStatus == -1) return fail(2, "NO KALMO.INP IN THIS FOLDER");
    if (inputStatus == -2) return fail(2, "NO TEMPORARY FOLDER FOR THE WORK FILE OF THE INPUT READER");
    if (inputStatus != 0)
        return fail(2, "KALMO.INP IS REFUSED BY THE INPUT READER, IERR =" + io::freeItem(inputStatus) +
                           " (RUN KALMO TO SEE WHY)");

    io::bindStdout(kScreen);
    // A surface saved from another input would be drawn over the wrong section.
    for (const plt::Block& block : blocks) {
        if (svg::trimmed(block.TITLE[0]) == svg::trimmed(TEXT.TITLE(1).view()) &&
            svg::trimmed(block.TITLE[1]) == svg::trimmed(TEXT.TITLE(2).view()))
            continue;
        io::writeLine(kScreen, " KALMOPLOT : THE TITLES OF A BLOCK OF KALMO.PLT DIFFER FROM THOSE OF KALMO.INP:");
        io::writeLine(kScreen, " KALMOPLOT : THE SURFACE MAY HAVE BEEN SAVED FROM ANOTHER INPUT");
        break;
    }
    if (!all) {
        if (!writePicture(blocks.back(), "KALMO.SVG")) return fail(3, "KALMO.SVG CANNOT BE WRITTEN");
        io::writeLine(kScreen, io::Line(" KALMOPLOT : KALMO.SVG WRITTEN, SURFACE").I(blocks.back().NUMSRF, 5).str());
    } else {
        for (size_t b = 0; b < blocks.size(); ++b) {
            const std::string name = pictureName(static_cast<int>(b) + 1);
            if (!writePicture(blocks[b], name)) return fail(3, name + " CANNOT BE WRITTEN");
            io::writeLine(kScreen, io::Line(" KALMOPLOT : " + name + " WRITTEN, SURFACE").I(blocks[b].NUMSRF, 5).str());
        }
    }
    io::closeAll();
    return 0;
}
