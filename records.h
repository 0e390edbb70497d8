// records.h
//
// The global records of a run: the problem as read and the run control (MASTER, TEXT,
// POSTGRAF, IGEOMS/GEOMSH, ISOLPR/SOLPRP, IWATER/WATER1, ILOA/LOAD, IGENER/GENERL,
// LINECONTROL, ISNAIL/SNAILS) and the current and best shear surface (ISUR/SURF, SCRTCH,
// IBES/BEST). Every routine sees the one instance of each; nothing is allocated for problem
// data. Arrays are indexed from 1 and two-dimensional arrays are stored column by column
// (first index fastest), through the accessor types below, which catch an index out of range
// in checked builds instead of corrupting memory.
//
// Coordinates: x horizontal to the right, z vertical and positive DOWNWARD (a depth).

#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// ---------------------------------------------------------------------------------------------
// System limits
// ---------------------------------------------------------------------------------------------
constexpr int MAXELM = 3500;   // mesh elements
constexpr int MAXNOD = 3636;   // mesh nodes
constexpr int MAXLAY = 35;     // horizontal layers
constexpr int MAXMAT = 50;     // materials
constexpr int MAXSUX = 25;     // undrained-strength x-lines
constexpr int MAXSUP = 25;     // points per undrained-strength x-line
constexpr int MAXPWX = 125;    // pore-pressure x-lines
constexpr int MAXPWP = 125;    // points per pore-pressure x-line
constexpr int MAXPF = 50;      // point forces
constexpr int MAXSTR = 20;     // strip loads
constexpr int MAXGEN = 500;    // general shear surfaces
constexpr int MAXGPT = 100;    // points per general shear surface
constexpr int MAXPTS = 300;    // points of a shear-surface polyline
constexpr int MAXSLC = 99;     // slices
constexpr int MAXNAI = 75;     // soil nails
constexpr int MAXLCP = 100;    // line control points
constexpr int MAXXLN = 1000;   // x-lines of the mesh, and element columns in all
constexpr int MAXCOL = MAXXLN + 1;  // node columns of the mesh
constexpr int MAXTRI = 950;    // material triangles
constexpr int NMATV = 20;      // values per material in MAT
constexpr int NNAILI = 3;      // integers per soil nail
constexpr int NNAILR = 19;     // reals per soil nail

// ---------------------------------------------------------------------------------------------
// Accessor types: 1-based arrays, column-major in two dimensions
// ---------------------------------------------------------------------------------------------
#ifdef KALMO_CHECK_BOUNDS
[[noreturn]] inline void kalmoIndexFault(int index, int low, int high) {
    std::fprintf(stderr, " **** KALMO INTERNAL ERROR : ARRAY INDEX %d OUTSIDE %d..%d\n", index, low, high);
    std::abort();
}
#define KALMO_INDEX(i, n) \
    do { if ((i) < 1 || (i) > (n)) [[unlikely]] kalmoIndexFault((i), 1, (n)); } while (0)
#else
#define KALMO_INDEX(i, n) ((void)0)
#endif

template <typename T, int N>
struct Arr1 {
    T v[N];
    T& operator()(int i) { KALMO_INDEX(i, N); return v[i - 1]; }
    const T& operator()(int i) const { KALMO_INDEX(i, N); return v[i - 1]; }
    T* data() { return v; }
    const T* data() const { return v; }
    static constexpr int size() { return N; }
    void fill(T value) { for (T& x : v) x = value; }
};

template <typename T, int N1, int N2>
struct Arr2 {
    T v[N1 * N2];
    T& operator()(int i, int j) {
        KALMO_INDEX(i, N1);
        KALMO_INDEX(j, N2);
        return v[(i - 1) + (j - 1) * N1];
    }
    const T& operator()(int i, int j) const {
        KALMO_INDEX(i, N1);
        KALMO_INDEX(j, N2);
        return v[(i - 1) + (j - 1) * N1];
    }
    // The N1 values of column j, contiguous (one x-line, one surface, one material).
    T* column(int j) { KALMO_INDEX(j, N2); return v + (j - 1) * N1; }
    const T* column(int j) const { KALMO_INDEX(j, N2); return v + (j - 1) * N1; }
    T* data() { return v; }
    static constexpr int rows() { return N1; }
    static constexpr int cols() { return N2; }
    void fill(T value) { for (T& x : v) x = value; }
};

// Fixed-length text: N characters, blank-padded.
template <int N>
struct Text {
    char c[N];
    void set(std::string_view text) {
        for (int k = 0; k < N; ++k) c[k] = k < static_cast<int>(text.size()) ? text[static_cast<size_t>(k)] : ' ';
    }
    std::string_view view() const { return std::string_view(c, N); }
    static constexpr int size() { return N; }
};

// ---------------------------------------------------------------------------------------------
// MASTER: run control, control data, channels, constants, results and surface bookkeeping
// ---------------------------------------------------------------------------------------------
struct MasterRecord {
    double FCTFRC;        // force unit factor (record 100); 1.0 when given below 1.0E-20
    double FCTLEN;        // length unit factor (record 100); same default
    double FCTSUC;        // strength factor on cohesion and undrained strength (record 200)
    double FCTTAN;        // strength factor on tan of the friction angle (record 200)
    int IDTYP;            // problem type: 1 stability/bearing capacity, 2 earth pressure
    int IDEFTO;           // analysis: 1 effective stress, 2 total stress, 3 combined
    int NUMGEN;           // number of general shear surfaces in the input
    int NUMSLC;           // number of slices of the current analysis
    double FCTSS;         // end-face shear factor (record 900)
    Arr1<double, 2> H3;   // record 1200: relative position of the base force, left and right end
    double R1, R2, R3;    // record 1300: interslice roughness control data
    int NSOLV1, NSOLV2;   // solution counters (solver and output bookkeeping)
    int IHEAD;            // header flag, 2 at start-up
    int NFIN;             // console input channel (8)
    int NFOUT;            // console output channel (12)
    int NF14;             // input file KALMO.INP
    int NF15;             // work file KALMO.TMP
    int NF16;             // result file KALMO.RES
    int NF17;             // post-processor file KALMO.PLT
    int IERR;             // shared error code: 0 = no error
    double PI;            // 4*atan(1)
    double SF;            // safety factor of the current surface (earth pressure: as given)
    double SCORE;         // score of the current solution
    double RFACTOR;       // roughness factor of the current solution
    int NUMSRF;           // running number of the last analysed surface
    int NTYP;             // surface type: 1 general, 2 circle, 3 combined, 4 EP-plane, 5 autosearch
    int JPRINT;           // print and trace level (record 1350)
    int NSLREQ;           // requested number of slices (record 800 or control data modification)
    double E2TOL;         // tolerance on the unbalanced end force (record 1400)
    double CRTSCR;        // critical score (record 1450)
    double EPS;           // zero tolerance 1.0E-20 (single precision, widened)
    int JSTRES;           // result print mode: 1 forces, 2 stresses (record 1360)
    int JPLOT;            // plot level (record 1370)
    int KBEST;            // best-surface print state: 0 none yet, 2 printed
    int KLAST;            // last-surface print state: 2 no result, 0 not printed, -1 printing, 1 printed
    int KBSAVE;           // best-surface save state: 0 nothing saved, 2 saved
    int KLSAVE;           // last-surface save state: 2 no result, 0 not saved, -1 saving, 1 saved
    double BESTSF;        // lowest safety factor so far
    double BESTE2;        // best end force so far (earth pressure)
    int KCOMB;            // combined surface type chosen by the combined-surface routine
    int NEGPOK;           // record 1310: nonzero, a negative base normal force is not penalised
    int NEGEOK;           // record 1320: nonzero, a negative end force is not penalised
    int IUPDAT;           // B-factor flag: some material has a B-factor above 1.0E-20
    Arr1<int, 6> DATTIM;  // year, month, day, hour, minute, second
    int METHOD;           // solution method -1..3 (record 600)
    int MISC1, MISC2, MISC3, MISC4, MISC5;             // record 1500
    double VALMSC1, VALMSC2, VALMSC3, VALMSC4, VALMSC5;  // record 1500
    int NF18;             // log file KALMO.LOG

    // Solution and slice-model fields
    double SFLIM;         // lowest admissible safety factor (start value routine)
    double E2LIM;         // horizontal force left when the soil has no strength
    double SFMIN, SFMAX;  // bounds of the safety factor iteration
    double SFTZ;          // force-equilibrium safety factor with zero interslice shear
    int IDMOD;            // slice modification switch: 1 = modify steep exit ends
    int IMODIF;           // the current surface was modified at its exit end
    int ICIRCM;           // the current surface was solved by the circle moment method
    int IDILAT;           // a dilatant material is present on the current surface
    int ICOMBF;           // combined-analysis flag, cleared at start-up
    int ITSBLK;           // total-stress circle route blocked
    int ICSRCH;           // circle-search flag: the circle centre lies below the soil surface
    int IGWARN;           // the slice geometry has warned of more than two soil intersections
};

// TEXT: titles, mesh text and the version date
struct TextRecord {
    Arr1<Text<80>, 2> TITLE;  // the two title lines of the input file
    Text<80> MSHTXT;          // text used by the mesh builder
    Text<11> VERSION;         // version date, "12 Jan 2017"
};

// POSTGRAF: output flags
struct PostgrafRecord {
    int NFCOPY;   // log-copy channel: 6 in batch mode, 9 otherwise
    int NOPT1;    // first optional integer of the material count line (default 3)
    int NOPT2;    // second optional integer of the material count line (default 15)
    int IECHO;    // 1 when the echo print of the input was requested
};

// IGEOMS / GEOMSH: mesh of x-lines, nodes, elements, layers and material triangles
struct IgeomsRecord {
    int NLAYER;                  // number of horizontal layers
    int NX;                      // number of element columns
    int NZ;                      // number of z-elements per column
    int NELEM;                   // number of elements, NX * NZ
    int NNODE;                   // number of nodes, (NX + 1) * (NZ + 1)
    int NXLINE;                  // number of x-lines as given
    int NTRI;                    // number of material triangles
    Arr1<int, MAXXLN> NUMX;      // element columns from x-line i to the next, as given
    Arr2<int, 4, MAXELM> IELNOD; // the four nodes of each element
    Arr1<int, MAXELM> IELMAT;    // material of each element
    Arr1<int, MAXTRI> ITRMAT;    // material of each triangle
    Arr1<int, MAXLAY> LAYMAT;    // material of each horizontal layer
};

struct GeomshRecord {
    double XWALL;                   // record 2200: x0, the wall's x
    double DWALL;                   // record 2200: d0, the wall's height
    double RWALL;                   // record 2200: third value, the wall roughness
    double ZWALL;                   // d0 + ground level at x0: z of the wall foot
    Arr1<double, MAXNOD> XNOD;      // node x
    Arr1<double, MAXNOD> ZNOD;      // node z
    Arr1<double, MAXXLN> XLIN;      // x-lines as given: x
    Arr1<double, MAXXLN> ZSLIN;     //   ground level
    Arr1<double, MAXXLN> ZRLIN;     //   rock level
    Arr1<double, MAXCOL> XSURF;     // x-line table rebuilt from the nodes, per node column: x
    Arr1<double, MAXCOL> ZSURF;     //   ground level (the ground-surface broken line)
    Arr1<double, MAXCOL> ZROCK;     //   rock level
    Arr2<double, 3, MAXTRI> XTRI;   // triangle vertices, sorted by x
    Arr2<double, 3, MAXTRI> ZTRI;
    Arr1<double, MAXLAY> ZLAYER;    // level of each horizontal layer
    Arr1<double, MAXNOD> PWNODV;    // node values of the node plots: pore pressure
    Arr1<double, MAXNOD> SU0NOD;    //   su0
    Arr1<double, MAXNOD> SUANOD;    //   su at +45 degrees (active)
    Arr1<double, MAXNOD> SUDNOD;    //   su at 0 degrees (direct)
    Arr1<double, MAXNOD> SUPNOD;    //   su at -45 degrees (passive)
};

// ISOLPR / SOLPRP: soil properties
struct IsolprRecord {
    int NMAT;                   // number of materials
    int NSUX;                   // number of undrained-strength x-lines
    int NSUNOD;                 // number of node undrained-strength values
    Arr1<int, MAXSUX> NSUPT;    // point count per x-line
};

// Material table indices
enum MatIndex {
    GAMTOT = 1, COHESN = 2, PHIANG = 3, PHIRED = 4, PWPMAT = 5, RUFCT = 6, BFCT = 7, KNOT = 8,
    BSIG2 = 9, DSUB = 10, SUASU0 = 11, SUDSU0 = 12, SUPSU0 = 13, MAT14 = 14, ISOTRP = 15,
    MAT16 = 16, MAT17 = 17, MAT18 = 18
};

struct SolprpRecord {
    Arr1<double, 3> STRDAT;                  // strength data: 1 depth dc, 2 crack water height hw, 3 reference stress
    Arr2<double, NMATV, MAXMAT> MAT;         // material table, 20 values per material
    Arr1<double, MAXSUX> XSU;                // x of each undrained-strength x-line
    Arr2<double, MAXSUP, MAXSUX> ZSU;        // z-levels, point k of x-line i
    Arr2<double, MAXSUP, MAXSUX> SUPRF;      // undrained strengths
    Arr1<double, MAXNOD> SUNOD;              // node undrained strengths
};

// IWATER / WATER1: pore water
struct IwaterRecord {
    int IDPWP;                   // 1 hydrostatic below a water table, 2 general
    int NUMXPW;                  // number of pore-pressure x-lines
    int NODPWP;                  // number of node pore-pressure values
    Arr1<int, MAXPWX> NPWPT;     // point count per x-line
};

struct Water1Record {
    double ZWATER;                       // water table level (record 3430)
    double GAMWAT;                       // unit weight of water
    double GAMPWP;                       // unit weight for the hydrostatic pore pressure
    double PWPMIN;                       // pore-water datum 4: lowest allowed pore pressure
    Arr1<double, MAXPWX> XPW;            // x of each pore-pressure x-line
    Arr2<double, MAXPWP, MAXPWX> ZPW;    // z-levels
    Arr2<double, MAXPWP, MAXPWX> PWPRF;  // pore pressures
    Arr1<double, MAXNOD> PWNOD;          // node pore pressures
    Arr1<double, MAXPWX> ZFREE;          // free water level of each x-line
};

// ILOA / LOAD: loads
struct IloaRecord {
    int NPF;      // number of point forces
    int NSTRIP;   // number of strip loads
    int NLOAD3;   // further count (unused so far)
};

struct LoadRecord {
    Arr1<double, 5> LDAT;                // load data: 1 uniform load q, 2 vertical and 3 horizontal
                                         // weight factors, 4 point-load and 5 strip-load magnitude
    Arr2<double, 2, MAXPF> XZPF;         // point force (x, z)
    Arr2<double, 2, MAXPF> FPF;          // point force components (horizontal +x, vertical +down)
    Arr2<double, 2, MAXSTR> XSTRIP;      // strip load x1, x2
    Arr2<double, 2, MAXSTR> QSTRV;       // first kind (vertical) intensity at x1, x2
    Arr2<double, 2, MAXSTR> QSTRH;       // second kind (horizontal) intensity at x1, x2
    Arr1<double, 2> QRANGE;              // x range of the uniform load (record 4260)
    double LSPARE;
};

// IGENER / GENERL: general shear surfaces
struct IgenerRecord {
    int IGEN;                     // the general surface in use
    Arr1<int, MAXGEN> NPGEN;      // point count of each surface
    int IGSP1, IGSP2, IGSP3;
};

struct GenerlRecord {
    Arr2<double, MAXGPT, MAXGEN> XGEN;    // x
    Arr2<double, MAXGPT, MAXGEN> ZGEN;    // z
    Arr2<double, MAXGPT, MAXGEN> PGEN;    // pore pressure
    Arr2<double, MAXGPT, MAXGEN> SIGGEN;  // initial normal stress
    Arr2<double, MAXGPT, MAXGEN> TAUGEN;  // initial shear stress
};

// LINECONTROL: line control points, stored as read (no length factor)
struct LinecontrolRecord {
    int NLCP;
    Arr1<double, MAXLCP> XLC;
    Arr1<double, MAXLCP> ZLC;
};

// ISNAIL / SNAILS: soil nails
struct IsnailRecord {
    int NNAILS;                          // number of soil nails
    Arr2<int, MAXNAI, NNAILI> INAIL;     // 225 nail integers (filled by the nail Parts)
};

struct SnailsRecord {
    // Per nail i: 1,2 x,z of the first end; 3,4 of the second; 5 spacing; 6 diameter;
    // 7,8 two stress values; 9 a length; 10..12 three force values; 13..15 three further
    // values as read; 16..19 filled by the nail force routine.
    Arr2<double, MAXNAI, NNAILR> SN;
};

// Places of the values of one soil nail: SNAILS.SN(i, k) and ISNAIL.INAIL(i, k). The first end
// of a nail is its head, the second its tip. The results hold for the surface analysed last
// (or, after a restore, for the best surface): total and active length, the axial force at the
// shear surface (negative in tension) and the lateral force, both per nail (not per length of
// the section); the direction flag (+1 compression, -1 tension, 2 several crossings), the
// failure mode code (-1 de-activated, 0 no intersection, 1..4 pull-out, 5 yielding) and the
// slice crossed.
enum NailValue {
    SNXH = 1, SNZH = 2, SNXT = 3, SNZT = 4, SNCC = 5, SNDIA = 6, SNTAUT = 7, SNTAUC = 8, SNLF = 9,
    SNFY = 10, SNFL = 11, SNFH = 12, SNV1 = 13, SNV2 = 14, SNV3 = 15,
    SNLTOT = 16, SNLACT = 17, SNFAX = 18, SNFLAT = 19
};
enum NailResult { SNDIR = 1, SNMODE = 2, SNSLC = 3 };

// ---------------------------------------------------------------------------------------------
// Current surface and its slices, scratch, best surface
// ---------------------------------------------------------------------------------------------
struct IsurRecord {
    int NSRFCP;                  // leading SURF reals copied into BEST (5857: all but SNM)
    Arr1<int, MAXSLC> MODE;      // failure mode per slice: 1 drained, 2 undrained
};

// Corner k of slice I: 1 top left, 2 top right, 3 base right, 4 base left, 5 load point.
struct SurfRecord {
    Arr1<double, MAXPTS> XS;       // shear-surface polyline x
    Arr1<double, MAXPTS> ZS;       // shear-surface polyline z
    Arr2<double, 5, MAXSLC> XX;    // corner x
    Arr2<double, 5, MAXSLC> ZZ;    // corner z
    Arr1<double, MAXSLC> AREA;     // slice area
    Arr1<double, MAXSLC> AREAU;    // part of the area in undrained material
    Arr1<double, MAXSLC> H1;       // arm of E1 on face 1
    Arr1<double, MAXSLC> H2;       // arm of E2 on face 2
    Arr1<double, MAXSLC> H3;       // position of P along the base from corner 3
    Arr1<double, MAXSLC> HS;       // arm of the end-face shear SS
    Arr1<double, MAXSLC> U1;       // water force on face 1
    Arr1<double, MAXSLC> U2;       // water force on face 2
    Arr1<double, MAXSLC> U3;       // water force on the base
    Arr1<double, MAXSLC> E1;       // interslice normal force on face 1
    Arr1<double, MAXSLC> E2;       // interslice normal force on face 2
    Arr1<double, MAXSLC> T1;       // interslice shear force on face 1
    Arr1<double, MAXSLC> T2;       // interslice shear force on face 2
    Arr1<double, MAXSLC> P;        // base normal force
    Arr1<double, MAXSLC> S;        // governing mobilised base shear
    Arr1<double, MAXSLC> S1;       // drained mobilised base shear
    Arr1<double, MAXSLC> S2;       // undrained mobilised base shear
    Arr1<double, MAXSLC> SS;       // end-face shear resistance
    Arr1<double, MAXSLC> SINB;     // sine of the base inclination
    Arr1<double, MAXSLC> COSB;     // cosine of the base inclination
    Arr1<double, MAXSLC> BETA;     // base inclination (radians)
    Arr1<double, MAXSLC> WX;       // horizontal centre load
    Arr1<double, MAXSLC> WZ;       // vertical centre load (positive down)
    Arr1<double, MAXSLC> WM;       // moment of the loads about the load point
    Arr1<double, MAXSLC> TAN1;     // tan phi on face 1
    Arr1<double, MAXSLC> TAN2;     // tan phi on face 2
    Arr1<double, MAXSLC> TAN3;     // tan phi on the base
    Arr1<double, MAXSLC> C1;       // cohesion on face 1
    Arr1<double, MAXSLC> C2;       // cohesion on face 2
    Arr1<double, MAXSLC> C3;       // cohesion on the base
    Arr1<double, MAXSLC> R;        // current roughness of face 2
    Arr1<double, 10> SPAR;         // parameters of the current surface
    Arr1<double, MAXSLC> TANB;     // tangent of the base inclination
    Arr1<double, MAXSLC> H20;      // initial arm of E2
    Arr1<double, MAXSLC> H30;      // initial position of P on the base
    Arr1<double, MAXSLC> R0;       // initial roughness of face 2
    Arr1<double, MAXSLC> WZEXT;    // vertical external load included in WZ
    Arr1<double, MAXSLC> UNUSED;   // declared, never used
    Arr1<double, MAXSLC> L34;      // base length
    Arr1<double, MAXSLC> DPAR;     // dilatancy parameter of the base
    Arr1<double, MAXSLC> SU2;      // undrained strength on face 2
    Arr1<double, MAXSLC> SU3;      // undrained strength on the base
    Arr1<double, MAXSLC> SNX;      // horizontal soil nail load
    Arr1<double, MAXSLC> SNZ;      // vertical soil nail load
    Arr1<double, MAXSLC> SNM;      // moment of the nail loads about the load point
};

constexpr int NSURF = 5956;                 // reals in SURF
constexpr int NSURFCOPY = NSURF - MAXSLC;   // reals copied into BEST: all but SNM
static_assert(sizeof(SurfRecord) == NSURF * sizeof(double), "SURF must be 5956 reals without gaps");
static_assert(offsetof(SurfRecord, SNM) == NSURFCOPY * sizeof(double), "SNM must be the last array of SURF");

struct ScrtchRecord {
    double W[2000];
};

struct IbesRecord {
    int NUMSRF, NTYP, NUMSLC;               // of the best surface
    Arr2<int, MAXNAI, NNAILI> INAIL;        // copy of the soil-nail integers
    Arr1<int, MAXSLC> MODE;                 // MODE of the best surface
};

struct BestRecord {
    double SF;                              // 98.0 marks "no best surface yet"
    double SCORE;
    double RFACTOR;
    double SURF[NSURFCOPY];                 // SURF(1..NSRFCP): XS through SNZ
    Arr2<double, MAXNAI, NNAILR> SN;        // copy of SNAILS
};

// ---------------------------------------------------------------------------------------------
// The one instance of each record
// ---------------------------------------------------------------------------------------------
extern MasterRecord MASTER;
extern TextRecord TEXT;
extern PostgrafRecord POSTGRAF;
extern IgeomsRecord IGEOMS;
extern GeomshRecord GEOMSH;
extern IsolprRecord ISOLPR;
extern SolprpRecord SOLPRP;
extern IwaterRecord IWATER;
extern Water1Record WATER1;
extern IloaRecord ILOA;
extern LoadRecord LOAD;
extern IgenerRecord IGENER;
extern GenerlRecord GENERL;
extern LinecontrolRecord LINECONTROL;
extern IsnailRecord ISNAIL;
extern SnailsRecord SNAILS;
extern IsurRecord ISUR;
extern SurfRecord SURF;
extern ScrtchRecord SCRTCH;
extern IbesRecord IBES;
extern BestRecord BEST;

// Sets every record to zero (program start; tests start from here too).
void clearRecords();

// The log-copy channel of batch mode (the standard output, or the null device when the
// command line asks for quiet); interactively the copies go to channel 9, the null device.
constexpr int kBatchCopyChannel = 6;
// True in batch mode: the answers come from SVAR.TMP, and the log-copy channel is 6. Questions
// that nobody could answer in a batch run are answered by the program (see the callers).
bool batchMode();

// Writes a message line to the console output channel and to the log-copy channel.
void say(std::string_view text);
// Writes a prompt (no line end) to the console output channel and to the log-copy channel.
void sayPrompt(std::string_view text);
