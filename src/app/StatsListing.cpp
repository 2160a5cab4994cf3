#include "app/StatsListing.h"

#include "stats/StatFormat.h"
#include "stats/StatsSampler.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

struct Row {
    QString title;
    QString value;
    int width; ///< of the widest value that is common
};

std::vector<Row> rows(const StatsSampler& stats) {
    std::vector<Row> rows{
        {u"CPU"_s, StatFormat::percent(stats.cpu()), 4},
        {u"Memory"_s,
         u"%1 of %2 GB"_s.arg(StatFormat::gibibytes(stats.memoryUsed()),
                              StatFormat::gibibytes(stats.memoryTotal())),
         15},
        {u"Down"_s, StatFormat::rate(stats.downBytesPerSec()), 10},
        {u"Up"_s, StatFormat::rate(stats.upBytesPerSec()), 10},
    };
    if (const auto percent = stats.battery()) {
        const QString charging = stats.charging() ? u", charging"_s : QString();
        rows.push_back({u"Battery"_s, u"%1%"_s.arg(*percent) + charging, 14});
    }
    return rows;
}

QByteArray asLine(const QString& text) {
    return text.trimmed().toUtf8() + '\n';
}

} // namespace

QByteArray statsAsJson(const StatsSampler& stats) {
    const auto battery = stats.battery();
    const QJsonObject object{{u"cpu"_s, stats.cpu()},
                             {u"memoryUsed"_s, static_cast<qint64>(stats.memoryUsed())},
                             {u"memoryTotal"_s, static_cast<qint64>(stats.memoryTotal())},
                             {u"downBytesPerSec"_s, stats.downBytesPerSec()},
                             {u"upBytesPerSec"_s, stats.upBytesPerSec()},
                             {u"battery"_s, battery ? QJsonValue(*battery) : QJsonValue()},
                             {u"charging"_s, battery && stats.charging()}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray statsAsTable(const StatsSampler& stats) {
    QByteArray table;
    for (const Row& row : rows(stats))
        table += asLine(row.title.leftJustified(9) + row.value);
    return table;
}

QByteArray statsAsLine(const StatsSampler& stats) {
    QString line;
    for (const Row& row : rows(stats))
        line += row.title + u' ' + row.value.leftJustified(row.width + 2);
    return asLine(line);
}

} // namespace quillet
