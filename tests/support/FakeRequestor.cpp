#include "support/FakeRequestor.h"

#include <climits>

namespace quillet {

namespace {

constexpr char transferProperty[] = "QUILLET_TEST_TRANSFER";

QByteArray propertyFor(size_t position) {
    return QByteArray(transferProperty) + '_' +
           QByteArray::number(static_cast<qulonglong>(position));
}

} // namespace

std::optional<QByteArray> FakeRequestor::read(const QByteArray& target,
                                              const QByteArray& selection) {
    if (!convert(m_client.atom(selection), m_client.atom(target)))
        return std::nullopt;
    return collect(m_client.atom(transferProperty), LLONG_MAX);
}

std::vector<QByteArray> FakeRequestor::targets() {
    return m_client.atomNames(read("TARGETS").value_or(QByteArray()));
}

std::vector<std::optional<QByteArray>>
FakeRequestor::readTogether(const std::vector<QByteArray>& targets) {
    std::vector<QByteArray> pairs;
    for (const QByteArray& target : targets) {
        pairs.push_back(target);
        pairs.push_back(propertyFor(pairs.size()));
    }
    m_client.setProperty(m_client.window(), m_client.atom(transferProperty),
                         m_client.atom("ATOM_PAIR"), m_client.atomList(pairs), 32);

    std::vector<std::optional<QByteArray>> contents(targets.size());
    if (!convert(m_client.atom("CLIPBOARD"), m_client.atom("MULTIPLE")))
        return contents;
    // A refused target has lost its property's name in the list that comes back.
    const auto answer = m_client.property(m_client.window(), m_client.atom(transferProperty));
    const auto* answered = reinterpret_cast<const xcb_atom_t*>(answer.bytes.constData());
    for (size_t i = 0; i < targets.size(); ++i) {
        const size_t position = 2 * i + 1;
        const bool listed =
            static_cast<size_t>(answer.bytes.size()) >= (position + 1) * sizeof(xcb_atom_t);
        if (listed && answered[position] != XCB_ATOM_NONE)
            contents[i] = collect(answered[position], LLONG_MAX);
    }
    return contents;
}

bool FakeRequestor::readPartOf(const QByteArray& target, qint64 bytes) {
    if (!convert(m_client.atom("CLIPBOARD"), m_client.atom(target)))
        return false;
    const auto part = collect(m_client.atom(transferProperty), bytes);
    return m_incremental && part && part->size() >= bytes;
}

bool FakeRequestor::convert(xcb_atom_t selection, xcb_atom_t target) {
    xcb_convert_selection(m_client.connection(), m_client.window(), selection, target,
                          m_client.atom(transferProperty), m_client.serverTime());
    const auto notify = m_client.wait(
        [&](const xcb_generic_event_t& event) {
            return eventType(event) == XCB_SELECTION_NOTIFY &&
                   eventAs<xcb_selection_notify_event_t>(event).target == target;
        },
        patience);
    return notify && eventAs<xcb_selection_notify_event_t>(*notify).property != XCB_ATOM_NONE;
}

std::optional<QByteArray> FakeRequestor::collect(xcb_atom_t property, qint64 enough) {
    const auto isNewValue = [&](const xcb_generic_event_t& event) {
        return eventType(event) == XCB_PROPERTY_NOTIFY &&
               eventAs<xcb_property_notify_event_t>(event).atom == property &&
               eventAs<xcb_property_notify_event_t>(event).state == XCB_PROPERTY_NEW_VALUE;
    };
    // The owner's own write of this property is announced before the answer to the request.
    while (m_client.wait(isNewValue, std::chrono::milliseconds(0))) {
    }
    auto first = m_client.property(m_client.window(), property, true);
    m_incremental = first.type == m_client.atom("INCR");
    if (!m_incremental)
        return first.bytes;

    QByteArray content;
    while (content.size() < enough) {
        if (!m_client.wait(isNewValue, patience))
            return std::nullopt;
        const auto chunk = m_client.property(m_client.window(), property, true);
        if (chunk.bytes.isEmpty())
            return content;
        content += chunk.bytes;
    }
    return content;
}

} // namespace quillet
