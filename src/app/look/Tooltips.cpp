#include "app/look/Tooltips.h"
#include "app/look/FieldPainting.h"
#include "app/look/GlassCard.h"

#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QScreen>
#include <QWidget>

namespace quillet {
namespace {

constexpr QPoint belowPointer(4, 20); // from the pointer's tip to the card

/// Says how long the pointer has to rest.
class RestingTime : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        constexpr int milliseconds = 600;
        return hint == SH_ToolTip_WakeUpDelay ? milliseconds
                                              : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

class Tooltips::Bubble : public QWidget {
public:
    explicit Bubble(const Look& look)
        : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint),
          m_look(look),
          m_margin(look.panels.isTranslucent() ? 10 : 0) {
        setAttribute(Qt::WA_TranslucentBackground, m_margin > 0);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setAttribute(Qt::WA_ShowWithoutActivating);
    }

    void setText(const QString& text) {
        m_text = text;
        resize(tooltipSize(text).toSize() + QSize(2 * m_margin, 2 * m_margin));
        if (m_margin == 0)
            setMask(cardMask(rect(), tooltipRadius));
        update();
    }

    /// Room for the shadow around the card.
    int margin() const { return m_margin; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintTooltip(painter, rect().adjusted(m_margin, m_margin, -m_margin, -m_margin), m_text,
                     m_look.colors());
    }

private:
    Look m_look;
    int m_margin;
    QString m_text;
};

Tooltips::Tooltips(const Look& look) : m_look(look) {
    QApplication::setStyle(new RestingTime);
    qApp->installEventFilter(this);
}

Tooltips::~Tooltips() = default;

bool Tooltips::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::ToolTip:
        if (!widget || widget->toolTip().isEmpty())
            return false;
        show(widget->toolTip(), static_cast<QHelpEvent*>(event)->globalPos());
        return true;
    case QEvent::Leave:
    case QEvent::MouseButtonPress:
    case QEvent::KeyPress:
    case QEvent::Wheel:
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
        if (widget && m_bubble && widget != m_bubble.get())
            hide();
        return false;
    default:
        return false;
    }
}

void Tooltips::show(const QString& text, const QPoint& pointer) {
    if (!m_bubble)
        m_bubble = std::make_unique<Bubble>(m_look);
    m_bubble->setText(text);
    const QPoint shadow(m_bubble->margin(), m_bubble->margin());
    QRect place(pointer + belowPointer - shadow, m_bubble->size());
    if (const QScreen* screen = QGuiApplication::screenAt(pointer)) {
        const QRect usable = screen->availableGeometry();
        if (place.right() > usable.right())
            place.moveRight(usable.right());
        if (place.bottom() > usable.bottom())
            place.moveBottom(pointer.y());
    }
    m_bubble->move(place.topLeft());
    m_bubble->show();
}

void Tooltips::hide() {
    m_bubble->hide();
}

} // namespace quillet
