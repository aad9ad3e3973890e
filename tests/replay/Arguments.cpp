// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/Arguments.h"

#include "replay/ScriptError.h"

#include <QJsonArray>

#include <array>
#include <cmath>

namespace quillabrae::replay {
namespace {

[[noreturn]] void refuse(const QString& what, const char* form) {
    throw ScriptError(QStringLiteral("\"%1\" must be %2").arg(what, QLatin1StringView(form)));
}

template <std::size_t Count>
std::array<double, Count> numbersFrom(const QJsonValue& value, const QString& what,
                                      const char* form) {
    const QJsonArray array = value.toArray();
    if (!value.isArray() || array.size() != static_cast<qsizetype>(Count)) refuse(what, form);
    std::array<double, Count> numbers{};
    for (std::size_t i = 0; i < Count; ++i) {
        const QJsonValue item = array.at(static_cast<qsizetype>(i));
        if (!item.isDouble()) refuse(what, form);
        numbers[i] = item.toDouble();
    }
    return numbers;
}

} // namespace

double numberFrom(const QJsonValue& value, const QString& what) {
    if (!value.isDouble()) refuse(what, "a number");
    return value.toDouble();
}

int integerFrom(const QJsonValue& value, const QString& what) {
    const double number = numberFrom(value, what);
    if (std::trunc(number) != number || std::abs(number) > 1e9) refuse(what, "a whole number");
    return static_cast<int>(number);
}

bool booleanFrom(const QJsonValue& value, const QString& what) {
    if (!value.isBool()) refuse(what, "true or false");
    return value.toBool();
}

QString textFrom(const QJsonValue& value, const QString& what) {
    if (!value.isString()) refuse(what, "a text");
    return value.toString();
}

QJsonObject objectFrom(const QJsonValue& value, const QString& what) {
    if (!value.isObject()) refuse(what, "an object");
    return value.toObject();
}

QJsonArray arrayFrom(const QJsonValue& value, const QString& what) {
    if (!value.isArray()) refuse(what, "a list");
    return value.toArray();
}

QPointF pointFrom(const QJsonValue& value, const QString& what) {
    const auto [x, y] = numbersFrom<2>(value, what, "a point [x, y]");
    return {x, y};
}

QSizeF sizeFrom(const QJsonValue& value, const QString& what) {
    const auto [width, height] = numbersFrom<2>(value, what, "a size [w, h]");
    return {width, height};
}

QRectF rectFrom(const QJsonValue& value, const QString& what) {
    const auto [x, y, width, height] = numbersFrom<4>(value, what, "a rect [x, y, w, h]");
    return {x, y, width, height};
}

model::ColorValue colorFrom(const QJsonValue& value, const QString& what) {
    const auto [red, green, blue, alpha] = numbersFrom<4>(value, what, "a colour [r, g, b, a]");
    return {red, green, blue, alpha};
}

} // namespace quillabrae::replay
