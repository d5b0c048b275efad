#include "framework/qt/kit/picture.h"

#include "framework/core/resource.h"

#include <QGuiApplication>
#include <QIcon>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

namespace {

// How much of its colour the picture of a disabled button keeps.
constexpr double DISABLED_OPACITY = 0.4;

// The description is read anew for each drawing: those who show it keep what was drawn.
class PictureEngine final : public QIconEngine {
  public:
    explicit PictureEngine(const char* pszSvg) : m_pszSvg(pszSvg) {}

    void paint(QPainter* pPainter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QColor text = QGuiApplication::palette().color(QPalette::Active, QPalette::ButtonText);
        QSvgRenderer renderer(QByteArray(m_pszSvg).replace("currentColor", text.name().toLatin1()));
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        const double before = pPainter->opacity();
        if (mode == QIcon::Disabled) pPainter->setOpacity(before * DISABLED_OPACITY);
        renderer.render(pPainter, rect);
        pPainter->setOpacity(before);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap drawn(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return drawn;
    }

    QIconEngine* clone() const override { return new PictureEngine(m_pszSvg); }

  private:
    const char* m_pszSvg;
};

}  // namespace

QIcon AfxLoadIcon(u32 nID) {
    const PictureResource* const picture = AfxFindPicture(nID);
    return picture ? AfxDrawnIcon(picture->pszSvg) : QIcon();
}

QIcon AfxDrawnIcon(const char* pszSvg) {
    return QIcon(new PictureEngine(pszSvg));
}
