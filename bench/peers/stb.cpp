// Colour pixels: 24 bits, top row first.
#include "peer.h"

#define STB_IMAGE_IMPLEMENTATION
#include <stb/stb_image.h>

int main(int argc, char** argv) {
    return RunPeer(argc, argv, [](const char* pszPath) {
        int width = 0;
        int height = 0;
        int components = 0;
        unsigned char* const pixels = stbi_load(pszPath, &width, &height, &components, 3);
        stbi_image_free(pixels);
        return pixels != nullptr;
    });
}
