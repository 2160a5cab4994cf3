#pragma once

#include "support/DesktopSession.h"
#include "support/Eventually.h"
#include "support/FakeApplication.h"
#include "support/FakeOwner.h"
#include "support/FakeRequestor.h"
#include "support/QuilletProcess.h"

#include <gmock/gmock.h>

namespace quillet {

/// Quillet at work on a desktop with real programs. One session serves all tests of a program;
/// every test has a Quillet and a home of its own.
class ClipboardDesktop : public testing::Test {
protected:
    static void SetUpTestSuite() { startSession(std::make_unique<DesktopSession>()); }
    static void TearDownTestSuite() { s_session.reset(); }
    void SetUp() override { session().renewHome(); }

    static void startSession(std::unique_ptr<DesktopSession> own) { s_session = std::move(own); }
    static DesktopSession& session() { return *s_session; }
    static const QByteArray& display() { return s_session->display(); }

    static ProcessHandle copy(const QByteArray& bytes,
                              const QString& target = QStringLiteral("UTF8_STRING")) {
        return s_session->copy(bytes, target);
    }

    /// Gives the last copy longer than it needs to be noticed; ends early when it is recorded.
    void letItBeNoticed();

    /// What the history holds when a copy that must leave no trace has had its time, and a later
    /// one has shown that copies are still recorded. Such markers are left out.
    std::vector<std::string> historyAfterMarker();

    /// The history once its newest clip reads so, or as it is when it never comes to that.
    std::vector<std::string>
    historyOnceNewestIs(const std::string& text,
                        std::chrono::milliseconds deadline = std::chrono::seconds(5));

    /// Puts a clip back on the clipboard.
    void copyBack(int position, const QStringList& options = {});

    QuilletProcess quillet{session(), QStringLiteral(QUILLET_PROGRAM)};

private:
    inline static std::unique_ptr<DesktopSession> s_session;
};

/// A text under the targets that programs commonly offer it with.
std::vector<Offer> textOffers(const QByteArray& text);

} // namespace quillet
