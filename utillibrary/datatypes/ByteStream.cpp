#include "utillibrary/datatypes/ByteStream.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

#include "utillibrary/application/ORUsyslog.h"
#include "utillibrary/internal/result_codes.h"

// The block is a plain pointer, because a class that owns it would need a heavy header in every
// host. Nothing can throw after a block is made and before it is stored.
// NOLINTBEGIN(cppcoreguidelines-owning-memory)
namespace com::halvorin::datatypes {

namespace {

using namespace com::halvorin::internal;

[[noreturn]] void refuse(char const* message) {
    application::oru::writelog(BYTESTREAM_COPY, LEVEL_ERROR, message, INVALID_ARGUMENT);
    // KEPT(throws-a-long): a number, positive in 64 bits, and not a std::exception.
    throw static_cast<long>(INVALID_ARGUMENT);
}

// The sum in 64 bits, which cannot wrap.
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
        // KEPT(allocate-frees-first): no old byte is needed, and there may be no memory for both
        // blocks.
        clear();
        // KEPT(zero-length-is-not-empty): size 0 gets a block too.
        replace(new char[size](), size);
    }
    return size;
}

unsigned int ByteStream::resize(unsigned int size) {
    // KEPT(resize-to-nothing-throws): before any comparison of sizes, as a block may have length 0.
    if (buffer_ != nullptr && size == 0) refuse(ZERO_SIZE);
    if (size < size_) {
        copyGeneral(buffer_, size);
    } else if (size > size_) {
        extend(size, size);
    }
    return size;
}

void ByteStream::copyGeneral(char const* bytes, unsigned int size) {
    if (size != 0 && bytes == nullptr) refuse(NULL_BYTES);
    // KEPT(zero-length-is-not-empty): this refuses a stream that has a block of length 0.
    if (size == 0 && bytes != nullptr) refuse(ZERO_SIZE);
    if (size == 0) {
        clear();
    } else if (size == size_) {
        // KEPT(copy-onto-itself-zeroes): assignment tests for itself first; this does not.
        zeroMemory();
    } else {
        auto* const block = new char[size];
        std::memcpy(block, bytes, size);
        replace(block, size);
    }
}

unsigned int ByteStream::copy(ByteStream& source, unsigned int sourceStart, unsigned int start,
                              unsigned int count) {
    if (sumOf(sourceStart, count) > source.size_) refuse(PAST_SOURCE_END);
    // KEPT(zero-counts-the-rest): no early return for 0.
    if (count == 0) count = source.size_ - sourceStart;

    unsigned long const end = sumOf(start, count);
    if (end > UINT_MAX) throw std::bad_alloc();
    if (end > size_) extend(static_cast<unsigned int>(end), start);
    // Read the source only now: it may be this stream, which may have a new block.
    if (count != 0) std::memmove(buffer_ + start, source.buffer_ + sourceStart, count);
    return count;
}

void ByteStream::replace(char* block, unsigned int size) noexcept {
    delete[] buffer_;
    buffer_ = block;
    size_ = size;
}

// Moves the bytes to a longer block and sets the bytes after them to zero, up to `zeroEnd`. The
// caller writes the bytes from `zeroEnd` on.
void ByteStream::extend(unsigned int size, unsigned int zeroEnd) {
    auto* const block = new char[size];
    if (buffer_ != nullptr) std::memcpy(block, buffer_, size_);
    if (zeroEnd > size_) std::memset(block + size_, 0, zeroEnd - size_);
    replace(block, size);
}

}  // namespace com::halvorin::datatypes
// NOLINTEND(cppcoreguidelines-owning-memory)
