// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "replay/Session.h"

#include <QByteArray>
#include <QString>

#include <deque>
#include <initializer_list>
#include <random>

namespace quillabrae::replay {

/// Not a verb of the language: the editor is killed and started again in the same home.
constexpr QByteArrayView restartLine("restart");

/// Writes a random script, line by line, from what is open when the line is asked for: gestures,
/// often with something else in the middle of them, commands, tools, settings, the clipboard,
/// several tabs with small and odd canvases, undo and redo, and starts of the editor.
class SequenceGenerator {
public:
    explicit SequenceGenerator(unsigned seed);

    QByteArray next(Session& session);

private:
    /// What may be written, and how often beside the others.
    struct Choice {
        int weight;
        void (SequenceGenerator::*write)(Session& session);
    };

    static std::span<const Choice> choices();
    static std::span<const Choice> interruptions();
    void write(std::span<const Choice> table, Session& session);

    void gesture(Session& session);
    void anyButtonUp(Session& session);
    void modifiers(Session& session);
    void pointer(Session& session);
    void key(Session& session);
    void escape(Session& session);
    void handle(Session& session);
    void type(Session& session);
    void tool(Session& session);
    void setting(Session& session);
    void undo(Session& session);
    void redo(Session& session);
    void undoAndRedo(Session& session);
    void restoreHistory(Session& session);
    void layerCommand(Session& session);
    void layerPatch(Session& session);
    void selectionCommand(Session& session);
    void paste(Session& session);
    void transform(Session& session);
    void adjustment(Session& session);
    void view(Session& session);
    void newTab(Session& session);
    void otherTab(Session& session);
    void closeTab(Session& session);
    void picture(Session& session);
    void file(Session& session);
    void restart(Session& session);

    /// Puts a line into the queue.
    void add(const QString& line) { m_lines.push_back(line.toUtf8()); }
    void add(const char* line) { m_lines.push_back(line); }
    /// One of the commands `store.NAME` that take nothing.
    void addCommand(std::initializer_list<const char*> names);

    int whole(int least, int most);
    double real(double least, double most);
    bool chance(int percent) { return whole(0, 99) < percent; }
    QString oneOf(std::initializer_list<const char*> texts);
    QString number(double least, double most);
    QString color();
    QString heldKeys();
    QString flag() { return chance(50) ? QStringLiteral("true") : QStringLiteral("false"); }
    QString canvasPoint(Session& session);
    QString place(Session& session, const QString& point);

    std::mt19937 m_random;
    std::deque<QByteArray> m_lines;
    /// The buttons that the lines so far hold down.
    bool m_isLeftDown = false;
    bool m_isRightDown = false;
};

} // namespace quillabrae::replay
