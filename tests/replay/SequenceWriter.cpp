// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/SequenceWriter.h"

#include <QStringList>

#include <cmath>

namespace quillabrae::replay {

QByteArray SequenceWriter::takeFirst() {
    const QByteArray line = m_lines.front();
    m_lines.pop_front();
    const bool isRight = line.contains(R"("button": "right")");
    if (line.contains("canvas.press")) (isRight ? m_isRightDown : m_isLeftDown) = true;
    if (line.contains("canvas.release")) (isRight ? m_isRightDown : m_isLeftDown) = false;
    if (line == restartLine) m_isRightDown = m_isLeftDown = false;
    return line;
}

void SequenceWriter::addCommand(std::initializer_list<const char*> names) {
    add(QStringLiteral(R"({"do": "store.%1"})").arg(oneOf(names)));
}

int SequenceWriter::whole(int least, int most) {
    return std::uniform_int_distribution(least, most)(m_random);
}

double SequenceWriter::real(double least, double most) {
    return std::uniform_real_distribution(least, most)(m_random);
}

QString SequenceWriter::oneOf(std::initializer_list<const char*> texts) {
    return QString::fromLatin1(texts.begin()[whole(0, static_cast<int>(texts.size()) - 1)]);
}

/// Half of them whole, as a mouse gives them.
QString SequenceWriter::number(double least, double most) {
    const double drawn = real(least, most);
    return QString::number(chance(50) ? std::round(drawn) : drawn, 'f', 2);
}

QString SequenceWriter::color() {
    if (chance(40)) return oneOf({"[1, 0, 0, 1]", "[0, 0, 1, 1]", "[1, 1, 1, 1]"});
    return QStringLiteral("[%1, %2, %3, %4]")
        .arg(number(0, 1), number(0, 1), number(0, 1), number(0, 1));
}

QString SequenceWriter::heldKeys() {
    QStringList keys;
    for (const char* key : {"shift", "option", "command"}) {
        if (chance(12)) keys << QStringLiteral("\"%1\"").arg(QLatin1StringView(key));
    }
    return QStringLiteral("[%1]").arg(keys.join(QStringLiteral(", ")));
}

} // namespace quillabrae::replay
