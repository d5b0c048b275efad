// What bench/compare calls: the product's loads and their floor, each in a process of its own.
//
// usage: load_runner COMMAND...
//   list                            a line for each workload: name, bytes kept, bytes of its bitmap
//   write NAME FILE                 makes the workload's file
//   square SIDE FILE                makes a raw document of that size
//   load FILE RUNS                  loads it so often, and prints each one's processor time in ms
//   floor FILE KEPT BITMAP RUNS     the same of reading the file, and of writing so many bytes each
//   memcpy RUNS                     the same of copying 48 MiB
//   touch BYTES                     has so much memory once, so that the host of a virtual machine has it at
//   hand

#include "base/large_block.h"
#include "load_once.h"
#include "workloads.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

constexpr u64 READ_SIZE = 256 * 1024;

template <typename Work>
void PrintRuns(u64 nRuns, const Work& work) {
    for (u64 run = 0; run < nRuns; ++run) std::printf("%.3f\n", CpuMillisecondsOf(work));
}

int List() {
    for (const Workload& workload : Workloads())
        std::printf("%s %llu %llu\n", workload.strName.c_str(),
                    static_cast<unsigned long long>(workload.nKept),
                    static_cast<unsigned long long>(workload.nBitmap));
    return 0;
}

int Write(const Bytes& bytes, const std::string& strPath) {
    std::ofstream file(strPath, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.good() ? 0 : 1;
}

int WriteNamed(const std::string& strName, const std::string& strPath) {
    for (const Workload& workload : Workloads())
        if (workload.strName == strName) return Write(workload.make(), strPath);
    return 1;
}

// Blocks come from where the product's do: on huge pages, and kept between the runs.
void Floor(const std::string& strPath, u64 nKept, u64 nBitmap) {
    const LargeBlock buffer = LargeBlock::Allocate(READ_SIZE);
    const int descriptor = open(strPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) std::abort();
    while (read(descriptor, buffer.Data(), READ_SIZE) > 0) continue;
    close(descriptor);
    const LargeBlock kept = LargeBlock::Allocate(nKept);
    std::memset(kept.Data(), 1, nKept);
    const LargeBlock bitmap = LargeBlock::Allocate(nBitmap);
    std::memset(bitmap.Data(), 1, nBitmap);
}

void Copy() {
    constexpr u64 SIZE = 48 << 20;
    static const LargeBlock from = LargeBlock::Allocate(SIZE);
    static const LargeBlock to = LargeBlock::Allocate(SIZE);
    std::memset(from.Data(), 1, SIZE);
    std::memset(to.Data(), 1, SIZE);
    std::printf("%.3f\n", CpuMillisecondsOf([] { std::memcpy(to.Data(), from.Data(), SIZE); }));
}

int Run(const Arguments& arguments) {
    const std::string command = arguments.empty() ? "" : arguments[0];
    const auto number = [&](size_t nPlace) { return std::stoull(arguments[nPlace]); };
    if (command == "list") return List();
    if (command == "write" && arguments.size() == 3) return WriteNamed(arguments[1], arguments[2]);
    if (command == "square" && arguments.size() == 3)
        return Write(SquareDocument(static_cast<u32>(number(1))), arguments[2]);
    RegisterChunks();
    const CVistrelDoc open;  // as long as one is, freed memory is kept
    LargeBlock::SetKeptLimit(u64{1} << 31);
    if (command == "load" && arguments.size() == 3) {
        PrintRuns(number(2), [&] { LoadAndBuild(arguments[1]); });
        return 0;
    }
    if (command == "floor" && arguments.size() == 5) {
        PrintRuns(number(4), [&] { Floor(arguments[1], number(2), number(3)); });
        return 0;
    }
    if (command == "memcpy" && arguments.size() == 2) {
        for (u64 run = 0; run < number(1); ++run) Copy();
        return 0;
    }
    if (command == "touch" && arguments.size() == 2) {
        const LargeBlock block = LargeBlock::Allocate(number(1));
        std::memset(block.Data(), 1, block.Size());
        return 0;
    }
    std::fputs("load_runner: see the head of its source for what it takes\n", stderr);
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    return Run(Arguments(argv + 1, argv + argc));
}
