#include "clipboard/UriList.h"
#include "clipboard/ClipboardLog.h"

#include <QSysInfo>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

bool isThisMachine(const QString& host) {
    return host.isEmpty() || host.compare("localhost"_L1, Qt::CaseInsensitive) == 0 ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

/// The path that a line of the list names; empty for anything but a file on this machine.
QString localFile(const QByteArray& line) {
    const QUrl url = QUrl::fromEncoded(line);
    if (url.scheme() != "file"_L1 || !isThisMachine(url.host()))
        return {};
    if (!QByteArrayView(QByteArray::fromPercentEncoding(line)).isValidUtf8()) {
        qCWarning(logClipboard) << "A copied file has a name that is no UTF-8 and is left out.";
        return {};
    }
    QString path = url.path(QUrl::FullyDecoded);
    if (!path.startsWith(u'/') || path.contains(QChar::Null))
        return {};
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

} // namespace

QStringList localFilesInUriList(const QByteArray& list) {
    QStringList paths;
    for (const QByteArray& line : list.split('\n')) {
        if (const QString path = localFile(line.trimmed()); !path.isEmpty())
            paths.append(path);
    }
    return paths;
}

QByteArray uriList(const QList<QUrl>& urls) {
    QByteArray list;
    for (const QUrl& url : urls)
        list += url.toEncoded() + "\r\n";
    return list;
}

} // namespace quillet
