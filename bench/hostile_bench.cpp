// What a file of many small parts costs, accepted and refused: to load it, to fill the lists and to make the
// first picture. Each grows to the most that its format allows; the benchmark library fits the growth.
//
// peak_per_byte: the most memory that was had meanwhile, for each byte of the file.

#include "chunks/register_chunks.h"
#include "display/catalogue.h"
#include "display/display_image.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "support/hostile_files.h"
#include "support/memory_file.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <malloc.h>
#include <string>

namespace {

constexpr u32 LEAST = 1 << 12;

void RestartPeakMemory() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

// Bytes, in one of the process's lines of memory.
double MemoryLine(const std::string& strName) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        double kibibytes = 0;
        if (word == strName && status >> kibibytes) return kibibytes * 1024;
    }
    return 0;
}

void Open(const Bytes& bytes) {
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    CVistrelDoc document;
    try {
        document.Serialize(archive);
    } catch (const CArchiveException&) {
        return;
    }
    benchmark::DoNotOptimize(LayerNames(document).size());
    DisplayImage image;
    image.ChooseLayer(document, 0);
    image.BuildBitmap(document, {0, 0});
}

void Run(benchmark::State& state, const HostileFile& kind, bool bCut) {
    const u32 count = static_cast<u32>(state.range(0));
    const Bytes bytes = Truncated(kind.make(count), bCut ? 1 : 0);
    RestartPeakMemory();
    const double before = MemoryLine("VmRSS:");
    for (auto _ : state) Open(bytes);
    const double size = static_cast<double>(bytes.size());
    state.counters["peak_per_byte"] = (MemoryLine("VmHWM:") - before) / size;
    state.counters["file_MB"] = size / 1e6;
    state.SetComplexityN(count);
}

}  // namespace

int main(int argc, char** argv) {
    RegisterChunks();
    for (const HostileFile& kind : HostileFiles())
        for (const bool cut : {false, true})
            benchmark::RegisterBenchmark(
                (std::string(kind.pszName) + (cut ? "/refused" : "/accepted")).c_str(),
                [&kind, cut](benchmark::State& state) { Run(state, kind, cut); })
                ->RangeMultiplier(4)
                ->Range(LEAST, kind.nMost)
                ->Complexity()
                ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
