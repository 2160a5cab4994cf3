#pragma once

#include "platform/Workspace.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every Workspace promises. A Backend has
/// - `workspace()`, on a desktop without any application yet;
/// - `showApplication(bundleID)`: such an application opens a window and gets the attention;
/// - `closeApplication(bundleID)`: all its windows are gone;
/// - `waitFor(condition)`: gives all that is under way the time to arrive; whether it did.
template<typename Backend>
class WorkspaceContract : public testing::Test {
protected:
    QString frontmostID() {
        const auto application = backend.workspace().frontmost();
        return application ? application->bundleID : QString();
    }

    bool becomesFrontmost(const QString& bundleID) {
        return backend.waitFor([&] { return frontmostID() == bundleID; });
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(WorkspaceContract);

TYPED_TEST_P(WorkspaceContract, theFrontmostApplicationFollowsTheAttentionAndOutlastsItsWindows) {
    const QString editor = QStringLiteral("editor");
    const QString browser = QStringLiteral("browser");
    EXPECT_EQ(this->backend.workspace().frontmost(), std::nullopt);
    this->backend.showApplication(editor);
    EXPECT_TRUE(this->becomesFrontmost(editor));
    const RunningApplication first = *this->backend.workspace().frontmost();
    this->backend.showApplication(browser);
    EXPECT_TRUE(this->becomesFrontmost(browser));

    EXPECT_TRUE(this->backend.workspace().activate(first));
    EXPECT_TRUE(this->becomesFrontmost(editor));
    this->backend.closeApplication(browser);
    this->backend.closeApplication(editor);
    EXPECT_TRUE(this->becomesFrontmost(editor));
    EXPECT_TRUE(this->backend.waitFor([&] { return !this->backend.workspace().activate(first); }));
    EXPECT_EQ(this->backend.workspace().applicationName(editor), std::nullopt) << "not installed";
    EXPECT_TRUE(this->backend.workspace().icon(QStringLiteral("/no/such.desktop"), 32).isNull());
}

REGISTER_TYPED_TEST_SUITE_P(WorkspaceContract,
                            theFrontmostApplicationFollowsTheAttentionAndOutlastsItsWindows);

} // namespace quillet
