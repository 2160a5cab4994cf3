#pragma once

#include "app/look/Animation.h"
#include "shelf/ui/ClipCardLook.h"

#include <QPixmap>
#include <QWidget>

namespace quillet {

/// The card of one clip. Shows a ClipCardLook, animates its selection, and reports what the user
/// does to it; the row that owns it decides what that means.
class ClipCard : public QWidget {
    Q_OBJECT

public:
    /// Lets assistive programs know cards as items of a list, selected or not. Once is enough.
    static void installAccessibility();

    ClipCard(QWidget& row, std::shared_ptr<ClipItem> item, Scheduler& scheduler,
             const Theme& theme);

    const std::shared_ptr<ClipItem>& item() const { return m_item; }

    /// Replaces what it shows; its selection stays as it is.
    void setLook(ClipCardLook look);

    bool isSelected() const { return m_isSelected; }
    void setSelected(bool isSelected);

    /// The card as it shows, without what is behind its corners.
    const QPixmap& picture();

    /// The selection as it shows at the moment.
    double selection() const { return m_look.selection; }

Q_SIGNALS:
    void chosen();
    void doubleClicked();
    void menuRequested(QPoint globalPosition);
    void draggedOut();
    void selectionShownChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void showSelection(double selection);
    void repaintAnew();

    std::shared_ptr<ClipItem> m_item;
    const Theme& m_theme;
    ClipCardLook m_look;
    bool m_isSelected = false;
    Animation m_animation;
    QPixmap m_picture; ///< null when what it shows has changed
    QPoint m_pressed;  ///< on the desktop: the card moves away under the pointer
};

} // namespace quillet
