#include "platform/linux/x11/X11SelectionReader.h"

#include <algorithm>

namespace quillet {

using Outcome = PasteboardReading::Outcome;

namespace {

constexpr uint32_t sliceBytes = 1024 * 1024;

} // namespace

X11SelectionReader::X11SelectionReader(X11Connection& connection, Scheduler& scheduler)
    : m_connection(connection),
      m_scheduler(scheduler),
      m_window(connection.createHiddenWindow(XCB_EVENT_MASK_PROPERTY_CHANGE)),
      m_incr(connection.atom("INCR")),
      m_listening(connection.listen([this](const auto& event) { handle(event); })) {}

void X11SelectionReader::read(const Request& request, Completion completion) {
    Transfer& transfer = m_transfers.emplace_back();
    transfer.request = request;
    transfer.property = freeProperty();
    transfer.completion = std::move(completion);
    transfer.deadline = m_scheduler.after(
        request.deadline, [this, &transfer] { finish(transfer, Outcome::timedOut); });
    xcb_convert_selection(m_connection.xcb(), m_window, request.selection, request.target,
                          transfer.property, request.time);
    m_connection.flush();
}

void X11SelectionReader::endAll(xcb_atom_t selection, Outcome outcome, Owner owner) {
    for (auto it = m_transfers.begin(); it != m_transfers.end();) {
        const auto transfer = it++;
        if (transfer->request.selection != selection)
            continue;
        finish(*transfer, outcome);
        if (owner == Owner::gone) {
            xcb_delete_property(m_connection.xcb(), m_window, transfer->property);
            close(transfer);
        }
    }
}

void X11SelectionReader::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & ~0x80) {
    case XCB_SELECTION_NOTIFY:
        handleNotify(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
        break;
    }
}

void X11SelectionReader::handleNotify(const xcb_selection_notify_event_t& event) {
    if (event.requestor != m_window)
        return;
    const bool refused = event.property == XCB_ATOM_NONE;
    const auto isAnswered = [&](const Transfer& t) {
        return t.state == State::asked && t.request.selection == event.selection &&
               t.request.target == event.target && (refused || t.property == event.property);
    };
    auto transfer = std::find_if(m_transfers.begin(), m_transfers.end(), [&](const Transfer& t) {
        return isAnswered(t) && t.request.time == event.time;
    });
    if (transfer == m_transfers.end()) // not every owner repeats the time
        transfer = std::find_if(m_transfers.begin(), m_transfers.end(), isAnswered);
    if (transfer == m_transfers.end())
        return;
    if (refused) {
        finish(*transfer, Outcome::absent);
        close(transfer);
        return;
    }
    // Size and type first: what is too large is never fetched.
    const XcbOwned<xcb_get_property_reply_t> head(xcb_get_property_reply(
        m_connection.xcb(),
        xcb_get_property(m_connection.xcb(), 0, m_window, transfer->property, XCB_ATOM_ANY, 0, 0),
        nullptr));
    if (!head || head->type == XCB_ATOM_NONE) {
        finish(*transfer, Outcome::absent);
        close(transfer);
    } else if (head->type == m_incr) {
        startIncrements(transfer);
    } else {
        takeWhole(transfer, head->bytes_after);
    }
}

void X11SelectionReader::takeWhole(Transfers::iterator transfer, uint32_t size) {
    if (size > transfer->request.maxBytes) {
        xcb_delete_property(m_connection.xcb(), m_window, transfer->property);
        finish(*transfer, Outcome::tooLarge);
        close(transfer);
    } else {
        transfer->state = State::slicing;
        takeSlice(transfer);
    }
}

void X11SelectionReader::startIncrements(Transfers::iterator transfer) {
    // The announced size is a lower bound, if it can be trusted at all.
    const auto announced = m_connection.values(m_window, transfer->property, m_incr, 1);
    const qint64 atLeast = announced.empty() ? 0 : announced.front();
    if (atLeast > transfer->request.maxBytes) {
        // Nothing is sent before we delete the property, and we never do.
        finish(*transfer, Outcome::tooLarge);
        transfer->state = State::refused;
        return;
    }
    if (transfer->completion)
        transfer->delivery.bytes.reserve(atLeast);
    transfer->state = State::receiving;
    xcb_delete_property(m_connection.xcb(), m_window, transfer->property);
}

void X11SelectionReader::handleProperty(const xcb_property_notify_event_t& event) {
    if (event.window != m_window || event.state != XCB_PROPERTY_NEW_VALUE)
        return;
    const auto transfer = std::find_if(m_transfers.begin(), m_transfers.end(), [&](const auto& t) {
        return t.state == State::receiving && t.property == event.atom;
    });
    if (transfer == m_transfers.end())
        return;
    const XcbOwned<xcb_get_property_reply_t> head(xcb_get_property_reply(
        m_connection.xcb(),
        xcb_get_property(m_connection.xcb(), 0, m_window, transfer->property, XCB_ATOM_ANY, 0, 0),
        nullptr));
    // The event may be older than our deletion of what it tells of.
    if (head && head->type != XCB_ATOM_NONE)
        takeIncrement(transfer, head->bytes_after);
}

void X11SelectionReader::takeIncrement(Transfers::iterator transfer, uint32_t size) {
    if (size == 0) {
        xcb_delete_property(m_connection.xcb(), m_window, transfer->property);
        finish(*transfer, Outcome::data);
        close(transfer);
        return;
    }
    if (transfer->completion &&
        transfer->delivery.bytes.size() + qint64{size} > transfer->request.maxBytes)
        finish(*transfer, Outcome::tooLarge);
    if (!transfer->completion)
        xcb_delete_property(m_connection.xcb(), m_window, transfer->property);
    else
        takeSlice(transfer);
}

/// Moves the next part of the property to the delivery, and goes on in another turn of the event
/// loop: a property may hold as much as its owner likes.
void X11SelectionReader::takeSlice(Transfers::iterator transfer) {
    if (!transfer->completion) { // nobody waits any more
        xcb_delete_property(m_connection.xcb(), m_window, transfer->property);
        endSlices(transfer, Outcome::absent);
        return;
    }
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection.xcb(),
                               // The server deletes the property with its last part.
                               xcb_get_property(m_connection.xcb(), 1, m_window, transfer->property,
                                                XCB_ATOM_ANY, transfer->taken / 4, sliceBytes / 4),
                               nullptr));
    if (!reply) {
        endSlices(transfer, Outcome::absent);
        return;
    }
    const int size = xcb_get_property_value_length(reply.get());
    transfer->delivery.type = reply->type;
    transfer->delivery.format = reply->format;
    transfer->delivery.bytes.append(static_cast<const char*>(xcb_get_property_value(reply.get())),
                                    size);
    transfer->taken += static_cast<uint32_t>(size);
    if (reply->bytes_after == 0 || size == 0)
        endSlices(transfer, Outcome::data);
    else
        transfer->nextSlice =
            m_scheduler.after(Scheduler::Duration(0), [this, transfer] { takeSlice(transfer); });
}

/// A whole property is all there is; after an increment the next one is to come.
void X11SelectionReader::endSlices(Transfers::iterator transfer, Outcome outcome) {
    transfer->taken = 0;
    transfer->nextSlice.reset();
    if (transfer->state == State::slicing || outcome != Outcome::data)
        finish(*transfer, outcome);
    if (transfer->state == State::slicing)
        close(transfer);
}

void X11SelectionReader::finish(Transfer& transfer, Outcome outcome) {
    transfer.deadline.reset();
    X11Delivery delivery = std::exchange(transfer.delivery, {});
    delivery.outcome = outcome;
    if (outcome != Outcome::data)
        delivery.bytes.clear();
    if (const auto completion = std::exchange(transfer.completion, nullptr))
        completion(std::move(delivery));
}

void X11SelectionReader::close(Transfers::iterator transfer) {
    m_freeProperties.push_back(transfer->property);
    m_transfers.erase(transfer);
}

xcb_atom_t X11SelectionReader::freeProperty() {
    if (m_freeProperties.empty())
        return m_connection.atom("QUILLET_TRANSFER_" + QByteArray::number(m_propertyCount++));
    const xcb_atom_t property = m_freeProperties.back();
    m_freeProperties.pop_back();
    return property;
}

} // namespace quillet
