#include "support/DesktopSession.h"

#include <gtest/gtest.h>
#include <QApplication>

/// The tests are a program on a desktop of their own, so they run as a second process that is
/// started there.
int main(int argc, char** argv) {
    static constexpr const char* inside = "QUILLET_INPUT_TEST";
    testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsSet(inside)) {
        const QApplication application(argc, argv);
        return RUN_ALL_TESTS();
    }
    const QCoreApplication application(argc, argv);
    quillet::DesktopSession desktop(
        qEnvironmentVariable("QUILLET_WINDOW_MANAGER", QStringLiteral("openbox")));
    const QString filter = QString::fromStdString(GTEST_FLAG_GET(filter));
    const auto tests = desktop.start(QCoreApplication::applicationFilePath(),
                                     {QStringLiteral("--gtest_filter=") + filter},
                                     {QString::fromLatin1(inside) + QStringLiteral("=1")});
    tests->waitForFinished(-1);
    const QByteArray output = tests->readAllStandardOutput() + tests->readAllStandardError();
    std::fwrite(output.constData(), 1, static_cast<size_t>(output.size()), stdout);
    return tests->exitStatus() == QProcess::NormalExit ? tests->exitCode() : 1;
}
