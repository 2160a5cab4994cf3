#pragma once

#include <optional>
#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

namespace quillet {

/// The installed applications as their desktop files tell it (desktop entry files below the
/// "applications" folders of the data folders; one in a sub-folder "a/b.desktop" has the id "a-b").
/// What a look-up found is kept until a folder or sub-folder changes.
class DesktopEntries {
public:
    struct Entry {
        QString id;   ///< file name without ".desktop"
        QString path; ///< of the file
        QString name; ///< in the user's language
        QString windowClass;
        QString command; ///< base name of the program that Exec starts
    };

    /// `folders` in order of precedence; a missing one counts as empty.
    explicit DesktopEntries(QStringList folders);

    /// The folders that the environment names, flatpak's among them.
    static QStringList standardFolders();

    /// What a desktop file names as its icon: a name in the icon theme or a path.
    static QString iconOf(const QString& path);

    std::optional<Entry> byId(const QString& id);

    /// The application of a window by the two halves of its WM_CLASS: an entry of that id, one
    /// that claims the class, one whose id ends in it, one whose command it is.
    std::optional<Entry> byWindowClass(const QString& className, const QString& instance);

private:
    struct ScannedFolder {
        QString path;
        QDateTime changed; ///< when it was read
    };

    void refresh();
    void scan();

    QStringList m_folders;
    std::optional<QList<ScannedFolder>> m_scanned; ///< with all folders below
    QList<Entry> m_entries;
    QHash<QString, std::optional<Entry>> m_found; ///< by class and instance
};

} // namespace quillet
