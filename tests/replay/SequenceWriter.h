// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <deque>
#include <initializer_list>
#include <random>

namespace quillabrae::replay {

/// Not a verb of the language: the editor is killed and started again in the same home.
constexpr QByteArrayView restartLine("restart");

/// The lines of a random script that are still to come, and the chance that they are drawn by.
class SequenceWriter {
public:
    explicit SequenceWriter(unsigned seed) : m_random(seed) {}

    bool isEmpty() const { return m_lines.empty(); }
    QByteArray takeFirst();
    /// Puts what `write` adds before the lines there are.
    template <typename Write>
    void insertBefore(Write write) {
        std::deque<QByteArray> rest;
        rest.swap(m_lines);
        write();
        m_lines.insert(m_lines.end(), rest.begin(), rest.end());
    }

    void add(const QString& line) { m_lines.push_back(line.toUtf8()); }
    void add(const char* line) { m_lines.push_back(line); }
    void add(QByteArrayView line) { m_lines.push_back(line.toByteArray()); }
    /// One of the commands `store.NAME` that take nothing.
    void addCommand(std::initializer_list<const char*> names);

    /// The buttons that the lines taken so far hold down.
    bool isLeftDown() const { return m_isLeftDown; }
    bool isRightDown() const { return m_isRightDown; }

    int whole(int least, int most);
    double real(double least, double most);
    bool chance(int percent) { return whole(0, 99) < percent; }
    QString oneOf(std::initializer_list<const char*> texts);
    QString number(double least, double most);
    QString flag() { return chance(50) ? QStringLiteral("true") : QStringLiteral("false"); }
    QString color();
    QString heldKeys();

private:
    std::mt19937 m_random;
    std::deque<QByteArray> m_lines;
    bool m_isLeftDown = false;
    bool m_isRightDown = false;
};

} // namespace quillabrae::replay
