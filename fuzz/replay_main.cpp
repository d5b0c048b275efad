// Gives every input of some folders to a fuzz target, once each, without a fuzzer: to see that what was found
// once stays mended, in any build.
//
// Files are read by C's functions: the memory sanitizer knows what those write, and not what the compiled
// part of the C++ library does.
#include "base/types.h"

#include <algorithm>
#include <cstdio>
#include <dirent.h>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerInitialize(int*, char***) __attribute__((weak));
extern "C" int LLVMFuzzerTestOneInput(const u8* pData, size_t nSize);

namespace {

constexpr size_t MOST_BYTES = 1 << 20;  // of an input; fuzzers make far smaller ones

// The paths of a folder's files, in order.
std::vector<std::string> FilesOf(const std::string& strFolder) {
    std::vector<std::string> paths;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(strFolder.c_str()), closedir);
    while (const dirent* const entry = folder ? readdir(folder.get()) : nullptr)
        if (entry->d_name[0] != '.') paths.push_back(strFolder + '/' + entry->d_name);
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<u8> BytesOf(const std::string& strPath) {
    std::vector<u8> bytes;
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(strPath.c_str(), "rb"), std::fclose);
    if (!file) return bytes;
    bytes.resize(MOST_BYTES);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    return bytes;
}

}  // namespace

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
    size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const std::string& path : FilesOf(argv[i])) {
            const std::vector<u8> bytes = BytesOf(path);
            // Seen where the input ends the program.
            std::fprintf(stderr, "%s\n", path.c_str());
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++count;
        }
    }
    std::printf("%zu inputs\n", count);
    return count == 0 ? 1 : 0;
}
