#include "framework/qt/kit/file_uri.h"

#include <QUrl>

// The toolkit's paths are texts, which cannot hold every byte. So they stay percent-coded as long as the
// toolkit has them.
std::string ToFileUri(const std::string& strPath) {
    return "file://" + QByteArray::fromStdString(strPath).toPercentEncoding("/").toStdString();
}

std::optional<std::string> FromFileUri(const std::string& strUri) {
    // Whoever leaves these marks as they stand means letters of the name.
    QString text = QString::fromStdString(strUri);
    text.replace(u'?', QStringLiteral("%3F")).replace(u'#', QStringLiteral("%23"));
    const QUrl url(text);
    const QString host = url.host();
    if (!url.isLocalFile() || !(host.isEmpty() || host == QStringLiteral("localhost"))) return std::nullopt;
    const QByteArray path = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    // A zero byte ends no path and is in none.
    if (!path.startsWith('/') || path.contains('\0')) return std::nullopt;
    return path.toStdString();
}
