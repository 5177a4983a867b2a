#include "utillibrary/datatypes/ByteStream.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/internal/result_codes.h"

// The block is a bare pointer: a class to own it would bring a heavy header to every host. Between
// a block's making and its storing nothing can throw.
// NOLINTBEGIN(cppcoreguidelines-owning-memory)
namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

// KEPT(reports-use-other-names): hosts compare the texts.
constexpr char const* NO_POINTER = "NULL == V";
constexpr char const* NO_BYTES = "0 == Sz";
constexpr char const* PAST_THE_SOURCE = "SrcStart+Num > Src.size()";

[[noreturn]] void refuse(char const* reason) {
    application::oru::writelog("ByteStream::copy", LEVEL_ERROR, reason, INVALID_ARGUMENT);
    // KEPT(throws-a-long): hosts catch the number; it is positive in 64 bits.
    throw static_cast<long>(INVALID_ARGUMENT);
}

// Of two 32-bit numbers, so that it does not wrap.
constexpr unsigned long sumOf(unsigned int left, unsigned int right) noexcept {
    return static_cast<unsigned long>(left) + right;
}

}  // namespace

ByteStream::ByteStream() noexcept = default;

ByteStream::ByteStream(unsigned int size) { allocate(size); }

void ByteStream::clear() noexcept { replace(nullptr, 0); }

unsigned int ByteStream::allocate(unsigned int size) {
    if (size == size_) {
        zeroMemory();
    } else {
        // KEPT(allocate-frees-first): the old bytes are of no use, and two blocks might not fit.
        clear();
        // KEPT(zero-length-is-not-empty): a block even for 0.
        replace(new char[size](), size);
    }
    return size;
}

unsigned int ByteStream::resize(unsigned int size) {
    // KEPT(resize-to-nothing-throws): `clear` is there for that. Its length may be 0 already.
    if (buffer_ != nullptr && size == 0) refuse(NO_BYTES);
    if (size < size_) {
        become(buffer_, size);
    } else if (size > size_) {
        extend(size, size);
    }
    return size;
}

void ByteStream::become(char const* bytes, unsigned int size) {
    if (size != 0 && bytes == nullptr) refuse(NO_POINTER);
    // KEPT(zero-length-is-not-empty): what a block of length 0 comes to.
    if (size == 0 && bytes != nullptr) refuse(NO_BYTES);
    if (size == 0) {
        clear();
    } else if (size == size_) {
        // KEPT(copy-onto-itself-zeroes): unlike assignment, which asks for itself first.
        zeroMemory();
    } else {
        auto* const block = new char[size];
        std::memcpy(block, bytes, size);
        replace(block, size);
    }
}

unsigned int ByteStream::copy(ByteStream& source, unsigned int sourceStart, unsigned int start,
                              unsigned int count) {
    if (sumOf(sourceStart, count) > source.size_) refuse(PAST_THE_SOURCE);
    // KEPT(zero-counts-the-rest): no shortcut for 0.
    if (count == 0) count = source.size_ - sourceStart;

    unsigned long const end = sumOf(start, count);
    if (end > UINT_MAX) throw std::bad_alloc();
    if (end > size_) extend(static_cast<unsigned int>(end), start);
    // Only now is the source looked at: it may be this stream, whose block has moved.
    if (count != 0) std::memmove(buffer_ + start, source.buffer_ + sourceStart, count);
    return count;
}

void ByteStream::replace(char* block, unsigned int size) noexcept {
    delete[] buffer_;
    buffer_ = block;
    size_ = size;
}

// Moves the bytes to a longer block, in which zero bytes follow them up to `zeroEnd`. What lies
// behind is the caller's to write.
void ByteStream::extend(unsigned int size, unsigned int zeroEnd) {
    auto* const block = new char[size];
    if (buffer_ != nullptr) std::memcpy(block, buffer_, size_);
    if (zeroEnd > size_) std::memset(block + size_, 0, zeroEnd - size_);
    replace(block, size);
}

}  // namespace com::halvorin::datatypes
// NOLINTEND(cppcoreguidelines-owning-memory)
