// Colour pixels: 24 bits.
#include "peer.h"

#include <IL/il.h>

int main(int argc, char** argv) {
    ilInit();
    return RunPeer(argc, argv, [](const char* pszPath) {
        ILuint image = 0;
        ilGenImages(1, &image);
        ilBindImage(image);
        const bool done = ilLoadImage(pszPath) && ilConvertImage(IL_BGR, IL_UNSIGNED_BYTE) && ilGetData();
        ilDeleteImages(1, &image);
        return done;
    });
}
