// io/fmt.cpp
//
// Field writers. Digits come from the exact decimal expansion of the binary value (the standard
// library's conversion gives it exactly when asked for enough digits); rounding at the last
// printed digit is then done here, to nearest with ties away from zero.

#include "io/fmt.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <string_view>

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
// in fixed or scientific form (as printf's %.*f and %.*e give it), at any length, into text.
void printed(std::chars_format form, int precision, double magnitude, std::string& text) {
    char small[512];
    const std::to_chars_result fits = std::to_chars(small, small + sizeof small, magnitude, form, precision);
    if (fits.ec == std::errc()) {
        text.assign(small, fits.ptr);
        return;
    }
    // A fixed rendering of a large magnitude: its integer digits, the point and the decimals.
    text.resize(static_cast<size_t>(precision) + 400);
    const std::to_chars_result longer = std::to_chars(text.data(), text.data() + text.size(), magnitude, form, precision);
    text.resize(static_cast<size_t>(longer.ptr - text.data()));
}

std::string stars(int w) { return std::string(static_cast<size_t>(w > 0 ? w : 0), '*'); }

// The parts of a field, right-aligned in w columns (asterisks when they do not fit).
std::string fitRight(std::initializer_list<std::string_view> parts, int w) {
    size_t size = 0;
    for (std::string_view part : parts) size += part.size();
    if (static_cast<int>(size) > w) return stars(w);
    std::string field;
    field.reserve(static_cast<size_t>(w));
    field.append(static_cast<size_t>(w) - size, ' ');
    for (std::string_view part : parts) field.append(part);
    return field;
}

// The field of a value that is no finite number.
std::string nonFinite(double value, int w) {
    return fitRight({std::isnan(value) ? "NaN" : (value < 0 ? "-Infinity" : "Infinity")}, w);
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

bool allZero(std::string_view digits) { return digits.find_first_not_of('0') == std::string_view::npos; }

// The digits of |value| rounded to `decimals` places, integer digits first, the decimals after
// them; returns how many are integer digits.
size_t fixedDigits(double magnitude, int decimals, std::string& digits) {
    const size_t kept = static_cast<size_t>(decimals);
    std::string exact;
    printed(std::chars_format::fixed, decimals + kQuickGuardDigits, magnitude, exact);
    size_t point = exact.find('.');
    if (roundingOpen(exact, point + 1 + kept)) {
        printed(std::chars_format::fixed, decimals + kGuardDigits, magnitude, exact);
        point = exact.find('.');
    }
    const bool roundUp = exact[point + 1 + kept] >= '5';
    digits.assign(exact, 0, point);
    digits.append(exact, point + 1, kept);
    size_t integerDigits = point;
    if (roundUp && incrementDigits(digits)) {
        digits.insert(digits.begin(), '1');
        ++integerDigits;
    }
    return integerDigits;
}

// `significant` digits of |value| > 0 rounded, and the decimal exponent such that
// |value| ~ 0.d1d2d3... x 10^exponent.
void significantDigits(double magnitude, int significant, std::string& digits, int& exponent) {
    const size_t kept = static_cast<size_t>(significant);
    std::string text;
    printed(std::chars_format::scientific, significant - 1 + kQuickGuardDigits, magnitude, text);
    // The mantissa reads d.ddd...: its digit k (from 0) stands at index k + 1 for k >= 1.
    if (roundingOpen(text, kept + 1))
        printed(std::chars_format::scientific, significant - 1 + kGuardDigits, magnitude, text);
    const size_t ePos = text.find('e');
    int exp10 = std::atoi(text.c_str() + ePos + 1);
    digits.assign(1, text[0]);
    digits.append(text, 2, kept - 1);
    const bool roundUp = text[kept + 1] >= '5';
    if (roundUp && incrementDigits(digits)) {
        digits.insert(digits.begin(), '1');
        digits.pop_back();
        ++exp10;
    }
    exponent = exp10 + 1;
}

// "E+dd" or "E-dd" up to two exponent digits, "+ddd" or "-ddd" for three, else nothing (the
// caller writes asterisks).
std::string exponentField(int exponent) {
    const int magnitude = std::abs(exponent);
    const char sign = exponent < 0 ? '-' : '+';
    if (magnitude > 999) return "";
    std::string field;
    if (magnitude <= 99) field += 'E';
    field += sign;
    if (magnitude > 99) field += static_cast<char>('0' + magnitude / 100);
    field += static_cast<char>('0' + magnitude / 10 % 10);
    field += static_cast<char>('0' + magnitude % 10);
    return field;
}

// Ew.d with scale factor 0 (digitsBeforePoint = 0) or 1 (digitsBeforePoint = 1).
std::string exponentForm(double value, int w, int d, int digitsBeforePoint) {
    if (!std::isfinite(value)) return nonFinite(value, w);
    if (d < 0) return stars(w);
    int significant = d + digitsBeforePoint;
    if (significant < 1) return stars(w);
    double magnitude = std::fabs(value);
    std::string digits;
    int exponent = 0;
    if (magnitude == 0.0) {
        digits.assign(static_cast<size_t>(significant), '0');
        exponent = digitsBeforePoint;  // 0.000E+00 or 0.000E+00 with scale 1
    } else {
        significantDigits(magnitude, significant, digits, exponent);
    }
    const std::string_view sign = value < 0 && !allZero(digits) ? "-" : "";
    const std::string expText = magnitude == 0.0 ? "E+00" : exponentField(exponent - digitsBeforePoint);
    if (expText.empty()) return stars(w);
    const std::string_view allDigits = digits;
    if (digitsBeforePoint == 1) return fitRight({sign, allDigits.substr(0, 1), ".", allDigits.substr(1), expText}, w);
    // The leading zero of 0.ddd is left out where the field has no room for it.
    const size_t size = sign.size() + 2 + digits.size() + expText.size();
    if (static_cast<int>(size) > w) return fitRight({sign, ".", allDigits, expText}, w);
    return fitRight({sign, "0.", allDigits, expText}, w);
}

}  // namespace

std::string repeat(char c, int n) { return std::string(static_cast<size_t>(n > 0 ? n : 0), c); }

std::string fmtX(int n) { return repeat(' ', n); }

std::string fmtI(long long value, int w, int m) {
    if (w <= 0) return "";
    std::string digits = std::to_string(value < 0 ? -value : value);
    if (m == 0 && value == 0) return repeat(' ', w);
    if (static_cast<int>(digits.size()) < m) digits = repeat('0', m - static_cast<int>(digits.size())) + digits;
    return fitRight({value < 0 ? "-" : "", digits}, w);
}

std::string fmtF(double value, int w, int d) {
    if (w <= 0) return "";
    if (!std::isfinite(value)) return nonFinite(value, w);
    if (d < 0) return stars(w);
    std::string digits;
    const size_t integerDigits = fixedDigits(std::fabs(value), d, digits);
    const std::string_view allDigits = digits;
    const std::string_view intPart = allDigits.substr(0, integerDigits);
    const std::string_view fracPart = allDigits.substr(integerDigits);
    const std::string_view sign = value < 0 && !allZero(allDigits) ? "-" : "";
    // The leading zero of 0.ddd is left out where the field has no room for it.
    const size_t size = sign.size() + intPart.size() + 1 + fracPart.size();
    if (static_cast<int>(size) > w && intPart == "0" && d > 0) return fitRight({sign, ".", fracPart}, w);
    return fitRight({sign, intPart, ".", fracPart}, w);
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
