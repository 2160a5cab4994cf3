#include "platform/linux/files/JsonPreferences.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSaveFile>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcFiles, "quillet.platform", QtWarningMsg)

const QString dataTag = u"data"_s;

QVariant fromJson(const QJsonValue& value) {
    const QJsonObject object = value.toObject();
    if (object.size() == 1 && object.contains(dataTag)) {
        const auto decoded = QByteArray::fromBase64Encoding(
            object[dataTag].toString().toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        if (decoded)
            return *decoded;
    }
    return value.toVariant();
}

QJsonValue toJson(const QVariant& value) {
    if (value.typeId() == QMetaType::QByteArray)
        return QJsonObject{{dataTag, QString::fromLatin1(value.toByteArray().toBase64())}};
    return QJsonValue::fromVariant(value);
}

} // namespace

JsonPreferences::JsonPreferences(QString path) : m_path(std::move(path)) {
    load();
}

void JsonPreferences::persist(const QVariantMap& stored) {
    QJsonObject object;
    for (auto entry = stored.begin(); entry != stored.end(); ++entry)
        object.insert(entry.key(), toJson(entry.value()));
    if (m_mayWrite && object != m_written && write(object))
        m_written = object;
}

void JsonPreferences::load() {
    if (!QFileInfo::exists(m_path))
        return;
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return setAside(file.errorString());
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return setAside(file.errorString());
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError)
        return setAside(error.errorString());
    if (!document.isObject())
        return setAside(u"not a JSON object"_s);

    m_written = document.object();
    QVariantMap stored;
    for (auto entry = m_written.begin(); entry != m_written.end(); ++entry)
        stored.insert(entry.key(), fromJson(entry.value()));
    restore(stored);
}

void JsonPreferences::setAside(const QString& reason) {
    const QFileInfo file(m_path);
    const QString stem = file.dir().filePath(
        file.completeBaseName() + QDateTime::currentDateTime().toString(u"-yyyy-MM-dd-HHmmss"_s));
    QString kept = stem + u'.' + file.suffix();
    for (int number = 2; QFileInfo::exists(kept); ++number)
        kept = stem + u'-' + QString::number(number) + u'.' + file.suffix();
    m_mayWrite = QFile::rename(m_path, kept);
    qCWarning(lcFiles, "Preferences in %s are unusable (%s); %s", qUtf8Printable(m_path),
              qUtf8Printable(reason),
              m_mayWrite ? qUtf8Printable(u"kept as "_s + kept)
                         : "they stay as they are and changes will not be saved");
}

bool JsonPreferences::write(const QJsonObject& object) {
    constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QFileInfo::exists(folder)) {
        QDir().mkpath(QFileInfo(folder).absolutePath());
        QDir().mkdir(folder, ownerOnly | QFileDevice::ExeOwner);
    }
    QSaveFile file(m_path);
    if (file.open(QIODevice::WriteOnly)) {
        file.setPermissions(ownerOnly);
        file.write(QJsonDocument(object).toJson());
        if (file.commit())
            return true;
    }
    qCWarning(lcFiles, "Preferences could not be saved in %s (%s); the next change tries again",
              qUtf8Printable(m_path), qUtf8Printable(file.errorString()));
    return false;
}

} // namespace quillet
