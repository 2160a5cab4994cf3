#pragma once

#include "app/look/Look.h"
#include "hotkeys/ShortcutAlternatives.h"

#include <functional>
#include <QWidget>

namespace quillet {

/// The content of the banner: what is wrong, a row for each refused shortcut, and the answers, one
/// of which is given once. With the keyboard, Tab chooses among them, Return gives the chosen one,
/// Escape the one that changes nothing. The widget is larger than the card by the shadow's reach.
class ShortcutBannerView : public QWidget {
    Q_OBJECT

public:
    static constexpr int margin = 48;
    static constexpr int cornerRadius = 16;

    /// `onAnswer` is told whether the alternatives are wanted, `onPress` that the user turned to
    /// the card without an answer yet.
    ShortcutBannerView(const Look& look, std::vector<ShortcutAlternatives::Refusal> refusals,
                       std::function<void(bool isAccepted)> onAnswer,
                       std::function<void()> onPress);

    QSize cardSize() const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect card() const { return rect().adjusted(margin, margin, -margin, -margin); }
    void addAnswers();
    void answer(bool isAccepted);
    void paintHead(QPainter& painter) const;
    void paintRow(QPainter& painter, const QRectF& row,
                  const ShortcutAlternatives::Refusal& refusal) const;

    Look m_look;
    std::vector<ShortcutAlternatives::Refusal> m_refusals;
    std::function<void(bool)> m_onAnswer;
    std::function<void()> m_onPress;
    bool m_hasOffer;
};

} // namespace quillet
