// The least that a program of the toolkit can do to show a picture: raw pixels from a file, in a window. What
// the viewer's start is compared with. usage: bare_window WIDTH HEIGHT FILE (red, green and blue of each
// pixel)

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QWidget>

namespace {

class Window final : public QWidget {
  public:
    explicit Window(QImage image) : m_image(std::move(image)) { resize(m_image.size()); }

  protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, m_image); }

  private:
    QImage m_image;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    if (argc != 4) return 2;
    const int width = QByteArray(argv[1]).toInt(), height = QByteArray(argv[2]).toInt();
    QFile file(QString::fromLocal8Bit(argv[3]));
    if (!file.open(QFile::ReadOnly)) return 1;
    const QByteArray pixels = file.readAll();
    if (pixels.size() != qsizetype{3} * width * height) return 1;
    const QImage image(reinterpret_cast<const uchar*>(pixels.constData()), width, height, 3 * width,
                       QImage::Format_RGB888);
    Window window(image.convertToFormat(QImage::Format_RGB32));
    window.show();
    return QApplication::exec();
}
