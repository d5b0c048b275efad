// Gives every input of some folders to a fuzz target, once each, without a fuzzer: to see that what was found
// once stays mended, in any build.
#include "base/types.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int*, char***) __attribute__((weak));
extern "C" int LLVMFuzzerTestOneInput(const u8* pData, size_t nSize);

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
    std::vector<std::filesystem::path> inputs;
    for (int i = 1; i < argc; ++i)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i]))
            if (entry.is_regular_file()) inputs.push_back(entry.path());
    std::sort(inputs.begin(), inputs.end());
    for (const auto& path : inputs) {
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        // Seen where the input ends the program.
        std::fprintf(stderr, "%s\n", path.c_str());
        LLVMFuzzerTestOneInput(reinterpret_cast<const u8*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs\n", inputs.size());
    return inputs.empty() ? 1 : 0;
}
