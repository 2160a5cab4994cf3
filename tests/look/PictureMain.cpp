#include <gmock/gmock.h>
#include <QApplication>
#include <QtGlobal>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("TZ", "Europe/Berlin");  // has a daylight saving time
    qputenv("QT_SCALE_FACTOR", "2"); // pictures are those of a sharp screen
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
