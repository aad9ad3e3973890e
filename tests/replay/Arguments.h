// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/ColorValue.h"

#include <QJsonObject>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

namespace quillabrae::replay {

/// Readings of a value of a script. Each throws ScriptError that names `what` where the value is of
/// another form.
double numberFrom(const QJsonValue& value, const QString& what);
int integerFrom(const QJsonValue& value, const QString& what);
bool booleanFrom(const QJsonValue& value, const QString& what);
QString textFrom(const QJsonValue& value, const QString& what);
QJsonObject objectFrom(const QJsonValue& value, const QString& what);
QJsonArray arrayFrom(const QJsonValue& value, const QString& what);
QPointF pointFrom(const QJsonValue& value, const QString& what);
QSizeF sizeFrom(const QJsonValue& value, const QString& what);
QRectF rectFrom(const QJsonValue& value, const QString& what);
model::ColorValue colorFrom(const QJsonValue& value, const QString& what);

/// The keys of one line, which were checked against the verb's own before it runs.
class Arguments {
public:
    explicit Arguments(QJsonObject line) : m_line(std::move(line)) {}

    bool has(const char* key) const { return m_line.contains(QLatin1StringView(key)); }
    /// Undefined for an absent key.
    QJsonValue value(const char* key) const { return m_line.value(QLatin1StringView(key)); }
    const QJsonObject& line() const { return m_line; }

    double number(const char* key) const { return numberFrom(value(key), QLatin1StringView(key)); }
    double number(const char* key, double fallback) const {
        return has(key) ? number(key) : fallback;
    }
    int integer(const char* key) const { return integerFrom(value(key), QLatin1StringView(key)); }
    int integer(const char* key, int fallback) const { return has(key) ? integer(key) : fallback; }
    bool boolean(const char* key) const { return booleanFrom(value(key), QLatin1StringView(key)); }
    QString text(const char* key) const { return textFrom(value(key), QLatin1StringView(key)); }
    QString text(const char* key, const QString& fallback) const {
        return has(key) ? text(key) : fallback;
    }
    QPointF point(const char* key) const { return pointFrom(value(key), QLatin1StringView(key)); }
    QSizeF size(const char* key) const { return sizeFrom(value(key), QLatin1StringView(key)); }

private:
    QJsonObject m_line;
};

} // namespace quillabrae::replay
