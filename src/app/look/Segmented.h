#pragma once

#include "app/look/ControlTracker.h"
#include "app/look/TogglePainting.h"

#include <vector>

class QRadioButton;

namespace quillet {

/// A row of titles of which one is chosen, by click or with the arrow keys.
class Segmented : public QWidget {
    Q_OBJECT

public:
    Segmented(const Look& look, const QStringList& titles, QWidget* parent = nullptr);
    ~Segmented() override;

    qsizetype chosen() const;

    /// Chooses without reporting it.
    void setChosen(qsizetype index);

    QSize sizeHint() const override { return segmentedSize(m_titles).toSize(); }

Q_SIGNALS:
    void chosenByUser(qsizetype index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    class Segment;

    Look m_look;
    QStringList m_titles;
    std::vector<Segment*> m_segments;
};

} // namespace quillet
