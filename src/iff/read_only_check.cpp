#include "iff/read_only_check.h"

#include "framework/core/answers.h"

#include <cstdlib>

#ifdef IFF_READ_ONLY
const bool g_bIffReadOnly = true;
#else
const bool g_bIffReadOnly = false;
#endif

void CheckIffReadOnlySetting(bool bReadOnly) {
    if (bReadOnly == g_bIffReadOnly) return;
    MessageBoxA(nullptr, "IFF_READ_ONLY definition not consistent", "Error",
                MB_OK | MB_ICONEXCLAMATION | MB_SETFOREGROUND);
    std::exit(-45);
}
