#include <gmock/gmock.h>
#include <QApplication>

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_SCALE_FACTOR", "2"); // pictures are those of a sharp screen
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
