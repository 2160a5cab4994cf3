#pragma once

#include "platform/Pasteboard.h"

#include <map>
#include <optional>

namespace quillet {

/// A pasteboard with scripted neighbours: other programs that copy, answer slowly or not at all,
/// quit, and paste what we offer.
class MemoryPasteboard : public Pasteboard {
public:
    using Outcome = PasteboardReading::Outcome;
    struct Item {
        QString type;
        QByteArray bytes;
    };

    qint64 changeCount() const override { return m_changeCount; }
    QStringList types() const override { return m_types; }
    void read(const QString& type, qint64 maxBytes, Completion completion) override;
    bool write(PasteboardContents contents) override;
    bool keep(PasteboardContents contents) override;
    void handOver() override { m_wasHandedOver = m_owner == Owner::us; }

    /// Another program copies these, in this order.
    void copyFrom(std::vector<Item> items);
    void copyText(const QString& text);

    /// The owning program quits and its content goes with it.
    void ownerQuits();

    /// The owning program, about to quit, asks for its content to be kept. Whether we agree.
    bool askToSave() const { return !mayOutliveOwner || mayOutliveOwner(); }

    /// Reads are answered at releaseReads() instead of inline.
    void holdReads() { m_holding = true; }
    void releaseReads();

    /// Reads of `type` end this way for as long as the present content stands.
    void failReads(const QString& type, Outcome outcome) { m_failures[type] = outcome; }

    /// The desktop grants no ownership to us from now on, or does again.
    void setGrantsOwnership(bool grants) { m_grantsOwnership = grants; }

    /// What another program that pastes gets; absent where the type is not on offer.
    std::optional<QByteArray> bytes(const QString& type) const;

    /// The plain text on the pasteboard; null where there is none.
    QString text() const;

    bool isOwnedByUs() const { return m_owner == Owner::us; }

    /// Whether our content outlives us.
    bool wasHandedOver() const { return m_wasHandedOver; }

    /// Every type that read() was asked for, in order.
    const QStringList& typesRead() const { return m_typesRead; }

private:
    enum class Owner { none, us, other };
    struct PendingRead {
        QString type;
        qint64 maxBytes = 0;
        Completion completion;
    };

    void replace(PasteboardContents contents, Owner owner);
    void cancelReads();
    PasteboardReading answer(const QString& type, qint64 maxBytes) const;

    bool m_wasHandedOver = false;
    qint64 m_changeCount = 0;
    QStringList m_types;
    PasteboardContents m_contents;
    Owner m_owner = Owner::none;
    bool m_grantsOwnership = true;
    bool m_holding = false;
    std::vector<PendingRead> m_pending;
    std::map<QString, Outcome> m_failures;
    QStringList m_typesRead;
};

} // namespace quillet
