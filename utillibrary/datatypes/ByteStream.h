#pragma once

#include <utillibrary/export.h>

// A name after "Kept" is a deliberate surprise; share/doc/utillibrary/kept.md explains each.
namespace com::halvorin::datatypes {

/// A block of bytes of an exact length, owned by this object. It has no spare capacity and no
/// read or write position.
///
/// Lengths, offsets and counts have 32 bits. A copy has its own block; moving copies. One object
/// belongs to one thread at a time.
///     ByteStream frame(4);              // 00 00 00 00
///     frame.buffer()[0] = 7;
///     frame                             // 07 00 00 00
///     ByteStream body("abc", 3);        // 61 62 63
///     frame.copy(body, 0, 4, 0)         // 3
///     frame                             // 07 00 00 00 61 62 63
///
/// An empty stream has no block: its pointer is null and its size is 0. A block of length 0 is
/// something else: `allocate(0)` makes one from a stream that had bytes. Its pointer is not null,
/// and it cannot be copied.
///
/// A wrong argument is reported first: component "ByteStream::copy", level 3, code 0x80070057 and
/// one of three messages. Then a `long` of the value 2147942487 (0x80070057) is thrown.
///
/// | message                     | cause                                                  |
/// |-----------------------------|--------------------------------------------------------|
/// | "NULL == V"                 | a null pointer with a size other than 0                |
/// | "0 == Sz"                   | a pointer that is not null with size 0                 |
/// | "SrcStart+Num > Src.size()" | the part to copy reaches past the end of its source    |
///
/// The object is unchanged after this exception. It is also unchanged after std::bad_alloc, except
/// in `allocate`.
/// Kept     zero-length-is-not-empty, throws-a-long, reports-use-other-names
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): moves are copies.
class UTILLIBRARY_EXPORT ByteStream {
public:
    /// Makes an empty stream.
    /// Fails    never.
    ByteStream() noexcept;

    /// Makes a stream of `size` zero bytes; an empty stream for 0.
    /// Fails    with std::bad_alloc.
    // NOLINTNEXTLINE(google-explicit-constructor): a length converts to a stream.
    ByteStream(unsigned int size);

    /// Makes a stream that contains a copy of `size` bytes.
    /// Takes    bytes and size: null and 0 make an empty stream.
    /// Fails    as `copy(bytes, size)` does.
    UTILLIBRARY_INLINE ByteStream(char const* bytes, unsigned int size) {
        copyGeneral(bytes, size);
    }

    /// Makes a copy of another stream.
    /// Fails    as `copy` of its bytes: with "0 == Sz" if `other` has a block of length 0.
    UTILLIBRARY_INLINE ByteStream(ByteStream const& other) {
        copyGeneral(other.buffer_, other.size_);
    }

    /// Frees the block.
    /// Fails    never.
    UTILLIBRARY_INLINE ~ByteStream() { delete[] buffer_; }

    /// Replaces the bytes by a copy of those of another stream. Assigning a stream to itself
    /// changes nothing, unlike `copy`.
    /// Fails    as `copy` of its bytes: with "0 == Sz" if `other` has a block of length 0.
    UTILLIBRARY_INLINE ByteStream& operator=(ByteStream const& other) {
        if (this != &other) copy(other.buffer_, other.size_);
        return *this;
    }

    // ---- questions

    /// The first byte of the block, to read and to write; null if the stream is empty.
    /// Gives    a pointer that is valid until the next change of length.
    /// Fails    never.
    /// Kept     three-names-for-one-pointer
    UTILLIBRARY_INLINE char* buffer() const noexcept UTILLIBRARY_LIFETIMEBOUND { return buffer_; }

    /// The same pointer as `buffer()`.
    /// Fails    never.
    /// Kept     three-names-for-one-pointer
    // KEPT(three-names-for-one-pointer): a host may use any of the three.
    UTILLIBRARY_INLINE char* data() const noexcept UTILLIBRARY_LIFETIMEBOUND { return buffer_; }

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-qualifiers"
    /// The same pointer as `buffer()`, to read only.
    /// Fails    never.
    /// Kept     three-names-for-one-pointer
    // The second const is part of the exported name, and has no other effect.
    // NOLINTNEXTLINE(google-explicit-constructor, readability-const-return-type)
    UTILLIBRARY_INLINE operator char const* const() const noexcept UTILLIBRARY_LIFETIMEBOUND {
        return buffer_;
    }
#pragma GCC diagnostic pop

    /// The length of the block in bytes.
    /// Fails    never.
    UTILLIBRARY_INLINE unsigned int size() const noexcept { return size_; }

    // ---- changes

    /// Frees the block. The stream is empty afterwards.
    /// Fails    never.
    void clear() noexcept;

    /// Makes the block `size` zero bytes long. No old byte is kept.
    /// Gives    size. If the block already has this length, its bytes become zero in place. So
    ///          `allocate(0)` leaves an empty stream empty, and gives any other stream a block of
    ///          length 0.
    /// Fails    with std::bad_alloc; the stream is then empty, because the old block was freed
    ///          first. `copy` and `resize` keep the old block in that case.
    /// Kept     zero-length-is-not-empty, allocate-frees-first
    unsigned int allocate(unsigned int size);

    /// Makes the block `size` bytes long. Old bytes are kept as far as they fit; new bytes are
    /// zero.
    /// Gives    size.
    /// Fails    with "0 == Sz" for size 0, unless the stream is empty; with std::bad_alloc.
    /// Cost     one new block, also for a smaller size; no new block for an equal size.
    /// Kept     resize-to-nothing-throws
    unsigned int resize(unsigned int size);

    /// Sets all bytes to zero.
    /// Fails    never.
    UTILLIBRARY_INLINE void zeroMemory() noexcept {
        if (buffer_ != nullptr) __builtin_memset(buffer_, 0, size_);
    }

    /// Replaces the block by a copy of `size` bytes.
    /// Takes    bytes: may point into this object's block. But to copy the whole block onto itself
    ///          sets all its bytes to zero.
    /// Gives    size. Null and 0 make the stream empty.
    /// Fails    with "NULL == V" for null with a size other than 0; with "0 == Sz" for a pointer
    ///          with size 0; with std::bad_alloc.
    /// Cost     one new block; no new block for an equal size.
    /// Kept     copy-onto-itself-zeroes
    UTILLIBRARY_INLINE unsigned int copy(char const* bytes, unsigned int size) {
        // The usual case: bytes from elsewhere, as many as this stream has.
        bool const fill = size == size_ && size != 0 && bytes != nullptr && bytes != buffer_;
        if (fill) {
            __builtin_memcpy(buffer_, bytes, size);
        } else {
            copyGeneral(bytes, size);
        }
        return size;
    }

    /// Replaces the block by a copy of another stream's block, as
    /// `copy(source.buffer(), source.size())` does.
    /// Takes    source: a non-const reference, though `source` is only read. A const stream does
    ///          not compile, nor does a number, which would convert to a stream of zero bytes.
    /// Gives    source.size().
    /// Fails    as `copy(bytes, size)` does.
    /// Kept     source-is-a-variable
    UTILLIBRARY_INLINE unsigned int copy(ByteStream& source) {
        // KEPT(source-is-a-variable): a const reference would take a number for a stream.
        return copy(source.buffer_, source.size_);
    }

    /// Writes a part of `source` over this stream, from byte `start` on. This stream becomes longer
    /// if necessary, and never shorter. Bytes between its old end and `start` become zero.
    /// Takes    source: may be this stream; the part may overlap the bytes that are written.
    ///          sourceStart: index of the first byte to copy. start: index of its copy in this
    ///          stream. count: number of bytes to copy; 0 copies all bytes from `sourceStart` to
    ///          the end.
    /// Gives    the number of bytes copied; 0 if `sourceStart` is the end of `source`.
    /// Fails    with "SrcStart+Num > Src.size()" if the part reaches past the end of `source`; with
    ///          std::bad_alloc, also if the new length needs more than 32 bits.
    /// Cost     one new block if the length changes.
    /// Example  ByteStream text("wxyz", 4);
    ///          ByteStream source("abcd", 4);
    ///          text.copy(source, 0, 6, 4)              // 4
    ///          text                                    // 77 78 79 7a 00 00 61 62 63 64
    ///          text.copy(source, 2, 0, 0)              // 2
    ///          text                                    // 63 64 79 7a 00 00 61 62 63 64
    ///          text.copy(source, 5, 0, 0)              // throws long 2147942487
    /// Kept     zero-counts-the-rest, source-is-a-variable
    unsigned int copy(ByteStream& source, unsigned int sourceStart, unsigned int start,
                      unsigned int count);

private:
    // `copy` for every argument. `copy` itself handles its usual case alone.
    void copyGeneral(char const* bytes, unsigned int size);
    UTILLIBRARY_LOCAL void replace(char* block, unsigned int size) noexcept;
    UTILLIBRARY_LOCAL void extend(unsigned int size, unsigned int zeroEnd);

    char* buffer_ = nullptr;  // from array new; null when the stream is empty
    unsigned int size_ = 0;   // bytes; 0 when `buffer_` is null
};

}  // namespace com::halvorin::datatypes
