#pragma once

#include "platform/Panels.h"

#include <vector>

namespace quillet {

class MemoryPanels;

/// A panel that no one sees. Its widget is never shown.
class MemoryPanel : public Panel {
public:
    MemoryPanel(std::shared_ptr<std::vector<MemoryPanel*>> all, QWidget& content,
                const PanelStyle& style);
    ~MemoryPanel() override;

    void setFrame(const Rect& frame) override { m_frame = frame; }
    Rect frame() const override { return m_frame; }
    void setAlpha(double alpha) override { m_alpha = alpha; }
    double alpha() const override { return m_alpha; }
    void orderFront() override;
    void makeKeyAndOrderFront() override;
    void giveKeyboardBack() override { m_isKey = false; }
    void orderOut() override;
    bool isVisible() const override { return m_isVisible; }
    bool isKey() const override { return m_isKey; }

    /// The user turns to another window.
    void resignKey();

    QWidget& content;
    const PanelStyle style;

private:
    std::shared_ptr<std::vector<MemoryPanel*>> m_all;
    Rect m_frame;
    double m_alpha = 1;
    bool m_isVisible = false;
    bool m_isKey = false;
};

/// A screen of panels.
class MemoryPanels : public Panels {
public:
    std::unique_ptr<Panel> make(QWidget& content, const PanelStyle& style) override;
    bool isTranslucent() const override { return hasCompositor; }

    /// The panels that exist, visible or not, the topmost first.
    const std::vector<MemoryPanel*>& all() const { return *m_all; }

    /// The panel of a widget; null where it has none.
    MemoryPanel* panelOf(const QWidget& content) const;

    /// The panel with the keyboard; null where none has it.
    MemoryPanel* keyPanel() const;

    /// The user clicks where no panel is.
    void clickOutside();

    bool hasCompositor = true;

private:
    std::shared_ptr<std::vector<MemoryPanel*>> m_all =
        std::make_shared<std::vector<MemoryPanel*>>();
};

} // namespace quillet
