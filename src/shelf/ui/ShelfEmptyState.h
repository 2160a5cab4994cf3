#pragma once

#include "app/look/Theme.h"

#include <QWidget>

namespace quillet {

/// What the shelf says where it has no cards to show.
class ShelfEmptyState : public QWidget {
    Q_OBJECT

public:
    ShelfEmptyState(QWidget& parent, const Theme& theme);

    /// The search that found nothing; empty when there is none.
    void setQuery(const QString& query);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const Theme& m_theme;
    QString m_symbol;
    QString m_title;
    QString m_line;
};

} // namespace quillet
