#include "framework/qt/kit/float_text.h"

#include <QLocale>

#include <cmath>

namespace {

constexpr int FLOAT_DIGITS = 6;

std::optional<float> Read(const QString& text, QLocale locale) {
    locale.setNumberOptions(QLocale::RejectGroupSeparator);
    bool isNumber = false;
    const double value = locale.toDouble(text, &isNumber);
    // The word for what is infinite is a number to the toolkit, and one that is too large is none.
    if (std::isnan(value) || isNumber == std::isinf(value)) return std::nullopt;
    return static_cast<float>(value);
}

}  // namespace

std::string FloatToText(float fValue) {
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(static_cast<double>(fValue), 'g', FLOAT_DIGITS).toStdString();
}

std::optional<float> TextToFloat(const std::string& strText) {
    QString text = QString::fromStdString(strText).trimmed();
    if (const std::optional<float> value = Read(text, QLocale())) return value;
    return Read(text.replace(u',', u'.'), QLocale::c());
}
