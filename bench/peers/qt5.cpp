// Colour pixels: 32 bits, ready for the screen.
#include "peer.h"

#include <QImage>
#include <QImageReader>

int main(int argc, char** argv) {
    QImageReader::supportedImageFormats();
    return RunPeer(argc, argv, [](const char* pszPath) {
        QImageReader reader(QString::fromLocal8Bit(pszPath));
        reader.setDecideFormatFromContent(true);
        const QImage image = reader.read();
        return !image.isNull() && !image.convertToFormat(QImage::Format_RGB32).isNull();
    });
}
