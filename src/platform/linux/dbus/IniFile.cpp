#include "platform/linux/dbus/IniFile.h"

#include <algorithm>
#include <optional>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <vector>

namespace quillet {

namespace {

/// Absent where it cannot be read or is no file of settings; one that is not there has no lines.
std::optional<QByteArray> contentOf(const QString& path) {
    constexpr qint64 mostBytes = 1024 * 1024;
    const QFileInfo info(path);
    if (!info.exists())
        return QByteArray();
    QFile file(path);
    if (!info.isFile() || info.size() > mostBytes || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.read(mostBytes);
}

bool store(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).absolutePath());
    QSaveFile file(path); // a link stays one: what it points to is replaced
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.commit();
}

class IniText {
public:
    IniText(const QByteArray& content, const QString& key)
        : m_key(key.toUtf8()), m_lines(content.split('\n')) {
        const qsizetype slash = m_key.indexOf('/');
        if (slash >= 0) {
            m_section = m_key.first(slash);
            m_key = m_key.sliced(slash + 1);
        }
        find();
    }

    QByteArray value() const {
        return m_found.empty() ? QByteArray() : valueIn(m_lines[m_found.back()]).trimmed();
    }

    /// Of several the last one counts.
    void set(const QByteArray& value) {
        if (m_found.empty())
            return add(value);
        QByteArray& line = m_lines[m_found.back()];
        const bool hasReturn = line.endsWith('\r');
        line = line.chopped(valueIn(line).size()) + value + (hasReturn ? "\r" : "");
    }

    void remove() {
        for (auto line = m_found.rbegin(); line != m_found.rend(); ++line)
            m_lines.removeAt(*line);
    }

    QByteArray content() const { return m_lines.join('\n'); }

private:
    static QByteArray valueIn(const QByteArray& line) { return line.sliced(line.indexOf('=') + 1); }

    void find() {
        QByteArray section = "General"; // until another one begins
        for (qsizetype i = 0; i < m_lines.size(); ++i) {
            const QByteArray line = m_lines[i].trimmed();
            if (line.startsWith('['))
                section = line.sliced(1, std::max<qsizetype>(line.indexOf(']') - 1, 0)).trimmed();
            if (section != m_section || line.isEmpty())
                continue;
            m_end = i + 1;
            const qsizetype equals = line.indexOf('=');
            if (equals > 0 && line.first(equals).trimmed() == m_key)
                m_found.push_back(i);
        }
    }

    void add(const QByteArray& value) {
        const bool isAtEnd = m_end == 0 || m_end == m_lines.size();
        if (isAtEnd && !m_lines.last().isEmpty())
            m_lines.append(QByteArray()); // ends the line before
        if (m_end == 0) {
            m_end = m_lines.size();
            m_lines.insert(m_end - 1, '[' + m_section + ']');
        }
        m_lines.insert(m_end, m_key + '=' + value);
    }

    QByteArray m_section = "General";
    QByteArray m_key;
    QByteArrayList m_lines;
    std::vector<qsizetype> m_found; ///< the lines with the key
    qsizetype m_end = 0;            ///< of what the section has; 0 where there is none
};

} // namespace

// No lock, whose owner may be gone or take its time: what another program writes is whole, and so
// is what is written here.
CommandResult runIni(const QStringList& arguments) {
    const QString& path = arguments.at(0);
    const auto content = contentOf(path);
    if (!content)
        return {1, {}};
    IniText text(*content, arguments.at(1));
    if (arguments.size() < 3)
        return {0, text.value()};
    const QByteArray value = arguments.at(2).toUtf8();
    if (value == text.value())
        return {0, value};
    if (value.isEmpty())
        text.remove();
    else
        text.set(value);
    return {store(path, text.content()) ? 0 : 1, value};
}

} // namespace quillet
