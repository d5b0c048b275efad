#include "framework/qt/kit/program_style.h"

#include "framework/qt/kit/picture.h"

#include <QIcon>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOptionTitleBar>

namespace {

// Two chevrons, in the direction in which a bar that is too short goes on.
constexpr const char* TO_THE_RIGHT = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<path d="M3 4l4 4-4 4M9 4l4 4-4 4" fill="none" stroke="currentColor" stroke-width="1.8"/></svg>)";
constexpr const char* TO_THE_LEFT = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<path d="M13 4l-4 4 4 4M7 4l-4 4 4 4" fill="none" stroke="currentColor" stroke-width="1.8"/></svg>)";
constexpr const char* DOWNWARDS = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<path d="M4 3l4 4 4-4M4 9l4 4 4-4" fill="none" stroke="currentColor" stroke-width="1.8"/></svg>)";

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

    // The toolkit's own chevrons are black on any palette.
    QIcon standardIcon(StandardPixmap which, const QStyleOption* pOption,
                       const QWidget* pWidget) const override {
        if (which == SP_ToolBarVerticalExtensionButton) return AfxDrawnIcon(DOWNWARDS);
        if (which != SP_ToolBarHorizontalExtensionButton)
            return QProxyStyle::standardIcon(which, pOption, pWidget);
        const bool leftwards = pOption && pOption->direction == Qt::RightToLeft;
        return AfxDrawnIcon(leftwards ? TO_THE_LEFT : TO_THE_RIGHT);
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
