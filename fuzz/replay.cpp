#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

// Gives each file of a folder to a fuzz target, without libFuzzer. So any compiler and sanitizer
// can repeat what the fuzzer has learned.

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
// Weak, because not every target defines it.
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {

std::string bytesOf(std::filesystem::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: NAME_replay FOLDER\n", stderr);
        return 2;
    }
    std::error_code error;
    std::filesystem::directory_iterator const files(argv[1], error);
    if (error) {
        std::fprintf(stderr, "%s: %s\n", argv[1], error.message().c_str());
        return 1;
    }
    if (LLVMFuzzerInitialize != nullptr) LLVMFuzzerInitialize(&argc, &argv);
    unsigned int count = 0;
    for (auto const& entry : files) {
        std::string const bytes = bytesOf(entry.path());
        // The last line of the output names the file that fails.
        std::fprintf(stderr, "%s\n", entry.path().c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
        ++count;
    }
    if (count == 0) {
        std::fprintf(stderr, "%s: no file\n", argv[1]);
        return 1;
    }
    std::fprintf(stderr, "%u files\n", count);
    return 0;
}
