#pragma once

#include "app/look/Look.h"
#include "app/look/MenuPainting.h"

#include <QMenu>

namespace quillet {

/// A menu of the look: a card with a shadow. The window is larger than the card by the shadow, so
/// show it with popupAt().
class Menu : public QMenu {
    Q_OBJECT

public:
    explicit Menu(const Look& look, QWidget* parent = nullptr);

    /// An action that loses something, in the colour of warning.
    QAction* addDestructiveAction(const QString& text);

    /// Opens it with the card's top left corner at a point of the desktop (the toolkit's
    /// coordinates), or as near to it as the screen allows.
    void popupAt(const QPoint& position);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    class Style;

    CheckColumn checkColumn() const;
    QRect card() const;

    Look m_look;
    int m_margin; ///< room for the shadow
    QList<QAction*> m_destructive;
};

} // namespace quillet
