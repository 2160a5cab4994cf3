#include <gmock/gmock.h>
#include <QApplication>
#include <QtGlobal>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("TZ", "Europe/Berlin"); // has a daylight saving time
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
