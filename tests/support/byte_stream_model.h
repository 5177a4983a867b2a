#pragma once

#include <vector>

#include "support/byte_streams.h"

namespace testing_support {

/// What a call must give: its outcome, and the message of its report or null.
struct ExpectedCall {
    Outcome outcome;
    char const* message = nullptr;
};

// A ByteStream as a plain list of bytes. Each operation changes the model as the contract says.
class ByteStreamModel {
public:
    void clear();
    void zeroMemory();
    ExpectedCall allocate(unsigned int size);
    ExpectedCall resize(unsigned int size);
    /// Takes    bytes: not in this model.
    ExpectedCall copy(char const* bytes, unsigned int size);
    ExpectedCall copy(ByteStreamModel const& source);
    /// Gives    result 0, because an assignment returns no number.
    ExpectedCall assign(ByteStreamModel const& source);
    ExpectedCall copyPart(ByteStreamModel const& source, unsigned int sourceStart,
                          unsigned int start, unsigned int count);

    Contents contents() const;
    unsigned int size() const { return static_cast<unsigned int>(bytes_.size()); }

private:
    void set(std::vector<char> bytes);

    bool hasBlock_ = false;
    std::vector<char> bytes_;
};

/// True if `copyPart` would make a stream of more than 5000 bytes and less than 4 GiB.
bool isHuge(ByteStreamModel const& source, unsigned int sourceStart, unsigned int start,
            unsigned int count);

}  // namespace testing_support
