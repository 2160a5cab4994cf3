#pragma once

#include "app/look/Theme.h"
#include "platform/Panels.h"

#include <QWidget>

namespace quillet {

/// The shelf's window: the glass that its content lies on, and the shadow around it. It takes the
/// keyboard without activating the program.
class ShelfPanel : public QWidget {
    Q_OBJECT

public:
    static constexpr double height = 318;
    static constexpr double cornerRadius = 22;

    ShelfPanel(const Theme& theme, const Panels& panels);

    PanelStyle style() const;

    /// The widget that fills the card.
    void setContent(QWidget& content);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRect card() const;

    const Theme& m_theme;
    const Panels& m_panels;
    QWidget* m_content = nullptr;
};

} // namespace quillet
