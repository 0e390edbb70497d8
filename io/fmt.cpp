// io/fmt.cpp
//
// Field writers. Digits come from the exact decimal expansion of the binary value (the standard
// library's conversion gives it exactly when asked for enough digits); rounding at the last
// printed digit is then done here, to nearest with ties away from zero.

#include "io/fmt.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace io {
namespace {

// Digits kept beyond the rounding position. Two settle the rounding unless they read "50":
// the digits rounded to two places are 51 and more only when the exact rest is above one half,
// 49 and less only when it is below, and a rest of 0.995 or more has already carried into the
// kept digits (leaving "00" behind). Only a rest within 0.495..0.505 is looked at again, with
// thirty: a carry through that many nines cannot come from a double that is not already on
// the decimal boundary.
constexpr int kQuickGuardDigits = 2;
constexpr int kGuardDigits = 30;

// Whether the two guard digits from position `at` leave the rounding open.
bool roundingOpen(const std::string& digits, size_t at) { return digits[at] == '5' && digits[at + 1] == '0'; }

// The exact decimal rendering of a magnitude with the given number of digits after the point,
// in fixed or scientific form (as printf's %.*f and %.*e give it), at any length.
std::string printed(std::chars_format form, int precision, double magnitude) {
    char small[512];
    const std::to_chars_result fits = std::to_chars(small, small + sizeof small, magnitude, form, precision);
    if (fits.ec == std::errc()) return std::string(small, fits.ptr);
    // A fixed rendering of a large magnitude: its integer digits, the point and the decimals.
    std::vector<char> large(static_cast<size_t>(precision) + 400);
    const std::to_chars_result longer = std::to_chars(large.data(), large.data() + large.size(), magnitude, form, precision);
    return std::string(large.data(), longer.ptr);
}

std::string stars(int w) { return std::string(static_cast<size_t>(w > 0 ? w : 0), '*'); }

std::string fitRight(const std::string& body, int w) {
    if (static_cast<int>(body.size()) > w) return stars(w);
    return std::string(static_cast<size_t>(w) - body.size(), ' ') + body;
}

// Adds one unit in the last place of a digit string; returns true when it overflowed
// ("999" -> "000" with a carry out).
bool incrementDigits(std::string& digits) {
    for (size_t k = digits.size(); k-- > 0;) {
        if (digits[k] == '9') {
            digits[k] = '0';
        } else {
            ++digits[k];
            return false;
        }
    }
    return true;
}

bool allZero(const std::string& digits) {
    for (char c : digits)
        if (c != '0') return false;
    return true;
}

// Integer and fraction digits of |value| rounded to `decimals` places.
void fixedDigits(double magnitude, int decimals, std::string& intPart, std::string& fracPart) {
    std::string exact = printed(std::chars_format::fixed, decimals + kQuickGuardDigits, magnitude);
    if (roundingOpen(exact, exact.find('.') + 1 + static_cast<size_t>(decimals)))
        exact = printed(std::chars_format::fixed, decimals + kGuardDigits, magnitude);
    size_t point = exact.find('.');
    intPart = exact.substr(0, point);
    std::string allFrac = exact.substr(point + 1);
    fracPart = allFrac.substr(0, static_cast<size_t>(decimals));
    bool roundUp = allFrac[static_cast<size_t>(decimals)] >= '5';
    if (roundUp) {
        std::string joined = intPart + fracPart;
        if (incrementDigits(joined)) joined = "1" + joined;
        intPart = joined.substr(0, joined.size() - fracPart.size());
        fracPart = joined.substr(joined.size() - fracPart.size());
    }
}

// `significant` digits of |value| > 0 rounded, and the decimal exponent such that
// |value| ~ 0.d1d2d3... x 10^exponent.
void significantDigits(double magnitude, int significant, std::string& digits, int& exponent) {
    std::string text = printed(std::chars_format::scientific, significant - 1 + kQuickGuardDigits, magnitude);
    // The mantissa reads d.ddd...: its digit k (from 0) stands at k + 1 from the first digit on.
    if (roundingOpen(text, static_cast<size_t>(significant) + 1))
        text = printed(std::chars_format::scientific, significant - 1 + kGuardDigits, magnitude);
    size_t ePos = text.find('e');
    std::string mantissa = text.substr(0, ePos);
    int exp10 = std::atoi(text.c_str() + ePos + 1);
    std::string all;
    for (char c : mantissa)
        if (c != '.') all += c;
    digits = all.substr(0, static_cast<size_t>(significant));
    bool roundUp = all[static_cast<size_t>(significant)] >= '5';
    if (roundUp && incrementDigits(digits)) {
        digits = "1" + digits.substr(0, digits.size() - 1);
        ++exp10;
    }
    exponent = exp10 + 1;
}

std::string exponentField(int exponent) {
    char buffer[16];
    int magnitude = std::abs(exponent);
    char sign = exponent < 0 ? '-' : '+';
    if (magnitude <= 99) {
        std::snprintf(buffer, sizeof buffer, "E%c%02d", sign, magnitude);
    } else if (magnitude <= 999) {
        std::snprintf(buffer, sizeof buffer, "%c%03d", sign, magnitude);
    } else {
        return "";  // no room for the exponent: the caller writes asterisks
    }
    return buffer;
}

// Ew.d with scale factor 0 (digitsBeforePoint = 0) or 1 (digitsBeforePoint = 1).
std::string exponentForm(double value, int w, int d, int digitsBeforePoint) {
    if (std::isnan(value) || std::isinf(value)) return fitRight(std::isnan(value) ? "NaN" : (value < 0 ? "-Infinity" : "Infinity"), w);
    if (d < 0) return stars(w);
    int significant = d + digitsBeforePoint;
    if (significant < 1) return stars(w);
    double magnitude = std::fabs(value);
    std::string digits;
    int exponent = 0;
    if (magnitude == 0.0) {
        digits = std::string(static_cast<size_t>(significant), '0');
        exponent = digitsBeforePoint;  // 0.000E+00 or 0.000E+00 with scale 1
    } else {
        significantDigits(magnitude, significant, digits, exponent);
    }
    bool negative = value < 0 && !allZero(digits);
    std::string expText = exponentField(exponent - digitsBeforePoint);
    if (magnitude == 0.0) expText = "E+00";
    if (expText.empty()) return stars(w);
    std::string mantissa;
    if (digitsBeforePoint == 1) {
        mantissa = digits.substr(0, 1) + "." + digits.substr(1);
    } else {
        mantissa = "0." + digits;
    }
    std::string body = (negative ? "-" : "") + mantissa + expText;
    if (static_cast<int>(body.size()) > w && digitsBeforePoint == 0) {
        body = (negative ? "-" : "") + mantissa.substr(1) + expText;  // the optional leading zero
    }
    return fitRight(body, w);
}

}  // namespace

std::string repeat(char c, int n) { return std::string(static_cast<size_t>(n > 0 ? n : 0), c); }

std::string fmtX(int n) { return repeat(' ', n); }

std::string fmtI(long long value, int w, int m) {
    if (w <= 0) return "";
    std::string digits = std::to_string(value < 0 ? -value : value);
    if (m == 0 && value == 0) return repeat(' ', w);
    if (static_cast<int>(digits.size()) < m) digits = repeat('0', m - static_cast<int>(digits.size())) + digits;
    return fitRight((value < 0 ? "-" : "") + digits, w);
}

std::string fmtF(double value, int w, int d) {
    if (w <= 0) return "";
    if (std::isnan(value) || std::isinf(value)) return fitRight(std::isnan(value) ? "NaN" : (value < 0 ? "-Infinity" : "Infinity"), w);
    if (d < 0) return stars(w);
    std::string intPart, fracPart;
    fixedDigits(std::fabs(value), d, intPart, fracPart);
    bool negative = value < 0 && !(allZero(intPart) && allZero(fracPart));
    std::string sign = negative ? "-" : "";
    std::string body = sign + intPart + "." + fracPart;
    if (static_cast<int>(body.size()) > w && intPart == "0" && d > 0) body = sign + "." + fracPart;
    return fitRight(body, w);
}

std::string fmtE(double value, int w, int d) {
    if (w <= 0) return "";
    return exponentForm(value, w, d, 0);
}

std::string fmtES(double value, int w, int d) {
    if (w <= 0) return "";
    return exponentForm(value, w, d, 1);
}

std::string fmtG(double value, int w, int d) {
    if (w <= 0) return "";
    if (std::isnan(value) || std::isinf(value) || d <= 0) return fmtE(value, w, d);
    double magnitude = std::fabs(value);
    if (magnitude == 0.0) return fmtF(value, w - 4, d - 1) + repeat(' ', 4);
    std::string digits;
    int exponent = 0;
    significantDigits(magnitude, d, digits, exponent);
    // Fixed form when 0.1 <= |value| (rounded to d digits) < 10**d.
    if (exponent >= 0 && exponent <= d) return fmtF(value, w - 4, d - exponent) + repeat(' ', 4);
    return fmtE(value, w, d);
}

std::string fmtA(std::string_view text, int w) {
    if (w <= 0) return "";
    if (static_cast<int>(text.size()) >= w) return std::string(text.substr(0, static_cast<size_t>(w)));
    return repeat(' ', w - static_cast<int>(text.size())) + std::string(text);
}

std::string freeItem(long long value) { return fmtI(value, 12); }
std::string freeItem(int value) { return fmtI(value, 12); }
std::string freeItem(double value) { return fmtG(value, 15, 7); }
std::string freeItem(std::string_view text) { return std::string(text); }

}  // namespace io
