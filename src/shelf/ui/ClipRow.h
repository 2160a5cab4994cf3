#pragma once

#include "shelf/ShelfModel.h"
#include "shelf/ui/ClipCard.h"
#include "shelf/ui/ClipCardLooks.h"

#include <map>

namespace quillet {

/// The row of cards: one for each visible item, of which only those in view exist. Scrolls by wheel
/// and touchpad and keeps the selected card in view. Covers the whole shelf, so that nothing cuts
/// the cards' shadows; the header lies on top of it.
class ClipRow : public QWidget {
    Q_OBJECT

public:
    ClipRow(QWidget& parent, ShelfModel& model, ClipCardLooks& looks, Scheduler& scheduler,
            const Theme& theme);

    /// The cards in view, from left to right.
    std::vector<ClipCard*> cards() const;

    /// How far the row is scrolled, in points.
    double offset() const { return m_offset; }

    /// Shows anew what the cards show.
    void refresh();

    /// The same for what changes by itself: how long ago.
    void refreshLooks();

Q_SIGNALS:
    void pasteRequested(const std::shared_ptr<ClipItem>& item);
    void menuRequested(const std::shared_ptr<ClipItem>& item, QPoint globalPosition);
    void draggedOut(const std::shared_ptr<ClipItem>& item, const QPixmap& picture);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    QRectF placeOf(int index) const;
    double clamped(double offset) const;
    void scrollTo(double offset);
    void scrollAnimated(double offset);
    void scrollToSelection();
    void followList();
    bool isWhollyInView(const std::shared_ptr<ClipItem>& item) const;
    void placeCards();
    ClipCard* makeCard(const std::shared_ptr<ClipItem>& item);
    void showLook(ClipCard& card, int index);
    static void discard(ClipCard* card);
    void updateSelection();
    void click(const std::shared_ptr<ClipItem>& item);
    void pasteClicked();

    ShelfModel& m_model;
    ClipCardLooks& m_looks;
    Scheduler& m_scheduler;
    const Theme& m_theme;
    std::map<int, ClipCard*> m_cards;    ///< by position; owned as children
    std::weak_ptr<ClipItem> m_selected;  ///< what shows as selected, in view or not
    std::shared_ptr<ClipItem> m_clicked; ///< what the last press chose
    double m_offset = 0;
    double m_target = 0;       ///< where the scrolling under way ends
    bool m_isCentring = false; ///< whether the scrolling begun last is for the selected card
    Animation m_scrolling;
};

} // namespace quillet
