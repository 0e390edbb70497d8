// io/freeread.cpp
//
// Free-format record reader. Items are cut from the current line as they are needed; a new
// line is fetched only when a value is still wanted, so a record ends on the line where its
// last value stood and the rest of that line is ignored.

#include "io/freeread.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>

#include "io/channels.h"

namespace io {

bool isBlank(std::string_view text) {
    for (char c : text)
        if (c != ' ' && c != '\t') return false;
    return true;
}

bool parseInteger(std::string_view text, int& value) {
    size_t k = 0;
    if (k < text.size() && (text[k] == '+' || text[k] == '-')) ++k;
    if (k == text.size()) return false;
    for (size_t j = k; j < text.size(); ++j)
        if (text[j] < '0' || text[j] > '9') return false;
    std::string copy(text);
    errno = 0;
    long long parsed = std::strtoll(copy.c_str(), nullptr, 10);
    if (errno == ERANGE || parsed > INT_MAX || parsed < INT_MIN) return false;
    value = static_cast<int>(parsed);
    return true;
}

bool parseReal(std::string_view text, double& value) {
    size_t k = 0;
    std::string normal;
    if (k < text.size() && (text[k] == '+' || text[k] == '-')) normal += text[k++];
    size_t digits = 0;
    while (k < text.size() && text[k] >= '0' && text[k] <= '9') {
        normal += text[k++];
        ++digits;
    }
    if (k < text.size() && text[k] == '.') {
        normal += text[k++];
        while (k < text.size() && text[k] >= '0' && text[k] <= '9') {
            normal += text[k++];
            ++digits;
        }
    }
    if (digits == 0) return false;
    if (k < text.size() && (text[k] == 'E' || text[k] == 'e' || text[k] == 'D' || text[k] == 'd')) {
        normal += 'E';
        ++k;
        if (k < text.size() && (text[k] == '+' || text[k] == '-')) normal += text[k++];
        size_t expDigits = 0;
        while (k < text.size() && text[k] >= '0' && text[k] <= '9') {
            normal += text[k++];
            ++expDigits;
        }
        if (expDigits == 0) return false;
    }
    if (k != text.size()) return false;
    errno = 0;
    double parsed = std::strtod(normal.c_str(), nullptr);
    if (!std::isfinite(parsed)) return false;
    value = parsed;
    return true;
}

bool decodeFixedInt(std::string_view field, int& value) {
    std::string packed;
    for (char c : field)
        if (c != ' ' && c != '\t') packed += c;
    if (packed.empty()) {
        value = 0;
        return true;
    }
    return parseInteger(packed, value);
}

FreeReader::FreeReader(int unit, Span span) : unit_(unit), span_(span) {}

FreeReader::FreeReader(std::string_view text, bool fromText) : fromText_(fromText), textSource_(text) {}

bool FreeReader::fillLine() {
    if (span_ == Span::Answer && linesUsed_ > 0) {
        stopped_ = true;  // the answer line is used up: the rest keep their values
        return false;
    }
    if (fromText_) {
        if (textUsed_) return false;
        textUsed_ = true;
        line_ = textSource_;
    } else {
        int code = readLine(unit_, line_, -1);
        if (code != kReadOk) return false;
    }
    pos_ = 0;
    haveLine_ = true;
    ++linesUsed_;
    return true;
}

// Cuts the next item. Value: text holds it; Empty: an empty item; Stop: "/" seen, or the
// record was stopped before; None: the data ended.
FreeReader::ItemKind FreeReader::nextItem(std::string& text) {
    if (stopped_) return ItemKind::Stop;
    if (repeatLeft_ > 0) {
        --repeatLeft_;
        text = repeatText_;
        return repeatEmpty_ ? ItemKind::Empty : ItemKind::Value;
    }
    for (;;) {
        if (!haveLine_ && !fillLine()) return stopped_ ? ItemKind::Stop : ItemKind::None;
        while (pos_ < line_.size() && (line_[pos_] == ' ' || line_[pos_] == '\t' || line_[pos_] == '\r')) ++pos_;
        if (pos_ >= line_.size()) {
            haveLine_ = false;  // the line end separates like a blank
            continue;
        }
        char c = line_[pos_];
        if (c == ',') {
            ++pos_;
            if (afterComma_) return ItemKind::Empty;
            afterComma_ = true;
            continue;
        }
        if (c == '/') {
            stopped_ = true;
            return ItemKind::Stop;
        }
        size_t start = pos_;
        while (pos_ < line_.size() && line_[pos_] != ' ' && line_[pos_] != '\t' && line_[pos_] != ',' &&
               line_[pos_] != '/' && line_[pos_] != '\r')
            ++pos_;
        text = line_.substr(start, pos_ - start);
        afterComma_ = false;
        // A comma directly after the value (blanks between allowed) is its separator.
        size_t look = pos_;
        while (look < line_.size() && (line_[look] == ' ' || line_[look] == '\t')) ++look;
        if (look < line_.size() && line_[look] == ',') {
            pos_ = look + 1;
            afterComma_ = true;
        }
        size_t star = text.find('*');
        if (star != std::string::npos) {
            int count = 0;
            if (!parseInteger(std::string_view(text).substr(0, star), count) || count < 1 ||
                text[0] == '+' || text[0] == '-') {
                return ItemKind::Value;  // not a repeat: the caller's parse fails on it
            }
            repeatText_ = text.substr(star + 1);
            repeatEmpty_ = repeatText_.empty();
            repeatLeft_ = count - 1;
            text = repeatText_;
            return repeatEmpty_ ? ItemKind::Empty : ItemKind::Value;
        }
        return ItemKind::Value;
    }
}

// Takes the next item into value with the given number syntax; an empty item or one after
// "/" leaves the value as it is.
template <typename T>
FreeReader& FreeReader::take(T& value, bool (*parse)(std::string_view, T&)) {
    if (status_ != ReadStatus::Ok) return *this;
    std::string text;
    switch (nextItem(text)) {
        case ItemKind::Value:
            if (!parse(text, value)) {
                status_ = ReadStatus::Bad;
                badItem_ = text;
            } else {
                ++valuesRead_;
            }
            break;
        case ItemKind::None:
            status_ = ReadStatus::End;
            break;
        default:
            break;
    }
    return *this;
}

template <typename T>
FreeReader& FreeReader::drop(int count) {
    T dropped{};
    while (count > 0 && status_ == ReadStatus::Ok && !stopped_) {
        const bool inRepeat = repeatLeft_ > 0;
        (*this)(dropped);  // one item, checked (the first copy of a repeat, or a plain item)
        --count;
        if (!inRepeat && repeatLeft_ == 0) continue;
        if (status_ != ReadStatus::Ok) break;
        const int copies = std::min(repeatLeft_, count);
        repeatLeft_ -= copies;
        if (!repeatEmpty_) valuesRead_ += copies;
        count -= copies;
    }
    return *this;
}

template FreeReader& FreeReader::drop<int>(int count);
template FreeReader& FreeReader::drop<double>(int count);

FreeReader& FreeReader::operator()(int& value) { return take(value, parseInteger); }

FreeReader& FreeReader::operator()(double& value) { return take(value, parseReal); }

}  // namespace io
