#pragma once

#include "app/look/Look.h"
#include "hotkeys/ShortcutAlternatives.h"

#include <functional>
#include <QWidget>

namespace quillet {

/// The content of the banner: what is wrong, a row for each refused shortcut, and the answers. The
/// widget is larger than the card by the shadow's reach.
class ShortcutBannerView : public QWidget {
    Q_OBJECT

public:
    static constexpr int margin = 48;
    static constexpr int cornerRadius = 16;

    /// `onAnswer` is told whether the alternatives are wanted.
    ShortcutBannerView(const Look& look, std::vector<ShortcutAlternatives::Refusal> refusals,
                       std::function<void(bool isAccepted)> onAnswer);

    QSize cardSize() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QRect card() const { return rect().adjusted(margin, margin, -margin, -margin); }
    void addAnswers();
    void paintHead(QPainter& painter) const;
    void paintRow(QPainter& painter, const QRectF& row,
                  const ShortcutAlternatives::Refusal& refusal) const;

    Look m_look;
    std::vector<ShortcutAlternatives::Refusal> m_refusals;
    std::function<void(bool)> m_onAnswer;
    bool m_hasOffer;
};

} // namespace quillet
