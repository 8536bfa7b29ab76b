// Plain driver for a fuzz target: runs LLVMFuzzerTestOneInput on every file
// named on the command line and on every file inside the folders named, so a
// corpus or a crash input can be replayed without libFuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {
int runFile(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return 1;
    }
    const std::vector<char> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    return 0;
}
}  // namespace

int main(int argc, char** argv) {
    int failures = 0;
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path arg(argv[i]);
        if (std::filesystem::is_directory(arg)) {
            for (const auto& item : std::filesystem::recursive_directory_iterator(arg))
                if (item.is_regular_file()) failures += runFile(item.path()), ++count;
        } else {
            failures += runFile(arg), ++count;
        }
    }
    std::printf("replayed %d inputs\n", count);
    return failures ? 1 : 0;
}
