// Feeds every file below a corpus folder to the fuzz target once. A crash or a sanitizer report
// fails the run; so does an empty or missing folder, which would otherwise prove nothing.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER\n", argv[0]);
        return 2;
    }
    std::error_code error;
    std::vector<std::filesystem::path> inputs;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[1], error)) {
        if (entry.is_regular_file())
            inputs.push_back(entry.path());
    }
    if (error || inputs.empty()) {
        std::fprintf(stderr, "%s: no inputs in %s\n", argv[0], argv[1]);
        return 1;
    }
    // In name order, so a failure names the same input on every machine.
    std::sort(inputs.begin(), inputs.end());
    for (const std::filesystem::path& path : inputs) {
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file),
                                      std::istreambuf_iterator<char>()};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs replayed\n", inputs.size());
    return 0;
}
