#include "support/byte_stream_model.h"

#include <algorithm>
#include <string>
#include <utility>

namespace testing_support {

namespace {

constexpr unsigned long MOST = 4294967295;  // 32 bits

unsigned long sumOf(unsigned long left, unsigned long right) { return left + right; }

}  // namespace

void ByteStreamModel::clear() { *this = ByteStreamModel(); }

void ByteStreamModel::zeroMemory() { bytes_.assign(bytes_.size(), '\0'); }

ExpectedCall ByteStreamModel::allocate(unsigned int size) {
    if (size != 0 || hasBlock_) set(std::vector<char>(size));
    return {gives(size)};
}

ExpectedCall ByteStreamModel::resize(unsigned int size) {
    if (!hasBlock_) return allocate(size);
    if (size == 0) return {REFUSED, NO_BYTES};
    bytes_.resize(size);
    return {gives(size)};
}

ExpectedCall ByteStreamModel::copy(char const* bytes, unsigned int size) {
    if (size != 0 && bytes == nullptr) return {REFUSED, NO_POINTER};
    if (size == 0 && bytes != nullptr) return {REFUSED, NO_BYTES};
    if (bytes == nullptr) {
        clear();
    } else {
        set(std::vector<char>(bytes, bytes + size));
    }
    return {gives(size)};
}

ExpectedCall ByteStreamModel::copy(ByteStreamModel const& source) {
    ByteStreamModel from = source;
    if (this == &source) from.zeroMemory();
    char const somewhere = 'x';  // a block of length 0 has a pointer, too
    char const* const bytes = from.bytes_.empty() ? &somewhere : from.bytes_.data();
    return copy(from.hasBlock_ ? bytes : nullptr, from.size());
}

ExpectedCall ByteStreamModel::assign(ByteStreamModel const& source) {
    if (this == &source) return {gives(0)};
    ExpectedCall expected = copy(source);
    if (expected.outcome.result) expected.outcome = gives(0);
    return expected;
}

ExpectedCall ByteStreamModel::copyPart(ByteStreamModel const& source, unsigned int sourceStart,
                                       unsigned int start, unsigned int count) {
    std::vector<char> const from = source.bytes_;
    if (sumOf(sourceStart, count) > from.size()) return {REFUSED, PAST_THE_SOURCE};
    if (count == 0) count = static_cast<unsigned int>(from.size()) - sourceStart;
    unsigned long const end = sumOf(start, count);
    if (end > MOST) return {NO_MEMORY};
    if (end > bytes_.size()) {
        hasBlock_ = true;
        bytes_.resize(end);
    }
    std::copy_n(from.begin() + sourceStart, count, bytes_.begin() + start);
    return {gives(count)};
}

Contents ByteStreamModel::contents() const {
    if (!hasBlock_) return EMPTY;
    return std::string(bytes_.begin(), bytes_.end());
}

void ByteStreamModel::set(std::vector<char> bytes) {
    hasBlock_ = true;
    bytes_ = std::move(bytes);
}

bool isHuge(ByteStreamModel const& source, unsigned int sourceStart, unsigned int start,
            unsigned int count) {
    unsigned long const end = sumOf(start, count == 0 ? source.size() - sourceStart : count);
    return end > 5000 && end <= MOST;
}

}  // namespace testing_support
