#include "tools/common/messages.h"

#include "base/types.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <unistd.h>

namespace {

// Bytes of the UTF-8 character at the start of the text; 0 for a control character and for what is none.
size_t PlainLength(std::string_view text) {
    const u8 lead = static_cast<u8>(text[0]);
    if (lead < 0x80) return lead < 0x20 || lead == 0x7F ? 0 : 1;
    const size_t length = lead < 0xC2 || lead > 0xF4 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (text.size() < length) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((text[i] & 0xC0) != 0x80) return 0;
    const bool isControl = lead == 0xC2 && static_cast<u8>(text[1]) < 0xA0;
    return isControl ? 0 : length;
}

bool g_bProgressShown = false;

void EndProgress() {
    if (g_bProgressShown) std::fputs("\r\x1B[K", stderr);
    g_bProgressShown = false;
}

}  // namespace

std::string PlainText(const std::string& strText, char replacement) {
    std::string plain;
    for (size_t at = 0; at < strText.size();) {
        const size_t length = PlainLength(std::string_view(strText).substr(at));
        plain += length == 0 ? std::string(1, replacement) : strText.substr(at, length);
        at += std::max<size_t>(length, 1);
    }
    return plain;
}

FileNames NamesOf(const std::string& strPath) {
    return {strPath, PlainText(strPath)};
}

void Say(const FileNames& names, const char* pszFormat, ...) {
    std::va_list values;
    va_start(values, pszFormat);
    EndProgress();
    std::fprintf(stderr, "%s: ", names.plain.c_str());
    // Analysed with other files in one run, the list counts as one that nobody has begun.
    std::vfprintf(stderr, pszFormat, values);  // NOLINT(clang-analyzer-valist.Uninitialized)
    std::fputc('\n', stderr);
    va_end(values);
}

void ShowProgress(const std::string& strText) {
    EndProgress();
    if (strText.empty() || isatty(STDERR_FILENO) == 0) return;
    // What is wider than the terminal is cut, for only one line can be taken away.
    std::fprintf(stderr, "\x1B[?7l%s\x1B[?7h", strText.c_str());
    g_bProgressShown = true;
}

bool IsOutputWritten(const char* pszProgram) {
    if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return true;
    std::fprintf(stderr, "%s: the output cannot be written\n", pszProgram);
    return false;
}
