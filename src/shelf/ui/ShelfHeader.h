#pragma once

#include "app/look/Buttons.h"
#include "app/look/SearchField.h"
#include "shelf/ShelfModel.h"

namespace quillet {

/// The top of the shelf: search field, filters, the keys one can use, and the close button. The
/// search field gets the keyboard each time the shelf is shown, and back as soon as somebody types
/// elsewhere. Its margins leave room for focus rings.
class ShelfHeader : public QWidget {
    Q_OBJECT

public:
    ShelfHeader(QWidget& parent, ShelfModel& model, const Look& look, Pasteboard& pasteboard,
                std::function<void()> onClose);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void addChip(ShelfModel& model, ShelfModel::Filter filter);

    Look m_look;
    SearchField* m_search;
    std::vector<Chip*> m_chips;
    SymbolButton* m_close;
};

} // namespace quillet
