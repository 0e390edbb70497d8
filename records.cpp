// records.cpp
//
// The one instance of each global record, and the two writers that every message uses:
// console output first, then the same text to the log-copy channel.

#include "records.h"

#include <cstring>
#include <type_traits>

#include "io/channels.h"

MasterRecord MASTER;
TextRecord TEXT;
PostgrafRecord POSTGRAF;
IgeomsRecord IGEOMS;
GeomshRecord GEOMSH;
IsolprRecord ISOLPR;
SolprpRecord SOLPRP;
IwaterRecord IWATER;
Water1Record WATER1;
IloaRecord ILOA;
LoadRecord LOAD;
IgenerRecord IGENER;
GenerlRecord GENERL;
LinecontrolRecord LINECONTROL;
IsnailRecord ISNAIL;
SnailsRecord SNAILS;
IsurRecord ISUR;
SurfRecord SURF;
ScrtchRecord SCRTCH;
IbesRecord IBES;
BestRecord BEST;

namespace {
template <typename Record>
void zero(Record& record) {
    static_assert(std::is_trivially_copyable_v<Record>, "records are plain data");
    std::memset(static_cast<void*>(&record), 0, sizeof(Record));
}
}  // namespace

void clearRecords() {
    zero(MASTER);
    zero(POSTGRAF);
    zero(IGEOMS);
    zero(GEOMSH);
    zero(ISOLPR);
    zero(SOLPRP);
    zero(IWATER);
    zero(WATER1);
    zero(ILOA);
    zero(LOAD);
    zero(IGENER);
    zero(GENERL);
    zero(LINECONTROL);
    zero(ISNAIL);
    zero(SNAILS);
    zero(ISUR);
    zero(SURF);
    zero(SCRTCH);
    zero(IBES);
    zero(BEST);
    TEXT.TITLE(1).set("");
    TEXT.TITLE(2).set("");
    TEXT.MSHTXT.set("");
    TEXT.VERSION.set("");
}

bool batchMode() { return POSTGRAF.NFCOPY == kBatchCopyChannel; }

void say(std::string_view text) {
    io::writeLine(MASTER.NFOUT, text);
    io::writeLine(POSTGRAF.NFCOPY, text);
}

void sayPrompt(std::string_view text) {
    io::writePrompt(MASTER.NFOUT, text);
    io::writePrompt(POSTGRAF.NFCOPY, text);
}
