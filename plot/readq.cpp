// plot/readq.cpp
//
// READQ — reads the input file of the working folder quietly, for the picture program.
//
// The program's own reader READ fills the problem records, so that the picture shows exactly
// the section the analysis used. READ talks to the user and writes files; here every one of
// its channels goes to the null device: the dialogue output, the log copy, the result file,
// the log file and the answers. With no answers to read, the echo question gets no yes and no
// echo is made; the log-copy channel 6 marks batch mode, in which the reader's questions take
// the answers a batch run gives them. The work file it needs goes to a temporary folder that
// is removed afterwards, so that no file of the run folder (KALMO.TMP, KALMO.RES, KALMO.LOG)
// is touched. KALMO.INP itself is only read. The records are cleared first, as at the start of
// a run, so that whatever the input leaves out reads as 0.
//
// Reads:  KALMO.INP of the working folder
// Writes: every record (the start of a run, then READ); MASTER constants and channel numbers;
//         POSTGRAF.NFCOPY; channels 6, 8, 12, 14, 15, 16, 18 are left closed or null
// IERR:   returns 0 ok; -1 KALMO.INP cannot be opened; -2 no temporary work file; else the
//         IERR of READ

#include <cstdlib>
#include <filesystem>
#include <string>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "plot/plot.h"
#include "records.h"

int READQ() {
    // Cleared records, the constants and channel numbers the reader expects, and the batch
    // log-copy channel, as the run's start-up sets them.
    startRun();
    for (int unit : {kBatchCopyChannel, MASTER.NFIN, MASTER.NFOUT, MASTER.NF16, MASTER.NF17, MASTER.NF18}) io::bindNull(unit);

    if (io::openOld(MASTER.NF14, "KALMO.INP") != 0) return -1;

    std::error_code ec;
    std::string pattern = (std::filesystem::temp_directory_path(ec) / "kalmoplot-XXXXXX").string();
    if (ec || mkdtemp(pattern.data()) == nullptr) {
        io::close(MASTER.NF14);
        return -2;
    }
    const std::filesystem::path workFolder(pattern);
    int status = io::openNew(MASTER.NF15, (workFolder / "KALMO.TMP").string());
    if (status == 0) {
        MASTER.IERR = 0;
        READ();
        status = MASTER.IERR;
    } else {
        status = -2;
    }
    io::close(MASTER.NF14);
    io::close(MASTER.NF15);
    std::filesystem::remove_all(workFolder, ec);
    return status;
}
