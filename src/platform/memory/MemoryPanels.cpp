#include "platform/memory/MemoryPanels.h"

#include <algorithm>
#include <utility>

namespace quillet {

MemoryPanel::MemoryPanel(std::shared_ptr<std::vector<MemoryPanel*>> all, QWidget& widget,
                         const PanelStyle& panelStyle)
    : content(widget), style(panelStyle), m_all(std::move(all)) {
    m_all->push_back(this);
}

MemoryPanel::~MemoryPanel() {
    std::erase(*m_all, this);
}

void MemoryPanel::orderFront() {
    m_isVisible = true;
    std::erase(*m_all, this);
    const auto place = std::find_if(m_all->begin(), m_all->end(), [this](const MemoryPanel* other) {
        return other->style.level <= style.level;
    });
    m_all->insert(place, this);
}

void MemoryPanel::makeKeyAndOrderFront() {
    orderFront();
    if (!style.canBecomeKey)
        return;
    const auto before = std::find_if(m_all->begin(), m_all->end(), [this](MemoryPanel* other) {
        return other != this && other->isKey();
    });
    m_isKey = true;
    if (before != m_all->end())
        (*before)->resignKey();
}

void MemoryPanel::orderOut() {
    m_isKey = false;
    m_isVisible = false;
}

void MemoryPanel::resignKey() {
    if (!std::exchange(m_isKey, false))
        return;
    if (onResignKey)
        onResignKey();
}

std::unique_ptr<Panel> MemoryPanels::make(QWidget& content, const PanelStyle& style) {
    return std::make_unique<MemoryPanel>(m_all, content, style);
}

MemoryPanel* MemoryPanels::panelOf(const QWidget& content) const {
    const auto panel = std::find_if(m_all->begin(), m_all->end(),
                                    [&](MemoryPanel* p) { return &p->content == &content; });
    return panel == m_all->end() ? nullptr : *panel;
}

MemoryPanel* MemoryPanels::keyPanel() const {
    const auto panel =
        std::find_if(m_all->begin(), m_all->end(), [](MemoryPanel* p) { return p->isKey(); });
    return panel == m_all->end() ? nullptr : *panel;
}

void MemoryPanels::clickOutside() {
    if (MemoryPanel* panel = keyPanel())
        panel->resignKey();
}

} // namespace quillet
