#pragma once

#include "platform/Pasteboard.h"

#include <optional>

namespace quillet {

/// How the pasteboard's types are called and written on X11, both ways. Target names follow the
/// conventions of the desktops: ICCCM for text, MIME types, and the file managers' own lists.
namespace X11Targets {

/// Whether a target tells about the selection (TARGETS, TIMESTAMP …) instead of its content.
bool isAboutTheSelection(const QByteArray& target);

/// The pasteboard types that a list of targets amounts to, in its order, without repetition.
/// Targets that stand for no type of ours keep their own names; those about the selection are
/// left out.
QStringList types(const QList<QByteArray>& targets);

/// The offered targets that can deliver a type, best first.
QList<QByteArray> sources(const QString& type, const QList<QByteArray>& offered);

/// What a target delivered, in the form its pasteboard type has; nothing where it is no such
/// thing. Any thread; takes a while for images in other formats than PNG and TIFF.
std::optional<QByteArray> decode(const QString& type, const QByteArray& target, QByteArray bytes);

/// Whether decode() converts pictures for this pair, which belongs off the main thread.
bool decodesPicture(const QString& type, const QByteArray& target);

/// One target that we answer.
struct Answer {
    QByteArray target;
    QByteArray type;                   ///< the property type, a name
    std::function<QByteArray()> bytes; ///< any thread; null bytes: refuse
};

/// All targets under which contents are offered.
std::vector<Answer> answers(const PasteboardContents& contents);

} // namespace X11Targets

} // namespace quillet
