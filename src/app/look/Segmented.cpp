#include "app/look/Segmented.h"

#include <algorithm>
#include <QPainter>
#include <QRadioButton>

namespace quillet {

/// Takes the clicks and keys of one part, and has the row painted.
class Segmented::Segment : public QRadioButton {
public:
    Segment(const Look& look, const QString& title, Segmented& row)
        : QRadioButton(title, &row), m_row(row), m_tracker(*this, look, 6) {
        setAttribute(Qt::WA_Hover);
    }

    bool isHovered() const { return underMouse(); }

protected:
    void paintEvent(QPaintEvent*) override {}
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    bool event(QEvent* event) override {
        m_row.update();
        return QRadioButton::event(event);
    }

private:
    Segmented& m_row;
    ControlTracker m_tracker;
};

Segmented::Segmented(const Look& look, const QStringList& titles, QWidget* parent)
    : QWidget(parent), m_look(look), m_titles(titles) {
    for (const QString& title : titles) {
        m_segments.push_back(new Segment(look, title, *this));
        const qsizetype index = static_cast<qsizetype>(m_segments.size()) - 1;
        connect(m_segments.back(), &QRadioButton::clicked, this,
                [this, index] { Q_EMIT chosenByUser(index); });
    }
    setChosen(0);
}

Segmented::~Segmented() = default;

qsizetype Segmented::chosen() const {
    return std::ranges::find_if(m_segments, &QRadioButton::isChecked) - m_segments.begin();
}

void Segmented::setChosen(qsizetype index) {
    m_segments.at(static_cast<size_t>(index))->setChecked(true);
    update();
}

void Segmented::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const auto hovered = std::ranges::find_if(m_segments, &Segment::isHovered);
    const bool isPressed = std::ranges::any_of(m_segments, &QRadioButton::isDown);
    paintSegmented(painter, rect(),
                   {m_titles,
                    chosen(),
                    hovered == m_segments.end() ? -1 : hovered - m_segments.begin(),
                    {0, isPressed, isEnabled()}},
                   m_look.colors());
}

void Segmented::resizeEvent(QResizeEvent*) {
    const auto rects = segmentRects(rect(), m_titles.size());
    for (size_t i = 0; i < rects.size(); ++i)
        m_segments[i]->setGeometry(rects[i].toRect());
}

} // namespace quillet
