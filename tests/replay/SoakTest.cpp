// SPDX-License-Identifier: GPL-3.0-or-later
// A long day: projects are opened one after the other, painted on, undone and redone, and closed.
// What they took comes back, and no file stays open. QUILLABRAE_SOAK_DAY=1 makes it a day of 10,000
// strokes, 500 runs of undo and redo and 200 openings; what the strokes took at its two ends is
// printed, in processor time, which other work on the machine changes less.
#include "replay/Runner.h"
#include "replay/Session.h"
#include "support/Sanitizer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <vector>

namespace quillabrae::replay {
namespace {

struct Day {
    int openings;
    int strokesEach;
    int undoRuns;
};

/// Of the day's project, decoded.
constexpr qint64 layersPixels = qint64{2} * 1000 * 800 * 4;

constexpr Day whole{200, 50, 500};
constexpr Day part{12, 10, 24};

qint64 residentBytes() {
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) return 0;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

qsizetype openFiles() {
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries)
        .size();
}

class Worker {
public:
    Worker() : m_session(SessionPlaces{m_home.path(), {}}) {
        run(R"({"do": "store.createUntitledProject", "width": 1000, "height": 800, "resolutionDPI": 96})");
        run(R"({"do": "store.addLayer"})");
        run(R"({"do": "store.saveProject", "at": 0, "to": {"url": "~/day.quillabrae", "format": "project"}})");
        run(R"({"do": "store.closeAllProjects"})");
    }

    void open() { run(R"({"do": "store.openProject", "at": "~/day.quillabrae"})"); }
    void close() { run(R"({"do": "store.closeAllProjects"})"); }

    /// Milliseconds of all threads from the press to the end of what the release causes.
    double stroke() {
        std::uniform_int_distribution across(0, 999);
        std::uniform_int_distribution down(0, 799);
        QJsonArray points;
        for (int point = 0; point < 6; ++point)
            points.append(QJsonArray{across(m_random), down(m_random)});
        const QJsonObject line{{QStringLiteral("do"), QStringLiteral("canvas.stroke")},
                               {QStringLiteral("points"), points}};
        run(R"({"do": "set", "selectedTool": "brush", "brushSize": 12})");
        const std::clock_t start = std::clock();
        m_session.runLine(line);
        QCoreApplication::processEvents();
        return static_cast<double>(std::clock() - start) * 1e3 / CLOCKS_PER_SEC;
    }

    void undoAndRedo(int steps) {
        for (int step = 0; step < steps; ++step)
            run(R"({"do": "store.undo", "projectID": "active"})");
        for (int step = 0; step < steps; ++step)
            run(R"({"do": "store.redo", "projectID": "active"})");
    }

private:
    void run(const char* line) {
        m_session.runLine(QJsonDocument::fromJson(line).object());
        QCoreApplication::processEvents();
    }

    QTemporaryDir m_home;
    Session m_session;
    Runner m_runner{m_session, AfterFailure::goOn};
    std::mt19937 m_random{11};
};

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values.empty() ? 0.0 : values[values.size() / 2];
}

/// So many values of either end of the day.
void tellLatency(const std::vector<double>& strokes, std::size_t count) {
    const auto size = static_cast<std::ptrdiff_t>(std::min(count, strokes.size()));
    const double first = median({strokes.begin(), strokes.begin() + size});
    const double last = median({strokes.end() - size, strokes.end()});
    std::printf("%zu strokes: the first %td take %.2f ms, the last %.2f ms (median)\n",
                strokes.size(), size, first, last);
}

TEST(Soak, ADayOfWorkGivesBackWhatItTook) {
    const Day day = qEnvironmentVariableIsSet("QUILLABRAE_SOAK_DAY") ? whole : part;
    Worker worker;
    std::vector<double> strokes;
    int runs = 0;
    qint64 bytesOpen = 0;
    const auto workOnce = [&](int opening) {
        worker.open();
        for (int stroke = 0; stroke < day.strokesEach; ++stroke) strokes.push_back(worker.stroke());
        for (; runs < day.undoRuns * (opening + 1) / day.openings; ++runs) worker.undoAndRedo(5);
        bytesOpen = residentBytes();
        worker.close();
    };
    // What is made once and kept is made by then.
    for (int opening = 0; opening < 3; ++opening) workOnce(0);
    strokes.clear();
    const qint64 bytesBefore = residentBytes();
    const qsizetype filesBefore = openFiles();

    for (int opening = 0; opening < day.openings; ++opening) workOnce(opening);

    const qint64 bytesAfter = residentBytes();
    std::printf(
        "%d openings, %d runs of undo and redo: %.1f MB before, %.1f MB while open, "
        "%.1f MB after, %td files\n",
        day.openings, runs, static_cast<double>(bytesBefore) / 1e6,
        static_cast<double>(bytesOpen) / 1e6, static_cast<double>(bytesAfter) / 1e6,
        static_cast<std::ptrdiff_t>(openFiles()));
    tellLatency(strokes, 100);
    EXPECT_EQ(openFiles(), filesBefore);
    if (tests::hasSanitizer) return;
    EXPECT_LE(bytesAfter, bytesBefore + bytesBefore / 10);
    EXPECT_LE(bytesAfter, bytesOpen - layersPixels);
}

} // namespace
} // namespace quillabrae::replay
