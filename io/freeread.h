// io/freeread.h
//
// Free-format reads: the values of one record, separated by blanks or commas.
//
// A record starts on a new line and continues over following lines while it needs more
// values (blank lines are passed over); values after the last needed one are ignored, and the
// next record starts on the next line. An empty item (nothing between two commas) keeps the
// present value, and so does every item after a "/", which ends the record. "r*value" stands
// for r equal values and "r*" for r empty items. An integer is a whole number with an optional
// sign; a real may be written with or without a decimal point or exponent (E or D). Text that
// is no number is a failed read; running out of lines is the end of the data. Values read
// before a failure keep what was read.

#pragma once

#include <string>
#include <string_view>

namespace io {

enum class ReadStatus { Ok = 0, End = -1, Bad = 1 };

// How far one read reaches. Record: over as many lines as the values need (the input file).
// Answer: one line only, the answer typed at a prompt; values the line leaves out keep their
// present values, as if the line ended with "/".
enum class Span { Record, Answer };

class FreeReader {
public:
    // Reads from a channel, one line after another as the record needs them (or one line).
    explicit FreeReader(int unit, Span span = Span::Record);
    // Reads from a text (an internal read): the end of the text is the end of the data.
    explicit FreeReader(std::string_view text, bool fromText);

    FreeReader& operator()(int& value);
    FreeReader& operator()(double& value);

    template <typename T>
    FreeReader& array(T* values, int count) {
        for (int k = 0; k < count; ++k) (*this)(values[k]);
        return *this;
    }

    // Reads `count` values of type T (int or double) and drops them, checking them like all
    // others. The copies still due of a repeat item ("r*value") hold the text already checked
    // and are passed over in one step, and nothing is left after a "/": dropping costs no more
    // than the text that is there, whatever the count.
    template <typename T>
    FreeReader& drop(int count);

    ReadStatus status() const { return status_; }
    // Number of values taken from the text (empty items and items after "/" not counted).
    int valuesRead() const { return valuesRead_; }
    bool ok() const { return status_ == ReadStatus::Ok; }
    bool failed() const { return status_ == ReadStatus::Bad; }
    bool atEnd() const { return status_ == ReadStatus::End; }
    // The text of the item that failed, for messages.
    const std::string& badItem() const { return badItem_; }

private:
    enum class ItemKind { Value, Empty, Stop, None };
    ItemKind nextItem(std::string& text);
    template <typename T>
    FreeReader& take(T& value, bool (*parse)(std::string_view, T&));
    bool fillLine();

    int unit_ = -1;
    Span span_ = Span::Record;
    int linesUsed_ = 0;
    int valuesRead_ = 0;
    bool fromText_ = false;
    bool textUsed_ = false;
    std::string textSource_;
    std::string line_;
    size_t pos_ = 0;
    bool haveLine_ = false;
    bool afterComma_ = true;  // a comma here would stand for an empty item
    bool stopped_ = false;    // a "/" ended the record
    int repeatLeft_ = 0;
    bool repeatEmpty_ = false;
    std::string repeatText_;
    ReadStatus status_ = ReadStatus::Ok;
    std::string badItem_;
};

// Reads the listed values as one record from a channel; returns the status.
template <typename... Values>
ReadStatus readFree(int unit, Values&... values) {
    FreeReader reader(unit);
    (reader(values), ...);
    return reader.status();
}

// Reads the listed values from one answer line of a channel; returns the status.
template <typename... Values>
ReadStatus readAnswer(int unit, Values&... values) {
    FreeReader reader(unit, Span::Answer);
    (reader(values), ...);
    return reader.status();
}

// Decodes the listed values from a text; the end of the text is the end of the data.
template <typename... Values>
ReadStatus decodeFree(std::string_view text, Values&... values) {
    FreeReader reader(text, true);
    (reader(values), ...);
    return reader.status();
}

// Fixed-column integer field (Iw input): blanks are ignored, an all-blank field is 0.
// Returns false when the field holds anything but an optionally signed whole number.
bool decodeFixedInt(std::string_view field, int& value);

// The number syntax of the free format, for a single item.
bool parseInteger(std::string_view text, int& value);
bool parseReal(std::string_view text, double& value);

bool isBlank(std::string_view text);

}  // namespace io
