// Guards against modules that were built with different ideas of whether the library can write.
#pragma once

// The library's own IFF_READ_ONLY setting.
extern const bool g_bIffReadOnly;

// Ends the process with a message when the setting differs from the library's.
void CheckIffReadOnlySetting(bool bReadOnly);

// Run once by each program that uses the library, before it reads anything.
static inline void CheckIffReadOnly() {
#ifdef IFF_READ_ONLY
    CheckIffReadOnlySetting(true);
#else
    CheckIffReadOnlySetting(false);
#endif
}
