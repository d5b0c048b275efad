// Colour pixels: 24 bits, bottom row first.
#include "peer.h"

#include <FreeImage.h>

int main(int argc, char** argv) {
    FreeImage_Initialise();
    return RunPeer(argc, argv, [](const char* pszPath) {
        FIBITMAP* const bitmap = FreeImage_Load(FreeImage_GetFileType(pszPath), pszPath);
        if (!bitmap) return false;
        const bool ready = FreeImage_GetBPP(bitmap) == 24 || FreeImage_GetBPP(bitmap) == 32;
        FIBITMAP* const shown = ready ? bitmap : FreeImage_ConvertTo24Bits(bitmap);
        const bool done = shown && FreeImage_GetBits(shown);
        if (shown && shown != bitmap) FreeImage_Unload(shown);
        FreeImage_Unload(bitmap);
        return done;
    });
}
