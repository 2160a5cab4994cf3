#pragma once

#include <optional>
#include <QImage>
#include <QString>
#include <QStringList>
#include <QUrl>

namespace quillet {

/// A program with windows on the desktop.
struct RunningApplication {
    QString bundleID; ///< the desktop's identifier of the application
    QString name;     ///< as people know it, in their language
    qint64 pid = 0;   ///< 0 where the desktop does not tell

    /// Under what other identifiers it may be known: what its windows say of themselves.
    QStringList otherIDs{};
    bool operator==(const RunningApplication&) const = default;
};

/// The applications of the desktop and what one asks of them.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The application that has the user's attention. When its last window has just closed and no
    /// other took over, the one that was frontmost before. Absent when there has been none yet.
    virtual std::optional<RunningApplication> frontmost() const = 0;

    /// Brings an application's windows to the front. False when it has none.
    virtual bool activate(const RunningApplication& application) = 0;

    /// The name of an installed application by its identifier, in the user's language.
    virtual std::optional<QString> applicationName(const QString& bundleID) const = 0;

    /// The file of an installed application by its identifier.
    virtual std::optional<QString> applicationLocation(const QString& bundleID) const = 0;

    /// The icon of a file, an application's among them, at most `pixels` wide and high. A null
    /// image where there is none.
    virtual QImage icon(const QString& path, int pixels) const = 0;

    /// Opens a URL with the user's program for it. False when it could not be handed over.
    virtual bool open(const QUrl& url) = 0;

    /// Shows files in the file manager, selected where it can do so.
    virtual void reveal(const QStringList& paths) = 0;

    /// Tells the user in the system's way that something could not be done.
    virtual void beep() = 0;
};

} // namespace quillet
