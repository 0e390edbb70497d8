// The whole program under libFuzzer: every input is written as KALMO.INP, with a fixed answer
// file SVAR.TMP that reads the input and analyses its first general surface, into a folder of
// its own; then the run goes through the entry's steps (the version text, a command line "0"
// that keeps the dialogue off the screen, CONTRL, which starts the run with startRun). A
// crash, a sanitizer report, an index outside a record's array or a run that does not end is
// a finding.
//
// Build: CXX=clang++ cmake -S . -B build-fuzz -DKALMO_FUZZ=ON; the corpus to start from is
// the KALMO.INP of every example (see .ci/run).

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"

namespace {

// The answers of the slope example: no instructions, the echo print, a general surface (the
// first of the input), no further surface, the best surface printed and saved, the end.
constexpr const char* kAnswers = "N\nY\n1\n1\n1\nN\n4\n8\n";

void writeFile(const char* name, const uint8_t* data, size_t size) {
    std::ofstream out(name, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
}

}  // namespace

namespace {

// One working folder for the whole session: the run's files are written afresh by every
// input. The fuzzer's own folder is the current one between inputs, so that its corpus and
// artifact paths may be relative.
const std::filesystem::path& runFolder() {
    static const std::filesystem::path folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "kalmo-fuzz-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        return std::filesystem::path(name);
    }();
    return folder;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::filesystem::path home = std::filesystem::current_path();
    std::filesystem::current_path(runFolder());
    writeFile("KALMO.INP", data, size);
    const std::string answers = kAnswers;
    writeFile("SVAR.TMP", reinterpret_cast<const uint8_t*>(answers.data()), answers.size());

    io::resetAll();
    io::setStdinText("");  // no keyboard: the help pages must not wait for one
    TEXT.VERSION.set("12 Jan 2017");
    setCommandLine("0");
    CONTRL();
    io::resetAll();
    std::filesystem::current_path(home);
    return 0;
}
