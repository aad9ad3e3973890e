// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "replay/RecoverableWork.h"

#include <QByteArray>
#include <QDir>
#include <QList>

#include <random>
#include <span>

namespace quillabrae::replay {

/// Which canvases are opened.
enum class CanvasSizes {
    /// 128 by 96.
    small,
    /// Most of them small, some of up to 50 million pixels.
    any,
};

/// The lines of a command, and what it does to the active tab when it does anything.
struct KillCommand {
    QList<QByteArray> lines;
    Change change = Change::edit;
    /// A gesture or draft is under way at the end of the lines: nothing is completed yet.
    bool isPending = false;
};

/// Random commands and gestures that follow from the work that is open: edits, floating pixels,
/// drafts and strokes that stay under way, several tabs, saves, undo and redo.
class KillCommands {
public:
    /// Puts the pictures that the commands use into the home.
    KillCommands(const QDir& home, CanvasSizes sizes, unsigned seed);

    KillCommand next(const RecoverableWork& work);
    /// What was under way is no more: the program was killed.
    void forgetPending() { m_isPending = false; }

    KillCommand create();
    /// From 0 to `last`.
    int upTo(int last) { return std::uniform_int_distribution(0, last)(m_random); }

private:
    struct Row {
        int weight;
        KillCommand (KillCommands::*make)();
    };
    static std::span<const Row> edits();

    KillCommand whileOpen(const RecoverableWork& work);
    KillCommand edit();
    KillCommand stroke();
    KillCommand selection();
    KillCommand floatingPixels();
    KillCommand paste();
    KillCommand load();
    KillCommand flip();
    KillCommand plainCommand();
    KillCommand shapeDraft();
    KillCommand textDraft();
    KillCommand halfAStroke();
    KillCommand endOfPending();
    KillCommand save(int index);

    void saveNoise(const QString& path, QSize size);
    QString point(double from, double to);
    QString somewhere() { return point(0, 1); }
    QByteArray strokeLine(const QString& from, const QString& to) const;

    std::mt19937 m_random;
    CanvasSizes m_sizes;
    QSize m_canvas;
    bool m_isPending = false;
};

} // namespace quillabrae::replay
