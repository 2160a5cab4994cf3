#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QUrl>

namespace quillet {

/// The paths of the files on this machine that a list of URLs (RFC 2483) names, in order. Comments
/// and URLs of any other kind are passed over.
QStringList localFilesInUriList(const QByteArray& list);

QByteArray uriList(const QList<QUrl>& urls);

} // namespace quillet
