#pragma once

#include "shelf/ShelfKeys.h"

#include <functional>
#include <QWidget>

class QKeyEvent;

namespace quillet {

/// Sees the keys that go to a window before the window's widgets do, for as long as it lives.
class KeyMonitor : public QObject {
    Q_OBJECT

public:
    /// True when the key is dealt with and must not go further.
    using Handler = std::function<bool(const ShelfKey&)>;

    KeyMonitor(QWidget& window, Handler handler);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
    Handler m_handler;
};

/// A key as the shelf's rules know it. Control counts as Command, as people expect it here.
ShelfKey shelfKey(const QKeyEvent& event);

} // namespace quillet
