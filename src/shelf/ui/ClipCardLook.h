#pragma once

#include "app/look/Theme.h"
#include "clipboard/ClipItem.h"

#include <QImage>
#include <vector>

class QPainter;

namespace quillet {

/// All that one sees of a clip on its card.
struct ClipCardLook {
    struct File {
        QString name;
        QImage icon;
        bool operator==(const File&) const = default;
    };

    static constexpr QSizeF size{216, 236};
    static constexpr double cornerRadius = 14;

    ClipItem::Kind kind = ClipItem::Kind::text;
    QColor tint;                ///< of the application it comes from
    std::optional<QImage> icon; ///< of that application
    QString label;
    QString date;
    QString badge; ///< its shortcut; empty where it has none
    bool isPinned = false;

    QString text; ///< of texts, links and colours
    QString host; ///< of links
    QColor swatch;
    std::optional<QImage> thumbnail;
    std::vector<File> files; ///< those that have room
    qsizetype furtherFiles = 0;

    QString footer;
    double selection = 0; ///< 0 is not selected, 1 selected; between and beyond while it changes

    bool operator==(const ClipCardLook&) const = default;
};

/// Where the card shows in its place: one that is not selected is a little smaller.
QRectF clipCardFrame(const QRectF& place, double selection);

void paintClipCardShadow(QPainter& painter, const QRectF& place, double selection);
void paintClipCard(QPainter& painter, const QRectF& place, const ClipCardLook& look,
                   const ThemeColors& colors);

/// An application's colour, no lighter than white text needs it.
QColor clipCardBandColor(QColor tint);

} // namespace quillet
