#pragma once

#include "app/look/Menu.h"
#include "platform/Alive.h"
#include "platform/Pasteboard.h"

#include <QLineEdit>

namespace quillet {

/// A line to type a text into; those who derive from it paint its ground. Cut, copy and paste go
/// through the Pasteboard: the toolkit's clipboard waits for the program that owns the content, and
/// when that is Quillet it waits in vain. What is typed shows as it is, without ligatures.
class TextInput : public QLineEdit {
    Q_OBJECT

public:
    TextInput(const Look& look, Pasteboard& pasteboard, QWidget* parent = nullptr);

    /// The menu of the right mouse button.
    std::unique_ptr<Menu> makeMenu();

protected:
    const Look& look() const { return m_look; }

    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    bool offerSelection();
    void copySelection();
    void cutSelection();
    void pasteText();
    void deleteToEnd();
    void followTheme();
    void followText(const QString& text);

    Look m_look;
    Pasteboard& m_pasteboard;
    std::unique_ptr<Menu> m_menu;
    Alive m_pastes; ///< texts that are still to come
};

} // namespace quillet
