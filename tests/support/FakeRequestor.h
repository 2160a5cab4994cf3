#pragma once

#include "support/XClient.h"

namespace quillet {

/// A program that reads the clipboard by the letter of the protocol, from the calling thread.
/// Destroying it in the middle of a transfer is a program that dies there.
class FakeRequestor {
public:
    static constexpr std::chrono::seconds patience{10};

    explicit FakeRequestor(const QByteArray& display) : m_client(display) {}

    /// The content under `target`; none when it was refused or broke off.
    std::optional<QByteArray> read(const QByteArray& target,
                                   const QByteArray& selection = "CLIPBOARD");

    /// The targets on offer; empty when nobody answers.
    std::vector<QByteArray> targets();

    /// Several targets in one request, in their order; none for those that were refused.
    std::vector<std::optional<QByteArray>> readTogether(const std::vector<QByteArray>& targets);

    /// Reads until at least `bytes` have come by an incremental transfer, then leaves it there.
    bool readPartOf(const QByteArray& target, qint64 bytes);

    /// Whether the last read came in pieces.
    bool wasIncremental() const { return m_incremental; }

private:
    bool convert(xcb_atom_t selection, xcb_atom_t target);
    std::optional<QByteArray> collect(xcb_atom_t property, qint64 enough);

    XClient m_client;
    bool m_incremental = false;
};

} // namespace quillet
