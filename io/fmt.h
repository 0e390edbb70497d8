// io/fmt.h
//
// Formatted output: the field writers every line of every file is built from.
//
//   Iw, Iw.m   integer right-aligned in w columns (at least m digits, leading zeros)
//   Fw.d       fixed point, d decimals
//   Ew.d       exponent form 0.ddddE+xx (three-digit exponents as 0.dddd+xxx)
//   ESw.d      exponent form with scale 1: d.dddE+xx
//   Gw.d       fixed point when the magnitude allows, else Ew.d (used by the free format)
//   Aw         text in w columns (right-aligned when shorter, cut to the left part when longer)
//   nX         n blanks
// A value that does not fit its field is written as w asterisks. Decimal rounding is to the
// nearest, ties away from zero, on the exact binary value. A value that prints as zero carries
// no minus sign.
//
// The free format ("list-directed") layout, one for the whole system: a record starts with one
// blank; text items stand as they are; an integer item takes 12 columns (I12); a real item takes
// 15 columns as G15.7 (seven significant digits); trailing blanks of the record are dropped.

#pragma once

#include <string>
#include <string_view>

namespace io {

std::string fmtI(long long value, int w, int m = 1);
std::string fmtF(double value, int w, int d);
std::string fmtE(double value, int w, int d);
std::string fmtES(double value, int w, int d);
std::string fmtG(double value, int w, int d);
std::string fmtA(std::string_view text, int w);
std::string fmtX(int n);
std::string repeat(char c, int n);

// Free-format items.
std::string freeItem(long long value);
std::string freeItem(int value);
std::string freeItem(double value);
std::string freeItem(std::string_view text);

// One output line, built field by field:
//   io::Line().A(" **** SR/READ - INPUT FILE FORMAT ERROR - ID=").Free(id)
class Line {
public:
    Line() = default;
    explicit Line(std::string_view text) : text_(text) {}

    Line& A(std::string_view text) { text_ += text; return *this; }
    Line& A(std::string_view text, int w) { text_ += fmtA(text, w); return *this; }
    Line& I(long long value, int w, int m = 1) { text_ += fmtI(value, w, m); return *this; }
    Line& F(double value, int w, int d) { text_ += fmtF(value, w, d); return *this; }
    Line& E(double value, int w, int d) { text_ += fmtE(value, w, d); return *this; }
    Line& ES(double value, int w, int d) { text_ += fmtES(value, w, d); return *this; }
    Line& G(double value, int w, int d) { text_ += fmtG(value, w, d); return *this; }
    Line& X(int n) { text_ += fmtX(n); return *this; }
    Line& Free(long long value) { text_ += freeItem(value); return *this; }
    Line& Free(int value) { text_ += freeItem(value); return *this; }
    Line& Free(double value) { text_ += freeItem(value); return *this; }
    Line& Free(std::string_view text) { text_ += freeItem(text); return *this; }
    Line& Free(const char* text) { text_ += freeItem(std::string_view(text)); return *this; }

    const std::string& str() const { return text_; }

private:
    std::string text_;
};

// A whole free-format record: one blank, then the items, trailing blanks dropped.
//   io::freeRecord("ERROR EXIT from program KALMO")  ->  " ERROR EXIT from program KALMO"
template <typename... Items>
std::string freeRecord(const Items&... items) {
    std::string text = " ";
    ((text += freeItem(items)), ...);
    while (text.size() > 1 && text.back() == ' ') text.pop_back();
    return text;
}

}  // namespace io
