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

TYPED_TEST_P(CommandsContract, theEndAndTheWholeOutputAreToldOfWhateverEnds) {
    const auto ended = this->runScript("printf 'a b\\n'; echo oops >&2; exit 3");
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->exitCode, 3);
    EXPECT_EQ(ended->output, "a b\n");
    const auto killed = this->runScript("printf begun; kill -9 $$");
    ASSERT_TRUE(killed);
    EXPECT_EQ(killed->exitCode, -1);
    EXPECT_EQ(killed->output, "begun");
}

TYPED_TEST_P(CommandsContract, whatCannotBeStartedIsToldSo) {
    const QString missing = QStringLiteral("/no/such/program");
    const auto result = this->run(missing, {});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->exitCode, -1);
    EXPECT_FALSE(this->backend.commands->launch(missing, {}));
}

TYPED_TEST_P(CommandsContract, nothingIsToldOnceTheCommandsAreGone) {
    bool told = false;
    this->backend.commands->run(QStringLiteral("/bin/sh"),
                                {QStringLiteral("-c"), QStringLiteral("exit 0")},
                                [&](const CommandResult&) { told = true; });
    this->backend.commands.reset();
    this->backend.waitFor([&] { return told; });
    EXPECT_FALSE(told);
}

REGISTER_TYPED_TEST_SUITE_P(CommandsContract, theEndAndTheWholeOutputAreToldOfWhateverEnds,
                            whatCannotBeStartedIsToldSo, nothingIsToldOnceTheCommandsAreGone);

} // namespace quillet
