// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/SequenceGenerator.h"

#include "replay/SequenceLines.h"
#include "replay/Session.h"

#include <array>
#include <numeric>

namespace quillabrae::replay {

SequenceGenerator::SequenceGenerator(unsigned seed) : m_writer(seed) {
    // Something to paste, to import and to drop.
    m_writer.add(
        R"({"do": "store.createUntitledProject", "width": 24, "height": 20, "resolutionDPI": 96})");
    m_writer.add(R"({"do": "set", "selectedTool": "gradient"})");
    m_writer.add(R"({"do": "canvas.stroke", "points": [[0, 0], [24, 20]]})");
    m_writer.add(R"({"do": "save.picture", "of": "layer", "index": 0, "to": "~/a.png"})");
    m_writer.add(R"({"do": "save.picture", "of": "layer", "index": 0, "to": "~/b.png"})");
    m_writer.add(R"({"do": "clipboard.put", "types": {"image/png": "~/a.png"}})");
}

std::span<const SequenceGenerator::Choice> SequenceGenerator::choices() {
    static constexpr std::array table{
        Choice{30, lines::gesture},       Choice{14, lines::tool},
        Choice{6, lines::setting},        Choice{5, lines::undo},
        Choice{4, lines::redo},           Choice{4, lines::undoAndRedo},
        Choice{2, lines::restoreHistory}, Choice{8, lines::layerCommand},
        Choice{4, lines::layerPatch},     Choice{7, lines::selectionCommand},
        Choice{6, lines::paste},          Choice{6, lines::transform},
        Choice{4, lines::adjustment},     Choice{5, lines::key},
        Choice{3, lines::escape},         Choice{5, lines::handle},
        Choice{4, lines::type},           Choice{3, lines::view},
        Choice{2, lines::modifiers},      Choice{2, lines::pointer},
        Choice{2, lines::newTab},         Choice{3, lines::otherTab},
        Choice{1, lines::closeTab},       Choice{1, lines::picture},
        Choice{2, lines::file},           Choice{1, lines::restart},
        Choice{6, lines::keyboard},       Choice{4, lines::generativeFill},
    };
    return table;
}

/// What may come in the middle of a gesture.
std::span<const SequenceGenerator::Choice> SequenceGenerator::interruptions() {
    static constexpr std::array table{
        Choice{6, lines::modifiers},
        Choice{3, lines::view},
        Choice{3, lines::tool},
        Choice{2, lines::setting},
        Choice{3, lines::undo},
        Choice{1, lines::redo},
        Choice{2, lines::key},
        Choice{1, lines::escape},
        Choice{2, lines::layerCommand},
        Choice{2, lines::selectionCommand},
        Choice{1, lines::paste},
        Choice{2, lines::transform},
        Choice{1, lines::otherTab},
        Choice{1, lines::closeTab},
        Choice{2, lines::generativeFill},
    };
    return table;
}

QByteArray SequenceGenerator::next(Session& session) {
    constexpr int interruptionPercent = 8;
    if (m_writer.isEmpty()) {
        if (session.store().openProjects().empty() && m_writer.chance(80))
            lines::newTab(m_writer, session);
        else
            write(choices(), session);
    } else if (isPressed(session) && m_writer.chance(interruptionPercent)) {
        m_writer.insertBefore([&] { write(interruptions(), session); });
    }
    if (m_writer.isEmpty()) return next(session);
    return m_writer.takeFirst();
}

/// Whether a gesture runs, of a button or of the keyboard.
bool SequenceGenerator::isPressed(Session& session) const {
    return m_writer.isLeftDown() || m_writer.isRightDown() ||
           session.canvas().view().keyboardPointer().isPressed();
}

void SequenceGenerator::write(std::span<const Choice> table, Session& session) {
    const int all = std::accumulate(table.begin(), table.end(), 0,
                                    [](int sum, const Choice& row) { return sum + row.weight; });
    int drawn = m_writer.whole(1, all);
    for (const Choice& row : table) {
        drawn -= row.weight;
        if (drawn <= 0) return row.write(m_writer, session);
    }
}

} // namespace quillabrae::replay
