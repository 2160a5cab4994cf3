#include <gmock/gmock.h>
#include <QApplication>
#include <QTemporaryFile>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_SCALE_FACTOR", "2"); // pictures are those of a sharp screen
    QTemporaryFile screens;          // the second one is low
    if (!screens.open())
        return 1;
    screens.write(R"({"screens": [
        {"name": "1", "x": 0, "y": 0, "width": 2880, "height": 1800},
        {"name": "2", "x": 2880, "y": 0, "width": 2048, "height": 1080}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
