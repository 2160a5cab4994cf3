#include "platform/linux/DesktopEntries.h"

#include <algorithm>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QLocale>

namespace quillet {

namespace {

using namespace Qt::StringLiterals;

/// Undoes the escapes of the desktop entry format's strings.
QString unescaped(const QString& value) {
    QString plain;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            plain += value[i];
            continue;
        }
        switch (value[++i].unicode()) {
        case u's':
            plain += u' ';
            break;
        case u'n':
            plain += u'\n';
            break;
        case u't':
            plain += u'\t';
            break;
        case u'r':
            plain += u'\r';
            break;
        default:
            plain += value[i];
            break;
        }
    }
    return plain;
}

/// The keys of the group [Desktop Entry].
QHash<QString, QString> readEntry(const QString& path) {
    QHash<QString, QString> keys;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return keys;
    bool inGroup = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(u'['))
            inGroup = line == "[Desktop Entry]"_L1;
        const qsizetype equals = line.indexOf(u'=');
        if (inGroup && equals > 0 && !line.startsWith(u'#'))
            keys.insert(line.first(equals).trimmed(), unescaped(line.sliced(equals + 1).trimmed()));
    }
    return keys;
}

QString localized(const QHash<QString, QString>& keys, const QString& key) {
    const QString locale = QLocale().name();
    for (const QString& suffix : {locale, locale.section(u'_', 0, 0)}) {
        const auto value = keys.constFind(key + u'[' + suffix + u']');
        if (value != keys.constEnd())
            return *value;
    }
    return keys.value(key);
}

QString programOf(const QString& exec) {
    QString program = exec.section(u' ', 0, 0, QString::SectionSkipEmpty);
    program.remove(u'"');
    return program.section(u'/', -1);
}

bool same(const QString& a, const QString& b) {
    return !a.isEmpty() && a.compare(b, Qt::CaseInsensitive) == 0;
}

} // namespace

DesktopEntries::DesktopEntries(QStringList folders) : m_folders(std::move(folders)) {}

QStringList DesktopEntries::standardFolders() {
    const QString home = QDir::homePath();
    QString userData = qEnvironmentVariable("XDG_DATA_HOME");
    if (userData.isEmpty())
        userData = home + "/.local/share"_L1;
    QString systemData = qEnvironmentVariable("XDG_DATA_DIRS");
    if (systemData.isEmpty())
        systemData = u"/usr/local/share:/usr/share"_s;
    QStringList roots = {userData, userData + "/flatpak/exports/share"_L1};
    roots += systemData.split(u':', Qt::SkipEmptyParts);
    roots += u"/var/lib/flatpak/exports/share"_s;
    QStringList folders;
    for (const QString& root : roots)
        folders.append(root + "/applications"_L1);
    folders.removeDuplicates();
    return folders;
}

QString DesktopEntries::iconOf(const QString& path) {
    return readEntry(path).value(u"Icon"_s);
}

std::optional<DesktopEntries::Entry> DesktopEntries::byId(const QString& id) {
    refresh();
    const auto entry = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                    [&](const Entry& e) { return e.id == id; });
    return entry != m_entries.cend() ? std::optional(*entry) : std::nullopt;
}

std::optional<DesktopEntries::Entry> DesktopEntries::byWindowClass(const QString& className,
                                                                   const QString& instance) {
    refresh();
    const QString key = className + u'\n' + instance;
    if (const auto known = m_found.constFind(key); known != m_found.constEnd())
        return *known;
    using Rule = bool (*)(const Entry&, const QString&);
    constexpr Rule rules[] = {
        [](const Entry& e, const QString& name) { return e.id == name; },
        [](const Entry& e, const QString& name) { return same(e.id, name); },
        [](const Entry& e, const QString& name) { return same(e.windowClass, name); },
        [](const Entry& e, const QString& name) { return same(e.id.section(u'.', -1), name); },
        [](const Entry& e, const QString& name) { return same(e.command, name); },
    };
    std::optional<Entry> found;
    for (const Rule rule : rules) {
        for (const QString& name : {className, instance}) {
            const auto entry = std::find_if(m_entries.cbegin(), m_entries.cend(),
                                            [&](const Entry& e) { return rule(e, name); });
            if (!found && entry != m_entries.cend())
                found = *entry;
        }
    }
    m_found.insert(key, found);
    return found;
}

void DesktopEntries::refresh() {
    const bool isCurrent =
        m_scanned && std::ranges::all_of(*m_scanned, [](const ScannedFolder& folder) {
            return QFileInfo(folder.path).lastModified() == folder.changed;
        });
    if (isCurrent)
        return;
    m_found.clear();
    scan();
}

void DesktopEntries::scan() {
    m_entries.clear();
    m_scanned.emplace();
    const auto remember = [this](const QString& folder) {
        m_scanned->append({folder, QFileInfo(folder).lastModified()});
    };
    QStringList seen; // an id found in an earlier folder hides later ones
    for (const QString& folder : m_folders) {
        remember(folder);
        constexpr auto everywhere = QDirIterator::Subdirectories | QDirIterator::FollowSymlinks;
        QDirIterator subfolders(folder, QDir::Dirs | QDir::NoDotAndDotDot, everywhere);
        while (subfolders.hasNext())
            remember(subfolders.next());
        QDirIterator files(folder, {u"*.desktop"_s}, QDir::Files, everywhere);
        while (files.hasNext()) {
            const QString path = files.next();
            QString id = QDir(folder).relativeFilePath(path).replace(u'/', u'-');
            id.chop(qsizetype(sizeof ".desktop") - 1);
            if (seen.contains(id))
                continue;
            seen.append(id);
            const QHash<QString, QString> keys = readEntry(path);
            if (keys.value(u"Hidden"_s) == "true"_L1)
                continue;
            m_entries.append({id, path, localized(keys, u"Name"_s), keys.value(u"StartupWMClass"_s),
                              programOf(keys.value(u"Exec"_s))});
        }
    }
}

} // namespace quillet
