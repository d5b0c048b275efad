#include "framework/qt/kit/program_style.h"

#include "framework/qt/kit/picture.h"

#include <QIcon>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOptionTitleBar>

namespace {

// Drawn in the theme's colour, where the toolkit's own are black on any palette: chevrons in the direction in
// which a bar that is too short goes on, and what stands before the items of a child window's menu.
#define DRAWING(PATH)                                              \
    "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 16 16'>" \
    "<path d='" PATH "' fill='none' stroke='currentColor' stroke-width='1.5'/></svg>"
constexpr const char* TO_THE_RIGHT = DRAWING("M3 4l4 4-4 4M9 4l4 4-4 4");
constexpr const char* TO_THE_LEFT = DRAWING("M13 4l-4 4 4 4M7 4l-4 4 4 4");
constexpr const char* DOWNWARDS = DRAWING("M4 3l4 4 4-4M4 9l4 4 4-4");
constexpr const char* MINIMISE = DRAWING("M3 12h10");
constexpr const char* MAXIMISE = DRAWING("M3 3.5h10v9H3zM3 5h10");
constexpr const char* RESTORE = DRAWING("M5.5 5V2.5h8v7H11M2.5 6h8v7.5h-8z");
constexpr const char* CLOSE = DRAWING("M3.5 3.5l9 9M12.5 3.5l-9 9");
#undef DRAWING

// Null where the toolkit's own is shown.
const char* DrawingOf(QStyle::StandardPixmap which, bool bLeftwards) {
    switch (which) {
        case QStyle::SP_ToolBarHorizontalExtensionButton:
            return bLeftwards ? TO_THE_LEFT : TO_THE_RIGHT;
        case QStyle::SP_ToolBarVerticalExtensionButton:
            return DOWNWARDS;
        case QStyle::SP_TitleBarMinButton:
            return MINIMISE;
        case QStyle::SP_TitleBarMaxButton:
            return MAXIMISE;
        case QStyle::SP_TitleBarNormalButton:
            return RESTORE;
        case QStyle::SP_TitleBarCloseButton:
            return CLOSE;
        default:
            return nullptr;
    }
}

constexpr int DARK = 128;  // lightness below which a colour is dark, of 256

// A desktop may have put styles of its own around it.
bool IsFusion(const QStyle* pStyle) {
    while (const auto* const proxy = qobject_cast<const QProxyStyle*>(pStyle)) pStyle = proxy->baseStyle();
    return pStyle->name() == QStringLiteral("fusion");
}

class ProgramStyle final : public QProxyStyle {
  public:
    // The toolkit puts pictures on the buttons of its own questions, and those of the program's dialogs have
    // none.
    int styleHint(StyleHint hint, const QStyleOption* pOption, const QWidget* pWidget,
                  QStyleHintReturn* pReturn) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
        return QProxyStyle::styleHint(hint, pOption, pWidget, pReturn);
    }

    QIcon standardIcon(StandardPixmap which, const QStyleOption* pOption,
                       const QWidget* pWidget) const override {
        const char* const drawing = DrawingOf(which, pOption && pOption->direction == Qt::RightToLeft);
        return drawing ? AfxDrawnIcon(drawing) : QProxyStyle::standardIcon(which, pOption, pWidget);
    }

    // Fusion draws the buttons of an inactive child window in black on any palette. Those of an active one
    // are white.
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* pOption, QPainter* pPainter,
                            const QWidget* pWidget) const override {
        const auto* const caption = qstyleoption_cast<const QStyleOptionTitleBar*>(pOption);
        const bool isBlackOnDark = control == CC_TitleBar && caption && IsFusion(this) &&
                                   !(caption->titleBarState & State_Active) &&
                                   caption->palette.window().color().lightness() < DARK;
        if (!isBlackOnDark) return QProxyStyle::drawComplexControl(control, pOption, pPainter, pWidget);
        QStyleOptionTitleBar readable = *caption;
        readable.titleBarState |= static_cast<int>(State_Active);
        readable.palette.setColor(QPalette::Highlight, caption->palette.window().color());
        QProxyStyle::drawComplexControl(control, &readable, pPainter, pWidget);
    }
};

}  // namespace

QStyle* AfxMakeStyle() {
    return new ProgramStyle;
}
