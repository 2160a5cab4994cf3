#pragma once

#include <functional>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

namespace quillet {

/// Identifiers of the kinds of content a pasteboard holds. Content of any other kind, the private
/// markers among them, goes under the name its owner gave it.
namespace PasteboardType {
inline const QString fileURL = QStringLiteral("public.file-url"); ///< uri-list, RFC 2483
inline const QString png = QStringLiteral("public.png");
inline const QString tiff = QStringLiteral("public.tiff");
inline const QString string = QStringLiteral("public.utf8-plain-text"); ///< UTF-8, no BOM
inline const QString url = QStringLiteral("public.url");                ///< one URL, UTF-8
inline const QString concealed = QStringLiteral("org.nspasteboard.ConcealedType");
} // namespace PasteboardType

/// One type on its way to the pasteboard. `bytes` is called each time another program asks for the
/// content, possibly long after and on any thread, so it must hold all that it needs; a null byte
/// array (not an empty one) means that the content cannot be had.
struct PasteboardContent {
    QString type;
    std::function<QByteArray()> bytes;
};
using PasteboardContents = std::vector<PasteboardContent>;

/// What a read came to.
struct PasteboardReading {
    enum class Outcome {
        data,
        absent,   ///< the type is not there, or its owner would not or could not deliver it
        tooLarge, ///< more than the caller's cap; nothing of it is kept
        timedOut, ///< the owner did not finish in time
        cancelled ///< a newer change came first
    };
    Outcome outcome = Outcome::absent;
    QByteArray bytes;
};

/// The desktop's general clipboard. No call waits for another program, and no content is
/// transferred unless read() asks for it.
class Pasteboard {
public:
    using Completion = std::function<void(PasteboardReading)>;

    virtual ~Pasteboard() = default;

    /// Rises with every change, own writes included; never falls. It rises once types() is known
    /// for the new content.
    virtual qint64 changeCount() const = 0;

    /// The type identifiers on offer at the current change count, in the owner's order.
    virtual QStringList types() const = 0;

    /// Reads one type. `completion` runs exactly once, unless the pasteboard dies first: inside
    /// the call where the content is at hand, later where another program must deliver it. A
    /// newer change ends a running read with `cancelled` before the count rises.
    virtual void read(const QString& type, qint64 maxBytes, Completion completion) = 0;

    /// Clears the pasteboard and offers `contents` in one step. The count rises before the call
    /// returns. False where the desktop did not grant ownership; the count still rises.
    virtual bool write(PasteboardContents contents) = 0;

    /// Offers `contents` in place of what a program that is gone had offered. Changes neither the
    /// count nor types(). False, with no effect, when somebody owns the pasteboard.
    virtual bool keep(PasteboardContents contents) = 0;

    /// Leaves what we offer with whoever keeps the content of programs that end. Returns when it is
    /// taken, at once where nobody keeps anything, after three seconds at the latest; the event
    /// loop runs meanwhile.
    virtual void handOver() = 0;

    /// Called when changeCount() has risen; for an own write, before write() returns.
    std::function<void()> onChange;

    /// Called when the program that owned the current content is gone and the content with it.
    std::function<void()> onOwnerGone;

    /// Asked when a program about to quit wants its content kept for it. Absent means yes.
    std::function<bool()> mayOutliveOwner;
};

} // namespace quillet
