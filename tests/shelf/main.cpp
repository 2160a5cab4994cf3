#include <gmock/gmock.h>
#include <QGuiApplication>
#include <QtGlobal>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("TZ", "Europe/Berlin"); // has a daylight saving time
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
