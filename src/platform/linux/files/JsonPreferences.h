#pragma once

#include "platform/Preferences.h"

#include <QJsonObject>

namespace quillet {

/// Preferences in one JSON file: a flat object under the dotted names, data items as
/// {"data": base64}. The file is replaced as a whole or not at all, and only when a value changed.
///
/// A file that cannot be read or understood is renamed to one with the date in its name, and the
/// defaults hold. Where even that fails, the file is left alone and nothing is written for as long
/// as this object lives: what it holds may still be precious.
class JsonPreferences : public Preferences {
public:
    /// The folder is made when there is first something to write.
    explicit JsonPreferences(QString path);

protected:
    void persist(const QVariantMap& stored) override;

private:
    void load();
    void setAside(const QString& reason);
    bool write(const QJsonObject& object);

    const QString m_path;
    QJsonObject m_written; // what the file holds
    bool m_mayWrite = true;
};

} // namespace quillet
