#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <utillibrary/datatypes/ByteStream.h>

#include "support/operation.h"
#include "support/pool.h"

#ifdef UTILLIBRARY_PEER_FMT
#include <fmt/format.h>
#endif
#ifdef UTILLIBRARY_PEER_GLIB
#include <glib.h>
#endif
#ifdef UTILLIBRARY_PEER_POCO
#include <Poco/Buffer.h>
#endif
#ifdef UTILLIBRARY_PEER_QT
#include <QByteArray>
#endif

// Blocks of bytes are made, overwritten, lengthened and zeroed. One type for each library describes
// its block: `make` makes one from bytes, `overwrite` replaces them by bytes of any length,
// `lengthen` appends zero bytes, `zero` sets all to zero, and `bytes` returns them.
namespace {

using namespace benchmarks;
using com::halvorin::datatypes::ByteStream;

unsigned int lengthOf(std::string const& text) { return static_cast<unsigned int>(text.size()); }

struct Ours {
    static constexpr char const* WHO = "utillibrary";
    using Block = ByteStream;

    static Block make(std::string const& bytes) { return {bytes.data(), lengthOf(bytes)}; }
    static void overwrite(Block& block, std::string const& bytes) {
        block.copy(bytes.data(), lengthOf(bytes));
    }
    static void lengthen(Block& block) { block.resize(2 * block.size()); }
    static void zero(Block& block) { block.zeroMemory(); }
    static std::string bytes(Block const& block) { return {block.data(), block.size()}; }
};

struct Vector {
    static constexpr char const* WHO = "std::vector";
    using Block = std::vector<char>;

    static Block make(std::string const& bytes) { return {bytes.begin(), bytes.end()}; }
    static void overwrite(Block& block, std::string const& bytes) {
        block.assign(bytes.begin(), bytes.end());
    }
    static void lengthen(Block& block) { block.resize(2 * block.size()); }
    static void zero(Block& block) { std::fill(block.begin(), block.end(), '\0'); }
    static std::string bytes(Block const& block) { return {block.begin(), block.end()}; }
};

// A block from malloc.
class LibcBlock {
public:
    explicit LibcBlock(std::string const& bytes)
        : data_(std::malloc(bytes.size())), size_(bytes.size()) {
        std::memcpy(data_, bytes.data(), size_);
    }
    LibcBlock(LibcBlock const& other) : LibcBlock(other.bytes()) {}
    LibcBlock& operator=(LibcBlock const&) = delete;
    ~LibcBlock() { std::free(data_); }

    void overwrite(std::string const& bytes) { std::memcpy(data_, bytes.data(), bytes.size()); }
    void lengthen() {
        void* const longer = std::malloc(2 * size_);
        std::memcpy(longer, data_, size_);
        std::memset(static_cast<char*>(longer) + size_, 0, size_);
        std::free(data_);
        data_ = longer;
        size_ *= 2;
    }
    void zero() { std::memset(data_, 0, size_); }
    std::string bytes() const { return {static_cast<char const*>(data_), size_}; }

private:
    void* data_;
    std::size_t size_;
};

struct Libc {
    static constexpr char const* WHO = "malloc, memcpy, memset";
    using Block = LibcBlock;

    static Block make(std::string const& bytes) { return Block(bytes); }
    static void overwrite(Block& block, std::string const& bytes) { block.overwrite(bytes); }
    static void lengthen(Block& block) { block.lengthen(); }
    static void zero(Block& block) { block.zero(); }
    static std::string bytes(Block const& block) { return block.bytes(); }
};

#ifdef UTILLIBRARY_PEER_POCO
struct Poco_ {
    static constexpr char const* WHO = "Poco";
    using Block = Poco::Buffer<char>;

    static Block make(std::string const& bytes) { return {bytes.data(), bytes.size()}; }
    static void overwrite(Block& block, std::string const& bytes) {
        block.assign(bytes.data(), bytes.size());
    }
    static void lengthen(Block& block) {
        std::size_t const size = block.size();
        block.resize(2 * size);
        std::memset(block.begin() + size, 0, size);
    }
    static void zero(Block& block) { std::fill(block.begin(), block.end(), '\0'); }
    static std::string bytes(Block const& block) { return {block.begin(), block.end()}; }
};
#endif

#ifdef UTILLIBRARY_PEER_QT
struct Qt6 {
    static constexpr char const* WHO = "Qt";
    using Block = QByteArray;

    static Block make(std::string const& bytes) {
        return {bytes.data(), static_cast<qsizetype>(bytes.size())};
    }
    static void overwrite(Block& block, std::string const& bytes) {
        block.resize(static_cast<qsizetype>(bytes.size()));
        std::memcpy(block.data(), bytes.data(), bytes.size());
    }
    static void lengthen(Block& block) {
        qsizetype const size = block.size();
        block.resize(2 * size);
        std::memset(block.data() + size, 0, static_cast<std::size_t>(size));
    }
    static void zero(Block& block) { block.fill('\0'); }
    static std::string bytes(Block const& block) { return block.toStdString(); }
};
#endif

#ifdef UTILLIBRARY_PEER_GLIB
// A counted reference to an array of bytes.
class GLibArray {
public:
    explicit GLibArray(std::string const& bytes) : array_(g_byte_array_sized_new(lengthOf(bytes))) {
        g_byte_array_append(array_, dataOf(bytes), lengthOf(bytes));
    }
    GLibArray(GLibArray const& other) : array_(g_byte_array_ref(other.array_)) {}
    GLibArray& operator=(GLibArray const&) = delete;
    ~GLibArray() { g_byte_array_unref(array_); }

    GByteArray& array() const { return *array_; }

private:
    static guint8 const* dataOf(std::string const& bytes) {
        return reinterpret_cast<guint8 const*>(bytes.data());
    }

    GByteArray* array_;
};

struct GLib {
    static constexpr char const* WHO = "GLib";
    using Block = GLibArray;

    static Block make(std::string const& bytes) { return Block(bytes); }
    static void overwrite(Block& block, std::string const& bytes) {
        g_byte_array_set_size(&block.array(), lengthOf(bytes));
        std::memcpy(block.array().data, bytes.data(), bytes.size());
    }
    static void lengthen(Block& block) {
        guint const size = block.array().len;
        g_byte_array_set_size(&block.array(), 2 * size);
        std::memset(block.array().data + size, 0, size);
    }
    static void zero(Block& block) { std::memset(block.array().data, 0, block.array().len); }
    static std::string bytes(Block const& block) {
        return {reinterpret_cast<char const*>(block.array().data), block.array().len};
    }
};
#endif

// ---- the operations

// The sizes at which every library is measured: small, one page, and large.
bool isMainSize(std::size_t size) { return size == 64 || size == 4 * KIBIBYTE || size == MEBIBYTE; }

template <typename Input>
class BlockOperation : public Operation<Input, std::string> {
public:
    using Operation<Input, std::string>::Operation;

    // Which row a type makes: this library, libc, or a peer.
    template <typename Library, typename Run>
    void add(Run run) const {
        if constexpr (std::is_same_v<Library, Ours>) {
            this->ours(run, Library::bytes);
        } else if constexpr (std::is_same_v<Library, Libc>) {
            this->plain(Library::WHO, run, Library::bytes);
        } else {
            this->peer(Library::WHO, run, Library::bytes);
        }
    }
};

std::string lengthened(std::string const& text) { return text + std::string(text.size(), '\0'); }

class Blocks {
public:
    Blocks(std::string const& size, std::vector<std::string> const& texts)
        : texts_(texts),
          copy_("copy to a new block, " + size, texts, AsItIs()),
          overwrite_("copy to a block of the same size, " + size, texts, AsItIs()),
          resize_("copy, and resize to twice the size, " + size, texts, lengthened),
          zero_("zero, " + size, texts,
                [](std::string const& text) { return std::string(text.size(), '\0'); }) {}

    template <typename Library>
    void add() const {
        using Block = typename Library::Block;
        copy_.add<Library>([](std::string const& text) { return Library::make(text); });
        resize_.add<Library>([](std::string const& text) {
            Block block = Library::make(text);
            Library::lengthen(block);
            return block;
        });
        overwrite_.add<Library>([block = Library::make(texts_.front())](
                                    std::string const& text) mutable -> Block const& {
            Library::overwrite(block, text);
            return block;
        });
        zero_.add<Library>([block = Library::make(texts_.front())](
                               std::string const& /*size*/) mutable -> Block const& {
            Library::zero(block);
            return block;
        });
    }

private:
    std::vector<std::string> texts_;
    BlockOperation<std::string> copy_;
    BlockOperation<std::string> overwrite_;
    BlockOperation<std::string> resize_;
    BlockOperation<std::string> zero_;
};

void addBlocks(std::size_t size) {
    Blocks const blocks(sizeName(size), textsOf(size));
    blocks.add<Libc>();
    blocks.add<Ours>();
    blocks.add<Vector>();
#ifdef UTILLIBRARY_PEER_QT
    blocks.add<Qt6>();
#endif
    if (!isMainSize(size)) return;
#ifdef UTILLIBRARY_PEER_GLIB
    blocks.add<GLib>();
#endif
#ifdef UTILLIBRARY_PEER_POCO
    blocks.add<Poco_>();
#endif
}

}  // namespace

void benchmarks::addRows() {
    for (std::size_t const size : SIZES)
        addBlocks(size);
}
