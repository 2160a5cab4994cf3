#include "FigureTable.h"
#include "SnapFigures.h"
#include "StatsFigures.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    using namespace quillet;
    const QCoreApplication application(argc, argv);
    FigureTable table;
    measureSnapping(table);
    measureStatistics(table);
    return table.allWithinLimits() ? 0 : 1;
}
