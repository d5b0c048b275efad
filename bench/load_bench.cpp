// From asking for a file to holding its bitmap, for each kind of picture, and from one channel or layer to
// the next. The files are made in the temporary folder, stand in the system's cache and are removed at the
// end. The memory is there already; bench/compare measures the first load of a process too.

#include "base/large_block.h"
#include "load_once.h"
#include "workloads.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

class File {
  public:
    explicit File(const Workload& workload)
        : m_path(std::filesystem::temp_directory_path() / (workload.strName + std::to_string(getpid()))) {
        const Bytes bytes = workload.make();
        std::ofstream(m_path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { std::filesystem::remove(m_path); }

    std::string Path() const { return m_path.string(); }

  private:
    std::filesystem::path m_path;
};

const Workload& Named(const std::string& strName) {
    for (const Workload& workload : Workloads())
        if (workload.strName == strName) return workload;
    std::abort();
}

void Warm(benchmark::State& state, const Workload& workload) {
    const CVistrelDoc open;  // as long as one is, freed memory is kept
    const File file(workload);
    for (auto _ : state) LoadAndBuild(file.Path());
}

// Arguments: layer and channel before, layer and channel after. The bitmap before is freed first, as a view
// does.
void Switch(benchmark::State& state, const std::string& strWorkload) {
    const File file(Named(strWorkload));
    CVistrelDoc document;
    LoadDocument(document, file.Path());
    DisplayImage image;
    const auto show = [&](i64 nLayer, i64 nChannel) {
        image.ChooseLayer(document, static_cast<u32>(nLayer));
        image.BuildBitmap(document, {static_cast<u32>(nLayer), static_cast<u32>(nChannel)});
        if (!image.m_hBitmap) std::abort();
    };
    for (auto _ : state) {
        state.PauseTiming();
        show(state.range(0), state.range(1));
        state.ResumeTiming();
        show(state.range(2), state.range(3));
    }
}

// Reads and writes as many bytes as it is told, which are out of the cache as after another picture was
// shown.
void Copy(benchmark::State& state) {
    constexpr u64 OTHER_PICTURE = 96 << 20;
    const u64 size = static_cast<u64>(state.range(0));
    const LargeBlock from = LargeBlock::Allocate(size);
    const LargeBlock to = LargeBlock::Allocate(size);
    const LargeBlock other = LargeBlock::Allocate(OTHER_PICTURE);
    std::memset(from.Data(), 1, size);
    for (auto _ : state) {
        state.PauseTiming();
        std::memset(other.Data(), 1, OTHER_PICTURE);
        state.ResumeTiming();
        std::memcpy(to.Data(), from.Data(), size);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<i64>(size) * static_cast<i64>(state.iterations()));
}

}  // namespace

int main(int argc, char** argv) {
    RegisterChunks();
    for (const Workload& workload : Workloads())
        benchmark::RegisterBenchmark(("load/" + workload.strName).c_str(), [&workload](
                                                                               benchmark::State& state) {
            Warm(state, workload);
        })->Unit(benchmark::kMillisecond);
    const auto registerSwitch = [](const char* pszName, const char* pszWorkload,
                                   const std::vector<i64>& args) {
        benchmark::RegisterBenchmark(pszName,
                                     [pszWorkload](benchmark::State& state) { Switch(state, pszWorkload); })
            ->Args(args)
            ->Unit(benchmark::kMillisecond);
    };
    registerSwitch("switch/composite-to-red", "psd-rgb8-raw", {0, 0, 0, 1});
    registerSwitch("switch/red-to-composite", "psd-rgb8-raw", {0, 1, 0, 0});
    registerSwitch("switch/layer-to-next", "psd-layers20", {1, 0, 2, 0});
    constexpr i64 PIXELS = 4096 * 4096;
    for (const i64 size : {PIXELS, 3 * PIXELS, i64{2000} * 1500 * 3})
        benchmark::RegisterBenchmark("memcpy", Copy)->Arg(size)->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
