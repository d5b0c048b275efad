// Writes what the fuzz targets begin with: the sample files, read without faults under both sets of rules.
#include "fuzz/fuzz_input.h"
#include "support/sample_files.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace {

void Write(const std::filesystem::path& folder, const std::string& strName, const Bytes& bytes) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder / strName, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

Bytes WithControls(const Bytes& file, const Bytes& controls) {
    Bytes input = file;
    input.insert(input.end(), controls.begin(), controls.end());
    input.resize(file.size() + FuzzInput::CONTROLS);
    return input;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: write_seeds FOLDER\n");
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    for (const auto& [name, bytes] : SampleFiles()) {
        for (const u8 tolerant : Bytes{0, 1}) {
            const Bytes input = WithControls(bytes, {tolerant});
            const std::string seed = name + (tolerant != 0 ? "_tolerant" : "_strict");
            const bool isPsd = bytes.front() == '8';
            Write(folder / (isPsd ? "photoshop" : "chunk_tree"), seed, input);
            Write(folder / "document", seed, input);
        }
        // Its bytes as those of rows.
        for (const u8 kind : Bytes{0, 1, 2, 3})
            Write(folder / "rows", name + std::to_string(kind),
                  WithControls(bytes, {0, kind, 0, 9, 5, 2, 0, kind}));
    }
    return 0;
}
