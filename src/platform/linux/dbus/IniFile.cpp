#include "platform/linux/dbus/IniFile.h"

#include <QSettings>

namespace quillet {

CommandResult runIni(const QStringList& arguments) {
    QSettings file(arguments.at(0), QSettings::IniFormat);
    const QString& key = arguments.at(1);
    const QString value = arguments.value(2);
    if (!value.isEmpty())
        file.setValue(key, value);
    else if (arguments.size() > 2)
        file.remove(key);
    file.sync();
    return {file.status() == QSettings::NoError ? 0 : 1, file.value(key).toString().toUtf8()};
}

} // namespace quillet
