#include "support/FakeOwner.h"

#include <algorithm>
#include <numeric>
#include <sys/eventfd.h>
#include <unistd.h>

namespace quillet {

FakeOwner::FakeOwner(const QByteArray& display) : m_wakeUp(eventfd(0, EFD_CLOEXEC)) {
    std::promise<bool> connected;
    m_thread = std::thread([this, display, &connected] { serve(display, connected); });
    if (!connected.get_future().get())
        qFatal("no X server for a fake owner");
}

FakeOwner::~FakeOwner() {
    die();
    close(m_wakeUp);
}

void FakeOwner::die() {
    m_alive = false;
    eventfd_write(m_wakeUp, 1);
    if (m_thread.joinable())
        m_thread.join();
}

void FakeOwner::own(std::vector<Offer> offers, xcb_timestamp_t since) {
    perform([this, &offers, since] {
        m_offers = std::move(offers);
        takeClipboard(since);
    });
}

xcb_timestamp_t FakeOwner::now() {
    xcb_timestamp_t time = XCB_CURRENT_TIME;
    perform([this, &time] { time = m_client->serverTime(); });
    return time;
}

int FakeOwner::requests(const QByteArray& target) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_requests.find(target);
    return found == m_requests.end() ? 0 : found->second;
}

int FakeOwner::payloadRequests() const {
    const std::lock_guard lock(m_mutex);
    return std::accumulate(m_requests.begin(), m_requests.end(), 0, [](int sum, const auto& entry) {
        const bool payload = entry.first != "TARGETS" && entry.first != "TIMESTAMP";
        return sum + (payload ? entry.second : 0);
    });
}

bool FakeOwner::ownsClipboard() {
    bool owns = false;
    perform([&] {
        owns = m_client->selectionOwner(m_client->atom("CLIPBOARD")) == m_client->window();
    });
    return owns;
}

bool FakeOwner::handOver(const std::vector<QByteArray>& targets) {
    std::promise<bool> stored;
    perform([&] {
        m_handOver = &stored;
        const xcb_atom_t property = m_client->atom("QUILLET_TEST_SAVE");
        xcb_delete_property(m_client->connection(), m_client->window(), property);
        if (!targets.empty())
            m_client->setProperty(m_client->window(), property, XCB_ATOM_ATOM,
                                  m_client->atomList(targets), 32);
        xcb_convert_selection(m_client->connection(), m_client->window(),
                              m_client->atom("CLIPBOARD_MANAGER"), m_client->atom("SAVE_TARGETS"),
                              property, m_client->serverTime());
    });
    auto answer = stored.get_future();
    const bool inTime = answer.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
    if (!inTime)
        perform([this] { m_handOver = nullptr; });
    return inTime && answer.get();
}

void FakeOwner::perform(std::function<void()> command) {
    std::promise<void> done;
    {
        const std::lock_guard lock(m_mutex);
        m_commands.push_back([&] {
            command();
            done.set_value();
        });
    }
    eventfd_write(m_wakeUp, 1);
    done.get_future().wait();
}

void FakeOwner::serve(const QByteArray& display, std::promise<bool>& connected) {
    XClient client(display);
    m_client = &client;
    connected.set_value(client.connected());
    while (m_alive) {
        const auto event =
            client.wait([](const auto&) { return true; }, std::chrono::hours(1), m_wakeUp);
        if (event) {
            handle(*event);
            continue;
        }
        eventfd_t ignored = 0;
        eventfd_read(m_wakeUp, &ignored);
        std::vector<std::function<void()>> commands;
        {
            const std::lock_guard lock(m_mutex);
            commands.swap(m_commands);
        }
        for (const auto& command : commands)
            command();
    }
}

void FakeOwner::takeClipboard(xcb_timestamp_t since) {
    m_ownedSince = since == XCB_CURRENT_TIME ? m_client->serverTime() : since;
    const xcb_atom_t clipboard = m_client->atom("CLIPBOARD");
    xcb_set_selection_owner(m_client->connection(), m_client->window(), clipboard, m_ownedSince);
    m_client->selectionOwner(clipboard);
}

void FakeOwner::handle(const xcb_generic_event_t& event) {
    switch (eventType(event)) {
    case XCB_SELECTION_REQUEST:
        answer(eventAs<xcb_selection_request_event_t>(event));
        break;
    case XCB_SELECTION_NOTIFY:
        if (m_handOver != nullptr) {
            m_handOver->set_value(eventAs<xcb_selection_notify_event_t>(event).property !=
                                  XCB_ATOM_NONE);
            m_handOver = nullptr;
        }
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto& notify = eventAs<xcb_property_notify_event_t>(event);
        if (notify.state != XCB_PROPERTY_DELETE)
            break;
        const auto transfer =
            std::find_if(m_transfers.begin(), m_transfers.end(), [&](const Transfer& candidate) {
                return candidate.requestor == notify.window && candidate.property == notify.atom;
            });
        if (transfer != m_transfers.end())
            sendChunk(*transfer);
        break;
    }
    }
}

void FakeOwner::answer(const xcb_selection_request_event_t& request) {
    const QByteArray target = m_client->atomName(request.target);
    {
        const std::lock_guard lock(m_mutex);
        ++m_requests[target];
    }
    const xcb_atom_t property =
        request.property == XCB_ATOM_NONE ? request.target : request.property;
    const auto offered = std::find_if(m_offers.begin(), m_offers.end(),
                                      [&](const Offer& offer) { return offer.target == target; });

    bool delivered = true;
    if (offered != m_offers.end()) {
        std::this_thread::sleep_for(offered->pause);
        if (offered->manner == Offer::Manner::ignored)
            return;
        delivered = deliver(*offered, request, property);
    } else if (target == "TARGETS") {
        std::vector<QByteArray> names{"TARGETS", "TIMESTAMP"};
        for (const Offer& offer : m_offers)
            names.push_back(offer.target);
        m_client->setProperty(request.requestor, property, XCB_ATOM_ATOM, m_client->atomList(names),
                              32);
    } else if (target == "TIMESTAMP") {
        m_client->setProperty(
            request.requestor, property, XCB_ATOM_INTEGER,
            QByteArray(reinterpret_cast<const char*>(&m_ownedSince), sizeof m_ownedSince), 32);
    } else {
        delivered = false;
    }

    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = delivered ? property : xcb_atom_t{XCB_ATOM_NONE};
    // An event on the wire is 32 bytes, four more than this one's record.
    char wire[32] = {};
    std::copy_n(reinterpret_cast<const char*>(&notify), sizeof notify, wire);
    xcb_send_event(m_client->connection(), 0, request.requestor, 0, wire);
    xcb_flush(m_client->connection());
}

bool FakeOwner::deliver(const Offer& offer, const xcb_selection_request_event_t& request,
                        xcb_atom_t property) {
    switch (offer.manner) {
    case Offer::Manner::whole:
        m_client->setProperty(request.requestor, property, request.target, offer.bytes);
        return true;
    case Offer::Manner::incremental: {
        const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_client->connection(), request.requestor, XCB_CW_EVENT_MASK,
                                     &events);
        const auto size =
            offer.announced.value_or(static_cast<uint32_t>(offer.bytes.size() * offer.repeat));
        m_client->setProperty(request.requestor, property, m_client->atom("INCR"),
                              QByteArray(reinterpret_cast<const char*>(&size), sizeof size), 32);
        m_transfers.push_back({request.requestor, property, request.target, offer});
        return true;
    }
    case Offer::Manner::refused:
    case Offer::Manner::ignored:
        return false;
    }
    return false;
}

void FakeOwner::sendChunk(Transfer& transfer) {
    const Offer& offer = transfer.offer;
    std::this_thread::sleep_for(offer.pause);
    if (transfer.chunksSent++ >= offer.chunks) {
        switch (offer.ending) {
        case Offer::Ending::stalls:
            return;
        case Offer::Ending::dies:
            m_alive = false;
            return;
        case Offer::Ending::proper:
            transfer.sent = offer.bytes.size() * offer.repeat;
        }
    }
    const qint64 size = offer.bytes.size();
    const bool atEnd = transfer.sent >= size * offer.repeat;
    const QByteArray chunk =
        atEnd ? QByteArray() : offer.bytes.mid(transfer.sent % size, offer.chunk);
    transfer.sent += chunk.size();
    m_client->setProperty(transfer.requestor, transfer.property, transfer.type, chunk);
    if (atEnd)
        std::erase_if(m_transfers, [&](const Transfer& other) { return &other == &transfer; });
    xcb_flush(m_client->connection());
}

} // namespace quillet
