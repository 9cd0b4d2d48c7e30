// Random schedules of transfers against the local cluster: `transfer_schedules --help`.

#include "tests/transfers/local_cluster.h"
#include "tests/transfers/schedule.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QGuiApplication>

#include <cstdio>

using namespace corvane::tests;
using namespace Qt::StringLiterals;

namespace {

void print(const QString &line)
{
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Runs random schedules of transfers against a local cluster of its own. Each has a "
        u"number, "
        u"its seed, and always runs the same. Ends with status 1 if one of them ends in a second "
        u"payment, in one that was not shown, or in an untrue word."_s);
    parser.addHelpOption();
    parser.addOptions({
        {u"node"_s, u"The program node."_s, u"path"_s, u"node"_s},
        {u"cluster"_s, u"The folder of the local cluster."_s, u"path"_s, u"tools/localnet"_s},
        {u"schedules"_s, u"How many to run, from the first seed on."_s, u"n"_s, u"200"_s},
        {u"first"_s, u"The first seed."_s, u"n"_s, u"1"_s},
        {u"seed"_s, u"Run one schedule and print what happens in it."_s, u"n"_s},
    });
    parser.process(application);

    const bool isOne = parser.isSet(u"seed"_s);
    const auto first = parser.value(isOne ? u"seed"_s : u"first"_s).toULongLong();
    const auto count = isOne ? 1 : parser.value(u"schedules"_s).toULongLong();
    LocalCluster cluster(parser.value(u"node"_s), parser.value(u"cluster"_s));
    QElapsedTimer timer;
    timer.start();
    std::size_t failed = 0;
    std::size_t payments = 0;
    for (auto seed = first; seed < first + count; ++seed) {
        Schedule schedule(cluster, seed);
        const QStringList complaints = schedule.run();
        payments += schedule.payments();
        if (isOne) {
            print(schedule.journal().join(u'\n'));
        }
        if (!complaints.isEmpty()) {
            ++failed;
            print(u"seed %1: %2"_s.arg(seed).arg(complaints.join(u"; "_s)));
        }
    }
    print(u"%1 schedules, %2 payments, %3 failed, %4 s"_s.arg(count).arg(payments).arg(failed).arg(
        static_cast<double>(timer.elapsed()) / 1000, 0, 'f', 1));
    return failed == 0 && payments > 0 ? 0 : 1;
}
