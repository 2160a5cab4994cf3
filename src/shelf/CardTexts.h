#pragma once

#include "clipboard/ClipItem.h"

#include <QColor>
#include <QSize>

namespace quillet {

/// The word for an item's kind on its card.
QString kindLabel(ClipItem::Kind kind);

/// How long ago a date was, in its largest unit: "2 min. ago".
QString relativeDate(const QDateTime& date, const QDateTime& now);

/// The shortcut that pastes the card at a position of the row; empty from the tenth card on.
QString quickPasteBadge(int index);

/// Characters as a reader counts them: an emoji or a letter with its accents is one.
qint64 characterCount(const QString& text);

QString characterFooter(qint64 characters);
QString fileFooter(qsizetype files);
QString imageFooter(const std::optional<QSize>& pixels);

/// The host of a link; empty where it has none.
QString linkHost(const QString& link);

/// The colour a text like "#2F9E8F" names; absent where it names none.
std::optional<QColor> colorFromHex(const QString& text);

} // namespace quillet
