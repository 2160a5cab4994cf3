#pragma once

#include "platform/Alive.h"
#include "platform/linux/x11/X11ClipboardManager.h"
#include "platform/linux/x11/X11SelectionOwner.h"
#include "platform/linux/x11/X11SelectionReader.h"
#include "platform/Pasteboard.h"

namespace quillet {

/// The CLIPBOARD selection. Changes are told by XFixes; the other selections are not looked at.
///
/// A new owner is asked for its TARGETS and, where it lists one, for its password hint; then the
/// count rises. Content of ours is answered from memory. What a vanished program left behind is
/// served in its place when it asked for that or when the history has it.
class X11Pasteboard : public Pasteboard {
public:
    X11Pasteboard(X11Connection& connection, Scheduler& scheduler);

    qint64 changeCount() const override { return m_changeCount; }
    QStringList types() const override { return m_types; }
    void read(const QString& type, qint64 maxBytes, Completion completion) override;
    bool write(PasteboardContents contents) override;
    bool keep(PasteboardContents contents) override;
    void handOver() override;

    /// Whether programs that quit can leave their content with us.
    bool isClipboardManager() const { return m_manager.isActive(); }

private:
    /// A read of one type: its possible targets are tried until one delivers.
    struct Reading {
        QString type;
        qint64 maxBytes;
        Completion completion;
        QList<QByteArray> sources;
    };
    using SharedReading = std::shared_ptr<Reading>;

    void handle(const xcb_generic_event_t& event);
    void ownerChanged(xcb_window_t owner, xcb_timestamp_t since);
    void ownerGone();
    void inspect();
    void learnTargets(const X11Delivery& delivery);
    void readHint();
    void finishInspection();
    void cancelReadings();
    bool isRunning(const SharedReading& reading) const;
    void readNextSource(const SharedReading& reading);
    void decode(const SharedReading& reading, const QByteArray& target, QByteArray bytes);
    void complete(const SharedReading& reading, PasteboardReading result);
    void request(const QByteArray& target, qint64 maxBytes,
                 X11SelectionReader::Completion completion);
    void readFromMemory(const SharedReading& reading);

    X11Connection& m_connection;
    Scheduler& m_scheduler;
    xcb_atom_t m_clipboard;
    X11SelectionReader m_reader;
    X11SelectionOwner m_owner;
    X11ClipboardManager m_manager;
    qint64 m_changeCount = 0;
    QStringList m_types;
    QList<QByteArray> m_targets;
    xcb_timestamp_t m_ownedSince = XCB_CURRENT_TIME;
    bool m_inspecting = false;
    bool m_isBaseline = true;        ///< the content was there before us
    bool m_awaitingOwnEvent = false; ///< older events tell of owners before us
    std::vector<SharedReading> m_readings;
    X11Connection::Listening m_listening;
    Alive m_alive;
};

} // namespace quillet
