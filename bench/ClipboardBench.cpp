#include "FigureTable.h"
#include "support/DesktopSession.h"
#include "support/Eventually.h"
#include "support/FakeOwner.h"
#include "support/QuilletProcess.h"
#include "support/SamplePictures.h"
#include "support/StallProbe.h"

#include <algorithm>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QSet>

// What the clipboard history costs, measured from outside on the program itself at work on a
// desktop of its own.

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int smallTexts = 200;
constexpr int largeTexts = 10;
constexpr int screenshots = 30;
constexpr int largeScreenshots = 5;

const QString program = QStringLiteral(QUILLET_PROGRAM);

double mebibytes(const QuilletProcess& quillet, const QByteArray& figure) {
    return static_cast<double>(quillet.processFigure(u"smaps_rollup"_s, figure)) / 1024;
}

void startOrGiveUp(QuilletProcess& quillet) {
    if (!quillet.start())
        qFatal("%s does not start: %s", qPrintable(program), quillet.errors().constData());
}

/// Copies and waits until the content was fetched, without asking the program anything that would
/// cost it time. The time it has afterwards to record is part of what it is measured for.
void copyUnwatched(FakeOwner& owner, Offer offer) {
    const QByteArray target = offer.target;
    const int before = owner.requests(target);
    const qsizetype size = offer.bytes.size();
    owner.own({std::move(offer)});
    if (!eventually([&] { return owner.requests(target) > before; }, 10s))
        qFatal("a copy was not fetched");
    std::this_thread::sleep_for(size > 100'000 ? 1'000ms : 50ms);
}

/// Processor time per recorded copy.
double costOf(QuilletProcess& quillet, FakeOwner& owner, int count,
              const std::function<Offer(int)>& offer) {
    const auto clipsBefore = quillet.clips().size();
    const double before = quillet.processorMilliseconds();
    for (int i = 0; i < count; ++i)
        copyUnwatched(owner, offer(i));
    const double cost = (quillet.processorMilliseconds() - before) / count;
    if (quillet.clips().size() - clipsBefore != count)
        qFatal("of %d copies %d were recorded", count,
               static_cast<int>(quillet.clips().size() - clipsBefore));
    return cost;
}

Offer smallText(int number) {
    return {.target = "UTF8_STRING",
            .bytes = "a line of text as one copies it, number " + QByteArray::number(number)};
}

/// In pieces of the size that common programs use.
Offer inPieces(const QByteArray& target, QByteArray bytes) {
    return {.target = target,
            .bytes = std::move(bytes),
            .manner = Offer::Manner::incremental,
            .chunk = 1 << 20};
}

void measureStart(DesktopSession& session, FigureTable& table) {
    double best = 1e9;
    for (int i = 0; i < 5; ++i) {
        QuilletProcess quillet(session, program);
        const auto begin = Clock::now();
        startOrGiveUp(quillet);
        best = std::min(best, Milliseconds(Clock::now() - begin).count());
        quillet.quit();
    }
    table.add("start until ready, with the verb that asks", best, 300, "ms");
}

void measureCopies(DesktopSession& session, FigureTable& table, std::chrono::seconds quiet) {
    session.renewHome();
    QuilletProcess quillet(session, program);
    startOrGiveUp(quillet);
    FakeOwner owner(session.display());

    const double memoryBefore = mebibytes(quillet, "Pss:");
    const double ownMemoryBefore = mebibytes(quillet, "Pss_Anon:");
    table.add("processor time per small text", costOf(quillet, owner, smallTexts, smallText), 2,
              "ms");
    const QByteArray screenshot = pngOf(sampleScreenshot({1920, 1080}));
    const auto numbered = [](const QByteArray& png, int number) {
        return inPieces("image/png", png + QByteArray::number(number));
    };
    costOf(quillet, owner, screenshots, [&](int i) { return numbered(screenshot, i); });
    // The first figure also moves when other programs begin or cease to share our libraries.
    table.add("memory after 200 texts and 30 pictures of 1920x1080",
              mebibytes(quillet, "Pss:") - memoryBefore, 4, "MiB more");
    table.add("of that its own", mebibytes(quillet, "Pss_Anon:") - ownMemoryBefore, 4, "MiB more");

    std::this_thread::sleep_for(5s);
    const double timeBefore = quillet.processorMilliseconds();
    const qint64 switchesBefore = quillet.contextSwitches();
    std::this_thread::sleep_for(quiet);
    table.add("wake-ups while nothing changes",
              static_cast<double>(quillet.contextSwitches() - switchesBefore), 0, "");
    table.add("processor time while nothing changes", quillet.processorMilliseconds() - timeBefore,
              0, "ms");

    const QByteArray tenMegabytes = QByteArray("ten megabytes of text\n").repeated(10'000'000 / 22);
    table.add("processor time per text of 10 MB",
              costOf(quillet, owner, largeTexts,
                     [&](int i) {
                         return inPieces("UTF8_STRING", tenMegabytes + QByteArray::number(i));
                     }),
              100, "ms");
    const QByteArray largeScreenshot = pngOf(sampleScreenshot({3840, 2160}));
    table.add("processor time per picture of 3840x2160",
              costOf(quillet, owner, largeScreenshots,
                     [&](int i) { return numbered(largeScreenshot, i); }),
              100, "ms");
}

void measureStall(DesktopSession& session, FigureTable& table) {
    session.renewHome();
    QuilletProcess quillet(session, program);
    startOrGiveUp(quillet);
    double best = 1e9;
    int differing = 0;
    for (quint32 attempt = 0; attempt < 5; ++attempt) {
        const QByteArray png = pngOfSize(20 << 20, attempt);
        StallProbe probe(session.busAddress());
        const auto before = quillet.clips().size();
        const auto xclip = session.copy(png, u"image/png"_s);
        const bool recorded = eventually([&] { return quillet.clips().size() > before; }, 10s);
        best = std::min(best, Milliseconds(probe.longest()).count());
        differing += !recorded || quillet.content(1) != png;
    }
    table.addFaults("PNG of 20 MiB from xclip, not byte-exact", differing);
    table.add("longest stall while it comes in, best of 5", best, 50, "ms");
}

/// Copies and pins at full speed until the program is killed in the middle of it; remembers what
/// had been listed by then.
QSet<QString> stormUntilKilled(QuilletProcess& quillet, FakeOwner& owner, int round) {
    QSet<QString> listed;
    const auto end =
        Clock::now() + std::chrono::milliseconds(QRandomGenerator::global()->bounded(50, 2'500));
    for (int i = 0; Clock::now() < end; ++i) {
        const QByteArray name = QByteArray::number(round) + '.' + QByteArray::number(i);
        if (i % 4 == 3)
            owner.own({inPieces("image/png",
                                pngOfSize(300'000, static_cast<quint32>(round * 1'000 + i)))});
        else
            owner.own({{.target = "UTF8_STRING", .bytes = "storm " + name}});
        quillet.verb({u"clip"_s, u"pin"_s, u"1"_s});
        for (const auto& clip : quillet.clips())
            listed.insert(clip["id"_L1].toString());
    }
    quillet.kill();
    return listed;
}

void measureKills(DesktopSession& session, FigureTable& table, int kills) {
    session.renewHome();
    QuilletProcess quillet(session, program);
    FakeOwner owner(session.display());
    int failedStarts = 0;
    int missing = 0;
    int damaged = 0;
    QSet<QString> listed;
    quillet.writePreferences({{u"clipboard.maxItems"_s, 100'000}});
    startOrGiveUp(quillet);
    for (int round = 0; round < kills; ++round) {
        listed |= stormUntilKilled(quillet, owner, round);
        if (!quillet.start()) {
            ++failedStarts;
            continue;
        }
        QSet<QString> found;
        const QJsonArray clips = quillet.clips();
        for (const auto& clip : clips)
            found.insert(clip["id"_L1].toString());
        missing += static_cast<int>((listed - found).size());
        for (int i = 0; i < std::min<int>(3, static_cast<int>(clips.size())); ++i) {
            const auto hash =
                QCryptographicHash::hash(quillet.content(i + 1), QCryptographicHash::Sha256);
            damaged += QString::fromLatin1(hash.toHex()) != clips[i]["contentHash"_L1].toString();
        }
    }
    std::printf("%d kills, %d clips listed\n", kills, static_cast<int>(listed.size()));
    table.addFaults("starts that failed after a kill", failedStarts);
    table.addFaults("listed clips missing after a kill", missing);
    table.addFaults("clips with other content than their hash", damaged);
}

} // namespace
} // namespace quillet

int main(int argc, char** argv) {
    using namespace quillet;
    const QCoreApplication application(argc, argv);
    QCommandLineParser arguments;
    const QCommandLineOption quiet(u"quiet"_s, u"Length of the quiet time."_s, u"seconds"_s,
                                   u"60"_s);
    const QCommandLineOption kills(u"kills"_s, u"How often to kill it."_s, u"count"_s, u"100"_s);
    arguments.addHelpOption();
    arguments.addOptions({quiet, kills});
    arguments.process(application);

    const bool storeWithinLimits = QProcess::execute(QStringLiteral(QUILLET_STORE_BENCH), {}) == 0;
    FigureTable table;
    DesktopSession session;
    measureStart(session, table);
    measureStall(session, table);
    measureCopies(session, table, std::chrono::seconds(arguments.value(quiet).toInt()));
    measureKills(session, table, arguments.value(kills).toInt());
    return storeWithinLimits && table.allWithinLimits() ? 0 : 1;
}
