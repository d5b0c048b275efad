// vistrel-describe: prints what files hold and what the viewer would show of them.

#include "base/large_block.h"
#include "chunks/register_chunks.h"
#include "iff/read_only_check.h"
#include "kernels/row_kernels.h"
#include "tools/common/messages.h"
#include "tools/common/number.h"
#include "tools/describe/describe.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

namespace {

constexpr const char* USAGE =
    "usage: vistrel-describe [--tolerant] [--kernels NAME] [--memory MIB] FILE...\n\n"
    "Reads each file as the viewer would and prints one JSON object for it on a line\n"
    "of its own: what it holds, what the lists would offer, and a checksum of every\n"
    "picture. For a refused file a line on standard error says why. With --tolerant a\n"
    "file that is refused is read as well as it can be, and what was passed over is\n"
    "printed with it. --kernels makes the pictures with the kernels of that name:\n"
    "plain, best or a kind of vectors such as AVX2. --memory sets how many mebibytes\n"
    "planes, pictures and other large pieces may have together.\n\n"
    "Status: 0 when every file was accepted, and when there are no kernels of that name,\n"
    "1 when one was refused, 2 for a file that cannot be opened, for bad usage, and when\n"
    "standard output cannot be written.\n";

constexpr const char* PROGRAM = "vistrel-describe";
constexpr int BAD = 2;

// In bytes; nothing where the word is no number of them.
std::optional<u64> Mebibytes(std::string_view word) {
    constexpr u64 MOST = ~u64{0} >> 20;
    const std::optional<u64> number = ToNumber<u64>(word);
    if (!number || *number > MOST) return std::nullopt;
    return *number << 20;
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);  // a closed output is an answer, not an end
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(USAGE, stdout);
        return IsOutputWritten(PROGRAM) ? 0 : BAD;
    }
    const std::vector<std::string_view> words(argv + 1, argv + argc);
    Tolerance tolerance = Tolerance::None;
    std::string kernels = BEST_ROW_KERNELS;
    size_t first = 0;
    while (first < words.size()) {
        if (words[first] == "--tolerant") {
            tolerance = Tolerance::Always;
            ++first;
        } else if (words[first] == "--kernels" && first + 1 < words.size()) {
            kernels = words[first + 1];
            first += 2;
        } else if (words[first] == "--memory" && first + 1 < words.size()) {
            const std::optional<u64> size = Mebibytes(words[first + 1]);
            if (!size) break;
            LargeBlock::SetLimit(*size);
            first += 2;
        } else {
            break;
        }
    }
    const bool dashes = first < words.size() && words[first] == "--";
    if (dashes) ++first;
    const auto isSwitch = [](std::string_view word) { return word.starts_with('-'); };
    if (first >= words.size() ||
        (!dashes && std::any_of(words.begin() + static_cast<std::ptrdiff_t>(first), words.end(), isSwitch))) {
        std::fputs(USAGE, stderr);
        return BAD;
    }
    if (!UseRowKernels(kernels)) {
        std::fprintf(stderr, "vistrel-describe: there are no kernels \"%s\" here; skipped\n",
                     kernels.c_str());
        return 0;
    }
    CheckIffReadOnly();
    RegisterChunks();

    int status = 0;
    for (; first < words.size(); ++first) {
        const DescribeResult result = DescribeFile(std::string(words[first]), stdout, tolerance);
        if (result == DescribeResult::Refused) status = std::max(status, 1);
        if (result == DescribeResult::NotWhole || result == DescribeResult::CannotBeOpened) status = BAD;
        if (!IsOutputWritten(PROGRAM)) return BAD;
    }
    return status;
}
