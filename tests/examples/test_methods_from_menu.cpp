// Every solution method runs from the menu on a general surface: the slope example is run in
// batch mode with its analysis record (600) set to each method in turn. The result print names
// the method, and the safety factors of the five methods on the same surface agree closely, as
// limit-equilibrium methods do on a smooth, well-behaved surface (their assumptions about the
// interslice forces move the factor by a few per cent at most).

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <filesystem>
#include <string>
#include <vector>

#include "support/tempdir.h"

namespace {

struct MethodCase {
    const char* code;        // value of record 600
    const char* methodLine;  // method line of the result print
};

// The slope example with record 600 replaced.
std::string slopeInputWithAnalysis(const std::string& code) {
    const std::filesystem::path source = std::filesystem::path(KALMO_SOURCE_DIR) / "examples" / "slope" / "KALMO.INP";
    std::ifstream in(source);
    std::string text, line;
    bool next = false;
    while (std::getline(in, line)) {
        if (next && !line.empty() && line[0] != '*') {
            line = "   " + code;
            next = false;
        }
        if (line.rfind("* rec 600", 0) == 0) next = true;
        text += line + "\n";
    }
    return text;
}

double runAndReadSafetyFactor(const MethodCase& method, std::string& result) {
    kalmo_test::TempDir dir;
    dir.write("KALMO.INP", slopeInputWithAnalysis(method.code));
    const std::filesystem::path answers = std::filesystem::path(KALMO_SOURCE_DIR) / "examples" / "slope" / "SVAR.TMP";
    std::filesystem::copy_file(answers, std::filesystem::path(dir.path()) / "SVAR.TMP");
    const std::string command = "cd '" + dir.path() + "' && '" KALMO_EXE "' > screen.txt 2>&1";
    if (std::system(command.c_str()) != 0) return -1.0;
    const std::string screen = dir.read("screen.txt");
    result = dir.read("KALMO.RES");
    const std::string marker = " ++++ SAFETY FACTOR =";
    const size_t at = screen.find(marker);
    if (at == std::string::npos) return -1.0;
    return std::stod(screen.substr(at + marker.size(), 8));
}

}  // namespace

TEST(MethodsFromTheMenu, EveryMethodAnalysesTheSlopeAndTheFactorsAgree) {
    const std::vector<MethodCase> methods = {
        {"-1", " SOLUTION METHOD = Force Equilibrium / EFFECTIVE STRESS ANALYSIS"},
        {"1", " SOLUTION METHOD = KALMO 1988-2002 / EFFECTIVE STRESS ANALYSIS"},
        {"11", " SOLUTION METHOD = Bishop Simplified / EFFECTIVE STRESS ANALYSIS"},
        {"21", " SOLUTION METHOD = Bishop Modified / EFFECTIVE STRESS ANALYSIS"},
        {"31", " SOLUTION METHOD = KALMO-2003 / EFFECTIVE STRESS ANALYSIS"},
    };
    std::vector<double> factors;
    for (const auto& method : methods) {
        std::string result;
        const double factor = runAndReadSafetyFactor(method, result);
        ASSERT_GT(factor, 0.0) << "record 600 = " << method.code;
        EXPECT_NE(result.find(method.methodLine), std::string::npos) << method.methodLine;
        factors.push_back(factor);
    }
    const double lowest = *std::min_element(factors.begin(), factors.end());
    const double highest = *std::max_element(factors.begin(), factors.end());
    EXPECT_LT(highest / lowest, 1.06) << "lowest " << lowest << ", highest " << highest;
}
