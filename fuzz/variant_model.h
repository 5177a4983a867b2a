#pragma once

#include <string>

#include <utillibrary/datatypes/xtime.h>

// A Variant as plain fields, and what each conversion must give. Integers are read in 128 bits, and
// strings under the "C" locale.
struct VariantModel {
    int type = 0;
    unsigned long slot = 0;
    com::halvorin::datatypes::xtime_t time;
    std::wstring text;
    std::wstring auxiliary;

    void clear();
    /// Stores an integer, a Boolean or the bits of a floating number in the low bytes of the slot.
    void assignBits(int newType, unsigned long bits);
    void assignText(std::wstring const& newText);
    /// Widens each byte by sign. A zero byte ends the string.
    void assignBytes(std::string const& bytes);
    void assignTime(com::halvorin::datatypes::xtime_t const& newTime);
    /// Copies member by member. A model that is assigned to itself is cleared first.
    void assign(VariantModel const& other);

    /// True for the types 1 to 14. The others give zero, and a line on the standard output.
    bool hasConversions() const;
    /// The number as an integer of 8, 16, 32 or 64 bits.
    unsigned long toInteger(int bits, bool isSigned) const;
    double toDouble() const;
    float toFloat() const;
    bool toBool() const;
};

/// `Variant::compareDoublesHelper`.
int modelOfCompareDoubles(double a, double b, double threshold);
