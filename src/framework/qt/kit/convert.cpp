#include "framework/qt/kit/convert.h"

#include <QString>
#include <QStringDecoder>

namespace {

// What Windows-1252 has in place of the control characters from 0x80 to 0x9F; 0 where it has nothing.
constexpr char16_t HIGH_CONTROLS[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                        0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

QString FromWindows1252(const std::string& strBytes) {
    QString text = QString::fromLatin1(strBytes.data(), static_cast<qsizetype>(strBytes.size()));
    for (QChar& c : text)
        if (c.unicode() >= 0x80 && c.unicode() < 0xA0) c = QChar(HIGH_CONTROLS[c.unicode() - 0x80]);
    return text;
}

}  // namespace

QString ToDisplayText(const std::string& strBytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(QByteArrayView(strBytes.data(), static_cast<qsizetype>(strBytes.size())));
    if (decoder.hasError()) text = FromWindows1252(strBytes);
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
            c.category() == QChar::Separator_Paragraph)
            c = u' ';
    return text;
}

QString ToPlainTip(const QString& text) {
    return QStringLiteral("<p style='white-space:pre'>%1</p>").arg(text.toHtmlEscaped());
}
