#pragma once

#include "app/look/Buttons.h"

namespace quillet {

/// A shortcut worth knowing: what it does, and its keys.
class ShortcutHint : public QWidget {
    Q_OBJECT

public:
    static constexpr int fittingHeight = 64;

    ShortcutHint(const Look& look, const QString& symbol, const QString& title,
                 QWidget* parent = nullptr);

    void setKeys(const QString& keys);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Look m_look;
    QString m_symbol;
    QString m_title;
    KeyCap m_keys;
};

} // namespace quillet
