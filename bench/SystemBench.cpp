#include "FigureTable.h"
#include "StatsFigures.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    using namespace quillet;
    const QCoreApplication application(argc, argv);
    FigureTable table;
    measureStatistics(table);
    return table.allWithinLimits() ? 0 : 1;
}
