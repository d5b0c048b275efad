// Colour pixels: three interleaved channels of 8 bits.
#include "peer.h"

#include <OpenImageIO/imageio.h>
#include <memory>

int main(int argc, char** argv) {
    OIIO::attribute("threads", 1);
    return RunPeer(argc, argv, [](const char* pszPath) {
        OIIO::ImageSpec header;
        const auto input = OIIO::ImageInput::create(pszPath);
        if (!input || !input->open(pszPath, header) || header.nchannels < 3) return false;
        const size_t size =
            size_t{3} * static_cast<size_t>(header.width) * static_cast<size_t>(header.height);
        const auto pixels = std::make_unique_for_overwrite<unsigned char[]>(size);
        return input->read_image(0, 0, 0, 3, OIIO::TypeDesc::UINT8, pixels.get());
    });
}
