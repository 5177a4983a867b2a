#pragma once

#include <utillibrary/export.h>

namespace com::halvorin::datatypes {

// A block of raw bytes of an exact length, owned by its stream: no spare capacity, no position.
//
// Lengths, offsets and counts are of 32 bits. One object belongs to one thread at a time. Copies
// are deep, and there is no moving form.
//     ByteStream frame(4);              // 00 00 00 00
//     frame.buffer()[0] = 7;            // 07 00 00 00
//     ByteStream body("abc", 3);
//     frame.copy(body, 0, 4, 0);        // 07 00 00 00 'a' 'b' 'c'
//
// An empty stream has no block, and a null pointer. A block of length 0 is not empty: `allocate(0)`
// leaves one where there were bytes, and a stream that holds one cannot be copied.
// KEPT(zero-length-is-not-empty)
//
// A wrong argument is reported ("ByteStream::copy", level 3, a text, 0x80070057); then a bare
// `long` of that value, 2147942487, is thrown. KEPT(throws-a-long) The texts call the arguments V,
// Sz, Src, SrcStart and Num. KEPT(reports-use-other-names) Where memory fails, std::bad_alloc is
// thrown. Nothing has changed in either case, save that `allocate` has freed its block.
// NOLINTNEXTLINE(cppcoreguidelines-special-member-functions): moves are copies.
class UTILLIBRARY_EXPORT ByteStream {
public:
    /// Empty.
    ByteStream() noexcept;

    /// That many zero bytes; empty for 0.
    // NOLINTNEXTLINE(google-explicit-constructor): a length may stand for so many zero bytes.
    ByteStream(unsigned int size);

    /// A copy of `size` bytes.
    /// Fails    as `copy` of the same arguments does.
    UTILLIBRARY_INLINE ByteStream(char const* bytes, unsigned int size) { become(bytes, size); }

    /// Fails    as `copy` of the other's bytes does: for a block of length 0 too.
    UTILLIBRARY_INLINE ByteStream(ByteStream const& other) { become(other.buffer_, other.size_); }

    UTILLIBRARY_INLINE ~ByteStream() { delete[] buffer_; }

    /// Copies the other's bytes; from itself, it changes nothing, unlike `copy`.
    /// Fails    as `copy` of the other's bytes does: for a block of length 0 too.
    UTILLIBRARY_INLINE ByteStream& operator=(ByteStream const& other) {
        if (this != &other) copy(other.buffer_, other.size_);
        return *this;
    }

    // ---- questions

    /// The block, to be read and written; null when the stream is empty. Good until the next change
    /// of length. Two names and a conversion give one pointer. KEPT(three-names-for-one-pointer)
    UTILLIBRARY_INLINE char* buffer() const noexcept { return buffer_; }
    // KEPT(three-names-for-one-pointer): hosts use each of them.
    UTILLIBRARY_INLINE char* data() const noexcept { return buffer_; }
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wignored-qualifiers"
    // The second const is part of the conversion's name among the exports, and nothing else.
    // NOLINTNEXTLINE(google-explicit-constructor, readability-const-return-type)
    UTILLIBRARY_INLINE operator char const* const() const noexcept { return buffer_; }
#pragma GCC diagnostic pop

    /// The block's length in bytes.
    UTILLIBRARY_INLINE unsigned int size() const noexcept { return size_; }

    // ---- changes

    /// Frees the block: the stream is empty.
    void clear() noexcept;

    /// Makes the block `size` zero bytes long; the old bytes are never kept.
    /// Gives    size. A block of that length already is zeroed in place; so 0 leaves an empty
    ///          stream empty, and makes any other block one of length 0.
    ///          KEPT(zero-length-is-not-empty)
    /// Fails    with std::bad_alloc; the stream is empty then, as the old block is freed before the
    ///          new one is made, unlike in `copy` and `resize`. KEPT(allocate-frees-first)
    unsigned int allocate(unsigned int size);

    /// Makes the block `size` bytes long and keeps what fits of the old bytes; new ones are zero.
    /// Gives    size.
    /// Fails    for 0, unless the stream is empty: "0 == Sz" is reported and the long thrown.
    ///          KEPT(resize-to-nothing-throws)
    /// Cost     one new block, even to shrink; none for the length that it has.
    unsigned int resize(unsigned int size);

    /// Zeroes all bytes.
    UTILLIBRARY_INLINE void zeroMemory() noexcept {
        if (buffer_ != nullptr) __builtin_memset(buffer_, 0, size_);
    }

    /// Makes the block a copy of `size` bytes.
    /// Takes    bytes: they may lie within the own block. The whole own block is zeroed before it
    ///          is copied onto itself, and so becomes zero. KEPT(copy-onto-itself-zeroes)
    /// Gives    size; null and 0 empty the stream.
    /// Fails    with "NULL == V" for null and a size, with "0 == Sz" for a pointer and 0: reported,
    ///          and the long thrown.
    /// Cost     one new block; none for the length that it has.
    UTILLIBRARY_INLINE unsigned int copy(char const* bytes, unsigned int size) {
        // Others' bytes that just fill the block, as those of one frame after another do.
        bool const fill = size == size_ && size != 0 && bytes != nullptr && bytes != buffer_;
        if (fill) {
            __builtin_memcpy(buffer_, bytes, size);
        } else {
            become(bytes, size);
        }
        return size;
    }

    /// Makes the block a copy of another stream's; `copy(source.buffer(), source.size())`.
    /// Takes    source: a variable, though it is not written; a constant one, or a number that
    ///          would turn into a stream of zero bytes, does not fit. KEPT(source-is-a-variable)
    UTILLIBRARY_INLINE unsigned int copy(ByteStream& source) {
        // KEPT(source-is-a-variable): a constant reference would take a number for a stream of zero
        // bytes.
        return copy(source.buffer_, source.size_);
    }

    /// Writes part of a stream over this one from byte `start` on, and lengthens this one as
    /// needed; it never gets shorter. Bytes between the old end and `start` become zero.
    /// Takes    count: 0 for all that follows `sourceStart`. KEPT(zero-counts-the-rest) source: may
    ///          be this stream, and its part overlap the bytes written. KEPT(source-is-a-variable)
    /// Gives    the bytes copied, at times 0.
    /// Fails    with "SrcStart+Num > Src.size()" where the part passes the source's end: reported,
    ///          and the long thrown. With std::bad_alloc, too, where the new length passes 32 bits.
    /// Cost     one new block if the length changes.
    /// Example  4 bytes from 0 of "abcd" to 6 in "wxyz" give "wxyz", 00 00, "abcd"
    unsigned int copy(ByteStream& source, unsigned int sourceStart, unsigned int start,
                      unsigned int count);

private:
    // `copy` of all bytes but others' that just fill the block.
    void become(char const* bytes, unsigned int size);
    UTILLIBRARY_LOCAL void replace(char* block, unsigned int size) noexcept;
    UTILLIBRARY_LOCAL void extend(unsigned int size, unsigned int zeroEnd);

    char* buffer_ = nullptr;  // from array new; null when empty
    unsigned int size_ = 0;   // 0 when null
};

}  // namespace com::halvorin::datatypes
