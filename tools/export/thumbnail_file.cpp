#include "tools/export/thumbnail_file.h"

#include "display/thumbnail.h"
#include "document/vistrel_doc.h"
#include "framework/core/exception.h"
#include "framework/core/path_name.h"
#include "framework/core/regular_file.h"
#include "tools/common/open_document.h"
#include "tools/export/byte_sink.h"
#include "tools/export/lock_in.h"
#include "tools/export/png_file.h"
#include "tools/export/whole_file.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void Write(ByteSink& sink, const Thumbnail& thumbnail) {
    const u64 rowSize = u64{thumbnail.sides.nWidth} * 3;
    const PngPicture png = {.nWidth = thumbnail.sides.nWidth,
                            .nHeight = thumbnail.sides.nHeight,
                            .texts = {{"Thumb::Image::Width", std::to_string(thumbnail.original.nWidth)},
                                      {"Thumb::Image::Height", std::to_string(thumbnail.original.nHeight)}},
                            .effort = PngEffort::Quick,
                            .row = [&](u32 y) { return thumbnail.pixels.Data() + y * rowSize; }};
    if (!WritePng(sink, png) || !sink.Flush()) throw CFileException("It cannot be written", errno);
}

bool Make(CRegularFile& input, int nOutput, const ThumbnailOrder& order, bool bStrict) {
    const FileNames names = NamesOf(order.input);
    bool written = false;
    Guarded(names, [&] {
        CVistrelDoc document;
        document.m_tolerance = bStrict ? Tolerance::None : Tolerance::Always;
        if (LoadDocument(document, input, names) != Loading::Read) return;
        const Thumbnail thumbnail = ThumbnailOf(document, order.nMostSide);
        if (!thumbnail.pixels) {
            Say(names, "there is no picture");
            return;
        }
        ByteSink sink(nOutput);
        Write(sink, thumbnail);
        written = true;
    });
    return written;
}

// Never returns. What it has is the system's to clear away.
[[noreturn]] void MakeLockedIn(CRegularFile& input, int nOutput, const ThumbnailOrder& order, bool bStrict) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (!LockIn(input.GetDescriptor(), nOutput)) {
        Say(NamesOf(order.input), "not read, since the system has no means to lock its reader in");
        _exit(1);
    }
    _exit(Make(input, nOutput, order, bStrict) ? 0 : 1);
}

// Of the processor's time.
double SecondsIn(const timeval& time) {
    constexpr double MICROSECONDS = 1e6;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / MICROSECONDS;
}

// Whether the process ended well. What ended it otherwise, and did not tell of it, is told.
bool WaitFor(pid_t nProcess, const FileNames& names) {
    int status = 0;
    rusage usage = {};
    while (wait4(nProcess, &status, 0, &usage) < 0)
        if (errno != EINTR) return false;
    if (WIFEXITED(status)) return WEXITSTATUS(status) == 0;
    // The system has one signal for a soft limit and one for a hard one, which others send as well.
    const int number = WTERMSIG(status);
    const u64 most = SecondsOfLockedIn();
    // The system looks at a limit from time to time, by a clock that can be a little ahead.
    constexpr double AHEAD = 0.1;
    const double used = SecondsIn(usage.ru_utime) + SecondsIn(usage.ru_stime) + AHEAD;
    if (number == SIGXCPU || (number == SIGKILL && used >= static_cast<double>(most)))
        Say(names, "its thumbnail takes more than %llu seconds", static_cast<unsigned long long>(most));
    else
        Say(names, "the reader of its thumbnail was ended: %s", strsignal(number));
    return false;
}

}  // namespace

bool WriteThumbnail(const ThumbnailOrder& order, bool bStrict) {
    const FileNames names = NamesOf(order.input);
    if (IsSameFile(order.input, order.output)) {
        Say(names, "its thumbnail would take its place");
        return false;
    }
    const std::unique_ptr<CRegularFile> input = OpenFile(names);
    if (!input) return false;
    bool made = false;
    const bool put = Guarded(NamesOf(order.output), [&] {
        WholeFile output(order.output);
        const pid_t process = fork();
        if (process < 0) throw CFileException("No process can be had", errno);
        if (process == 0) MakeLockedIn(*input, output.Descriptor(), order, bStrict);
        made = WaitFor(process, names);
        if (made && !output.FillEmpty()) output.Put(true);
    });
    return put && made;
}
