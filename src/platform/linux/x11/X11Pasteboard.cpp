#include "platform/linux/x11/X11Pasteboard.h"

#include <algorithm>
#include <cstring>
#include <QEventLoop>
#include <QLoggingCategory>
#include <xcb/xfixes.h>

namespace quillet {

namespace {

Q_LOGGING_CATEGORY(logPasteboard, "quillet.pasteboard", QtWarningMsg)

constexpr Scheduler::Duration deadline{10'000};
constexpr Scheduler::Duration handOverDeadline{3'000};
constexpr qint64 largestTargetList = 256 * 1024;
constexpr qint64 largestHint = 1024;
const QByteArray passwordHint = "x-kde-passwordManagerHint";

} // namespace

using Outcome = PasteboardReading::Outcome;

X11Pasteboard::X11Pasteboard(X11Connection& connection, Scheduler& scheduler)
    : m_connection(connection),
      m_scheduler(scheduler),
      m_clipboard(connection.atom("CLIPBOARD")),
      m_reader(connection, scheduler),
      m_owner(connection, scheduler, m_clipboard),
      m_manager(connection, m_reader, m_clipboard),
      m_listening(connection.listen([this](const auto& event) { handle(event); })) {
    m_manager.offeredTargets = [this] { return m_targets; };
    m_manager.maySave = [this] {
        using Verdict = X11ClipboardManager::Verdict;
        if (m_inspecting)
            return Verdict::notYet;
        return !mayOutliveOwner || mayOutliveOwner() ? Verdict::save : Verdict::refuse;
    };
    xcb_xfixes_select_selection_input(connection.xcb(), m_owner.window(), m_clipboard,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    inspect();
}

void X11Pasteboard::read(const QString& type, qint64 maxBytes, Completion completion) {
    const auto reading =
        std::make_shared<Reading>(Reading{type, maxBytes, std::move(completion), {}});
    m_readings.push_back(reading);
    if (!m_types.contains(type)) {
        complete(reading, {Outcome::absent, {}});
    } else if (m_owner.answers()) {
        readFromMemory(reading);
    } else {
        reading->sources = X11Targets::sources(type, m_targets);
        readNextSource(reading);
    }
}

bool X11Pasteboard::write(PasteboardContents contents) {
    cancelReadings();
    m_isBaseline = false;
    m_inspecting = false;
    m_types.clear();
    for (const PasteboardContent& content : contents)
        m_types.append(content.type);
    m_awaitingOwnEvent = true;
    ++m_changeCount;
    const bool isTaken = m_owner.take(X11Targets::answers(contents));
    if (onChange)
        onChange();
    return isTaken;
}

bool X11Pasteboard::keep(PasteboardContents contents) {
    if (!m_owner.takeIfFree(X11Targets::answers(contents), m_ownedSince))
        return false;
    m_awaitingOwnEvent = true;
    return true;
}

void X11Pasteboard::handOver() {
    if (!m_owner.answers() || m_manager.isActive())
        return;
    QEventLoop untilTaken;
    m_reader.read({m_connection.atom("CLIPBOARD_MANAGER"), m_connection.atom("SAVE_TARGETS"),
                   XCB_CURRENT_TIME, 0, handOverDeadline},
                  [&untilTaken](const X11Delivery&) { untilTaken.quit(); });
    untilTaken.exec();
}

void X11Pasteboard::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != m_connection.xfixesEvent() + XCB_XFIXES_SELECTION_NOTIFY)
        return;
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection != m_clipboard)
        return;
    if (change.owner == m_owner.window()) {
        m_awaitingOwnEvent = false;
        m_owner.setOwnedSince(change.selection_timestamp);
    } else if (!m_awaitingOwnEvent) {
        if (change.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER)
            ownerChanged(change.owner, change.selection_timestamp);
        else
            ownerGone();
    }
}

void X11Pasteboard::ownerChanged(xcb_window_t owner, xcb_timestamp_t since) {
    m_owner.release();
    cancelReadings();
    m_isBaseline = false;
    m_ownedSince = since;
    if (owner != XCB_WINDOW_NONE) {
        inspect();
        return;
    }
    m_targets.clear();
    finishInspection();
}

void X11Pasteboard::ownerGone() {
    const std::vector<SharedReading> interrupted = std::exchange(m_readings, {});
    m_reader.endAll(m_clipboard, Outcome::absent, X11SelectionReader::Owner::gone);
    X11SelectionOwner::Answers saved = m_manager.takeSaved();
    if (!saved.empty())
        m_awaitingOwnEvent = m_owner.takeIfFree(std::move(saved), m_ownedSince);
    else if (onOwnerGone)
        onOwnerGone();
    m_readings = interrupted;
    for (const SharedReading& reading : interrupted)
        readFromMemory(reading);
}

/// Asks the owner what it offers; ends in finishInspection() unless a newer owner comes.
void X11Pasteboard::inspect() {
    m_inspecting = true;
    request("TARGETS", largestTargetList,
            [this](const X11Delivery& delivery) { learnTargets(delivery); });
}

void X11Pasteboard::learnTargets(const X11Delivery& delivery) {
    m_targets.clear();
    switch (delivery.outcome) {
    case Outcome::cancelled:
        return;
    case Outcome::absent:
        // The simplest programs offer text and answer nothing else.
        if (!m_isBaseline)
            m_targets = {"UTF8_STRING", "STRING"};
        break;
    case Outcome::data: {
        if (delivery.format != 32)
            break;
        std::vector<xcb_atom_t> atoms(static_cast<size_t>(delivery.bytes.size()) / 4);
        std::memcpy(atoms.data(), delivery.bytes.constData(), atoms.size() * 4);
        m_targets = m_connection.atomNames(atoms);
        break;
    }
    case Outcome::tooLarge:
    case Outcome::timedOut:
        qCWarning(logPasteboard, "a copy was not looked at: its owner does not say what it is");
    }
    if (m_targets.contains(passwordHint))
        readHint();
    else
        finishInspection();
}

void X11Pasteboard::readHint() {
    request(passwordHint, largestHint, [this](const X11Delivery& delivery) {
        if (delivery.outcome == Outcome::cancelled)
            return;
        // A hint that cannot be read is taken for the cautious one. Some programs send the NUL
        // that ends the word with it.
        const bool isReadable = delivery.outcome == Outcome::data && delivery.format == 8;
        const QByteArray word = delivery.bytes.split('\0').value(0).trimmed();
        if (!isReadable || word.toLower() == "secret")
            m_targets.append(PasteboardType::concealed.toLatin1());
        finishInspection();
    });
}

void X11Pasteboard::finishInspection() {
    m_inspecting = false;
    m_types = X11Targets::types(m_targets);
    if (!m_isBaseline) {
        ++m_changeCount;
        if (onChange)
            onChange();
    }
    m_manager.reconsider();
}

/// Ends everything that asks the present owner for something.
void X11Pasteboard::cancelReadings() {
    const std::vector<SharedReading> running = m_readings;
    for (const SharedReading& reading : running)
        complete(reading, {Outcome::cancelled, {}});
    m_manager.forget();
    m_reader.endAll(m_clipboard, Outcome::cancelled, X11SelectionReader::Owner::stillThere);
}

bool X11Pasteboard::isRunning(const SharedReading& reading) const {
    return std::find(m_readings.begin(), m_readings.end(), reading) != m_readings.end();
}

void X11Pasteboard::readNextSource(const SharedReading& reading) {
    if (reading->sources.isEmpty()) {
        complete(reading, {Outcome::absent, {}});
        return;
    }
    const QByteArray target = reading->sources.takeFirst();
    request(target, reading->maxBytes, [this, reading, target](const X11Delivery& delivery) {
        if (!isRunning(reading))
            return;
        const bool isData = delivery.outcome == Outcome::data && delivery.format == 8;
        const bool isLatin1 = isData && reading->type == PasteboardType::string &&
                              delivery.type == XCB_ATOM_STRING && !delivery.bytes.isValidUtf8();
        if (isData && delivery.type == m_connection.atom("COMPOUND_TEXT"))
            readNextSource(reading); // an encoding that nobody reads any more
        else if (isData)
            decode(reading, isLatin1 ? QByteArray("STRING") : target, delivery.bytes);
        else if (delivery.outcome == Outcome::absent || delivery.outcome == Outcome::data)
            readNextSource(reading);
        else
            complete(reading, {delivery.outcome, {}});
    });
}

void X11Pasteboard::readFromMemory(const SharedReading& reading) {
    if (!m_owner.answers()) {
        complete(reading, {Outcome::absent, {}});
        return;
    }
    QList<QByteArray> targets;
    for (const auto& answer : *m_owner.answers())
        targets.append(answer.target);
    const QByteArray source = X11Targets::sources(reading->type, targets).value(0);
    const auto answer = std::find_if(m_owner.answers()->begin(), m_owner.answers()->end(),
                                     [&](const auto& a) { return a.target == source; });
    const QByteArray bytes = answer == m_owner.answers()->end() ? QByteArray() : answer->bytes();
    if (bytes.isNull())
        complete(reading, {Outcome::absent, {}});
    else if (bytes.size() > reading->maxBytes)
        complete(reading, {Outcome::tooLarge, {}});
    else
        decode(reading, source, bytes);
}

void X11Pasteboard::decode(const SharedReading& reading, const QByteArray& target,
                           QByteArray bytes) {
    const auto finish = [this, reading](std::optional<QByteArray> decoded) {
        const Outcome outcome = decoded ? Outcome::data : Outcome::absent;
        complete(reading, {outcome, std::move(decoded).value_or(QByteArray())});
    };
    if (!X11Targets::decodesPicture(reading->type, target)) {
        finish(X11Targets::decode(reading->type, target, std::move(bytes)));
        return;
    }
    const auto decoded = std::make_shared<std::optional<QByteArray>>();
    m_scheduler.background([decoded, type = reading->type, target,
                            bytes] { *decoded = X11Targets::decode(type, target, bytes); },
                           m_alive([finish, decoded] { finish(std::move(*decoded)); }));
}

void X11Pasteboard::complete(const SharedReading& reading, PasteboardReading result) {
    if (std::erase(m_readings, reading) > 0)
        reading->completion(std::move(result));
}

void X11Pasteboard::request(const QByteArray& target, qint64 maxBytes,
                            X11SelectionReader::Completion completion) {
    m_reader.read({m_clipboard, m_connection.atom(target), m_ownedSince, maxBytes, deadline},
                  std::move(completion));
}

} // namespace quillet
