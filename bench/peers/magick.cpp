// All layers of a document, as pixels of the library's own.
#include "peer.h"

#include <magick/MagickCore.h>

int main(int argc, char** argv) {
    MagickCoreGenesis(argv[0], MagickFalse);
    return RunPeer(argc, argv, [](const char* pszPath) {
        ExceptionInfo* exception = AcquireExceptionInfo();
        ImageInfo* info = CloneImageInfo(nullptr);
        CopyMagickString(info->filename, pszPath, MaxTextExtent);
        Image* images = ReadImage(info, exception);
        const bool done = images != nullptr;
        if (images) DestroyImageList(images);
        DestroyImageInfo(info);
        DestroyExceptionInfo(exception);
        return done;
    });
}
