// vistrel-export: writes pictures of documents as the viewer shows them.

#include "chunks/register_chunks.h"
#include "iff/read_only_check.h"
#include "tools/common/messages.h"
#include "tools/export/export_file.h"
#include "tools/export/options.h"
#include "tools/export/thumbnail_file.h"

#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace {

constexpr const char* USAGE =
    "usage: vistrel-export FILE... [--layer NAME|N]... [--channel NAME|N]... [--all]\n"
    "           [--out FOLDER] [--format png|ppm] [--merge-alpha] [--list] [--strict]\n"
    "           [--force]\n"
    "       vistrel-export --thumbnail SIZE INPUT OUTPUT [--strict]\n\n"
    "Writes pictures of each file as the viewer shows them, as FILE.LAYER.CHANNEL.png:\n"
    "the composite of the whole image, or what --layer and --channel choose by name or\n"
    "position; --all stands for all that is not chosen. With --merge-alpha composites\n"
    "have their transparency with them. --list prints what there is instead. Files that\n"
    "break rules of their formats are read all the same, unless --strict is given; what\n"
    "was passed over is said on standard error. Only --force replaces a file.\n\n"
    "--thumbnail writes a small picture of INPUT, SIZE pixels wide or high, to OUTPUT,\n"
    "which it replaces. What reads INPUT then has no other file, nor anything else.\n\n"
    "Status: 0 when everything was written, 1 when something was not, 2 for bad usage,\n"
    "and when standard output cannot be written.\n";

constexpr const char* PROGRAM = "vistrel-export";
constexpr int NOT_ALL = 1;
constexpr int BAD = 2;

// False, which is told, where it is missing and cannot be made.
bool MakeFolder(const std::string& strFolder) {
    std::error_code failed;
    std::filesystem::create_directory(strFolder, failed);
    if (failed) Say(NamesOf(strFolder), "It cannot be made: %s", failed.message().c_str());
    return !failed;
}

int ExportFiles(const Options& options) {
    if (!options.bList && !MakeFolder(options.folder)) return NOT_ALL;
    PictureNames names(options.format == PictureFormat::Png ? ".png" : ".ppm");
    bool good = true;
    for (const std::string& file : options.files) {
        good &= ExportFile(file, options, names);
        if (!IsOutputWritten(PROGRAM)) return BAD;
    }
    return good ? 0 : NOT_ALL;
}

}  // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);  // a closed output is an answer, not an end
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(USAGE, stdout);
        return IsOutputWritten(PROGRAM) ? 0 : BAD;
    }
    const std::optional<Options> options = ParseOptions({argv + 1, argv + argc});
    if (!options) {
        std::fputs(USAGE, stderr);
        return BAD;
    }
    CheckIffReadOnly();
    RegisterChunks();
    if (options->thumbnail) return WriteThumbnail(*options->thumbnail, options->bStrict) ? 0 : NOT_ALL;
    return ExportFiles(*options);
}
