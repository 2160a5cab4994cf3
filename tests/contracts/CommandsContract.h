#pragma once

#include "platform/Commands.h"

#include <gtest/gtest.h>
#include <optional>

namespace quillet {

/// What every Commands promises. A Backend has `std::unique_ptr<Commands> commands`, on which
/// `/bin/sh -c SCRIPT` works for the scripts below, and `waitFor(condition)`, which gives programs
/// the time to end.
template<typename Backend>
class CommandsContract : public testing::Test {
protected:
    std::optional<CommandResult> run(const QString& program, const QStringList& arguments) {
        std::optional<CommandResult> result;
        backend.commands->run(program, arguments, [&](CommandResult end) {
            EXPECT_FALSE(result) << "told twice";
            result = std::move(end);
        });
        EXPECT_FALSE(result) << "told inside the call";
        backend.waitFor([&] { return result.has_value(); });
        return result;
    }

    std::optional<CommandResult> runScript(const char* script) {
        return run(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), QString::fromLatin1(script)});
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(CommandsContract);

TYPED_TEST_P(CommandsContract, theExitCodeAndTheWholeOutputAreTold) {
    const auto result = this->runScript("printf 'a b\\n'; echo oops >&2; exit 3");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->exitCode, 3);
    EXPECT_EQ(result->output, "a b\n");
}

TYPED_TEST_P(CommandsContract, aProgramThatCannotStartOrIsKilledEndsWithMinusOne) {
    const auto missing = this->run(QStringLiteral("/no/such/program"), {});
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->exitCode, -1);
    const auto killed = this->runScript("printf begun; kill -9 $$");
    ASSERT_TRUE(killed);
    EXPECT_EQ(killed->exitCode, -1);
    EXPECT_EQ(killed->output, "begun");
}

TYPED_TEST_P(CommandsContract, nothingIsToldOnceTheCommandsAreGone) {
    bool told = false;
    for (int i = 0; i < 3; ++i) {
        this->backend.commands->run(QStringLiteral("/bin/sh"),
                                    {QStringLiteral("-c"), QStringLiteral("exit 0")},
                                    [&](const CommandResult&) { told = true; });
    }
    this->backend.commands.reset();
    this->backend.waitFor([&] { return told; });
    EXPECT_FALSE(told);
}

TYPED_TEST_P(CommandsContract, whatCannotBeStartedIsNotLaunched) {
    Commands& commands = *this->backend.commands;
    EXPECT_TRUE(commands.launch(QStringLiteral("/bin/sh"),
                                {QStringLiteral("-c"), QStringLiteral("exit 0")}));
    EXPECT_FALSE(commands.launch(QStringLiteral("/no/such/program"), {}));
}

REGISTER_TYPED_TEST_SUITE_P(CommandsContract, theExitCodeAndTheWholeOutputAreTold,
                            whatCannotBeStartedIsNotLaunched,
                            aProgramThatCannotStartOrIsKilledEndsWithMinusOne,
                            nothingIsToldOnceTheCommandsAreGone);

} // namespace quillet
