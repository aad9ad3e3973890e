// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "replay/SequenceWriter.h"

#include <QByteArray>

#include <span>

namespace quillabrae::replay {

class Session;

/// Writes a random script, line by line, from what is open when the line is asked for: gestures by
/// pointer and keyboard, often with something else in the middle of them, commands, tools,
/// settings, the clipboard, generative fills, several tabs with small and odd canvases, undo and
/// redo, and starts of the editor.
class SequenceGenerator {
public:
    explicit SequenceGenerator(unsigned seed);

    QByteArray next(Session& session);

private:
    /// What may be written, and how often beside the others.
    struct Choice {
        int weight;
        void (*write)(SequenceWriter& writer, Session& session);
    };

    static std::span<const Choice> choices();
    static std::span<const Choice> interruptions();
    void write(std::span<const Choice> table, Session& session);
    bool isPressed(Session& session) const;

    SequenceWriter m_writer;
};

} // namespace quillabrae::replay
