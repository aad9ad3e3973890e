// SPDX-License-Identifier: GPL-3.0-or-later
// Lines that open, close and save tabs, and start the editor again.
#include "replay/SequenceLines.h"
#include "replay/SequenceWriter.h"
#include "replay/Session.h"

#include <array>
#include <utility>

namespace quillabrae::replay::lines {
namespace {

/// Canvas sizes, the odd ones among them.
constexpr std::array<std::pair<int, int>, 9> canvasSizes{
    {{1, 1}, {1, 9}, {3, 2}, {16, 9}, {33, 17}, {64, 48}, {5, 120}, {120, 7}, {90, 60}}};
constexpr std::size_t mostTabs = 4;

} // namespace

void newTab(SequenceWriter& writer, Session& session) {
    if (session.store().openProjects().size() >= mostTabs) return closeTab(writer, session);
    const auto [width, height] = canvasSizes.at(
        static_cast<std::size_t>(writer.whole(0, static_cast<int>(canvasSizes.size()) - 1)));
    writer.add(
        QStringLiteral(
            R"({"do": "store.createUntitledProject", "width": %1, "height": %2, "resolutionDPI": 96})")
            .arg(width)
            .arg(height));
}

void otherTab(SequenceWriter& writer, Session& session) {
    const int count = static_cast<int>(session.store().openProjects().size());
    if (count < 2) return newTab(writer, session);
    writer.add(
        QStringLiteral(R"({"do": "set", "activeProjectID": %1})").arg(writer.whole(0, count - 1)));
}

void closeTab(SequenceWriter& writer, Session& session) {
    const int count = static_cast<int>(session.store().openProjects().size());
    if (count == 0) return;
    writer.add(QStringLiteral(R"({"do": "store.closeProject", "id": %1})")
                   .arg(writer.whole(0, count - 1)));
}

void picture(SequenceWriter& writer, Session&) {
    writer.add(QStringLiteral(R"({"do": "save.picture", "of": "%1", "index": 0, "to": "~/b.png"})")
                   .arg(writer.oneOf({"layer", "flattened"})));
}

/// A save, often with the file opened again right away.
void file(SequenceWriter& writer, Session& session) {
    const auto index = session.store().activeIndex();
    if (!index) return;
    const QString name = writer.oneOf({"~/x.quillabrae", "~/y.quillabrae"});
    if (writer.chance(70)) {
        writer.add(
            QStringLiteral(
                R"({"do": "store.saveProject", "at": %1, "to": {"url": "%2", "format": "project"}})")
                .arg(*index)
                .arg(name));
    }
    if (writer.chance(60))
        writer.add(QStringLiteral(R"({"do": "store.openProject", "at": "%1"})").arg(name));
}

void restart(SequenceWriter& writer, Session&) {
    writer.add(R"({"do": "store.persistAutosavedSession"})");
    writer.add(restartLine);
}

} // namespace quillabrae::replay::lines
