#pragma once

#include "platform/HotKeyService.h"

#include <QObject>

class QKeyEvent;

namespace quillet {

/// Makes Super another Control in all windows of the application, and both of them go by Latin
/// letters whatever layout is in use. Whoever has to tell the two apart looks at the modifiers in a
/// key's native description. One object for the process, made when the application is there.
class CommandKeys : public QObject {
    Q_OBJECT

public:
    /// `keyboard` knows the letters; it outlives this.
    explicit CommandKeys(const HotKeyService& keyboard);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int latinKey(const QKeyEvent& event) const;

    const HotKeyService& m_keyboard;
};

} // namespace quillet
