// SPDX-License-Identifier: GPL-3.0-or-later
#include "replay/SettingFields.h"

#include "replay/Arguments.h"
#include "replay/JsonForms.h"
#include "replay/ScriptError.h"

namespace quillabrae::replay {
namespace {

using model::PaintAppSettings;

QJsonValue toJson(double value) {
    return value;
}
QJsonValue toJson(bool value) {
    return value;
}
QJsonValue toJson(const QString& value) {
    return value;
}
QJsonValue toJson(const model::ColorValue& value) {
    return replay::toJson(value);
}
template <typename Vocabulary>
QJsonValue toJson(Vocabulary value) {
    return rawText(value);
}

template <typename Case>
void assign(Case& target, std::optional<Case> value, const QString& text) {
    if (!value) throw ScriptError(QStringLiteral("unknown value \"%1\"").arg(text));
    target = *value;
}

void fromJson(double& target, const QJsonValue& value) {
    target = numberFrom(value, QStringLiteral("value"));
}
void fromJson(bool& target, const QJsonValue& value) {
    target = booleanFrom(value, QStringLiteral("value"));
}
void fromJson(QString& target, const QJsonValue& value) {
    target = textFrom(value, QStringLiteral("value"));
}
void fromJson(model::ColorValue& target, const QJsonValue& value) {
    target = colorFrom(value, QStringLiteral("value"));
}
void fromJson(model::PaintTool& target, const QJsonValue& value) {
    assign(target, model::paintToolFromRawText(value.toString()), value.toString());
}
void fromJson(model::CanvasShape& target, const QJsonValue& value) {
    assign(target, model::canvasShapeFromRawText(value.toString()), value.toString());
}
void fromJson(model::ShapeDrawingMode& target, const QJsonValue& value) {
    assign(target, model::shapeDrawingModeFromRawText(value.toString()), value.toString());
}
void fromJson(model::CanvasTextAlignment& target, const QJsonValue& value) {
    assign(target, model::canvasTextAlignmentFromRawText(value.toString()), value.toString());
}
void fromJson(model::CanvasAnchor& target, const QJsonValue& value) {
    assign(target, model::canvasAnchorFromRawText(value.toString()), value.toString());
}

template <auto Member>
constexpr SettingField field(const char* name) {
    return {name, [](const PaintAppSettings& settings) { return toJson(settings.*Member); },
            [](PaintAppSettings& settings, const QJsonValue& value) {
                fromJson(settings.*Member, value);
            }};
}

constexpr SettingField fields[] = {
    field<&PaintAppSettings::selectedTool>("selectedTool"),
    field<&PaintAppSettings::primaryColor>("primaryColor"),
    field<&PaintAppSettings::secondaryColor>("secondaryColor"),
    field<&PaintAppSettings::brushSize>("brushSize"),
    field<&PaintAppSettings::selectedShape>("selectedShape"),
    field<&PaintAppSettings::shapeDrawingMode>("shapeDrawingMode"),
    field<&PaintAppSettings::shapeOutlineWidth>("shapeOutlineWidth"),
    field<&PaintAppSettings::pencilHardness>("pencilHardness"),
    field<&PaintAppSettings::magicWandMatchPercentage>("magicWandMatchPercentage"),
    field<&PaintAppSettings::paintBucketMatchPercentage>("paintBucketMatchPercentage"),
    field<&PaintAppSettings::textFontFamily>("textFontFamily"),
    field<&PaintAppSettings::textFontSize>("textFontSize"),
    field<&PaintAppSettings::textAlignment>("textAlignment"),
    field<&PaintAppSettings::textBold>("textBold"),
    field<&PaintAppSettings::textItalic>("textItalic"),
    field<&PaintAppSettings::textUnderline>("textUnderline"),
    field<&PaintAppSettings::textStrikethrough>("textStrikethrough"),
    field<&PaintAppSettings::zoomScale>("zoomScale"),
    field<&PaintAppSettings::showsPixelGrid>("showsPixelGrid"),
    field<&PaintAppSettings::lastCanvasResizeAnchor>("lastCanvasResizeAnchor"),
};

} // namespace

std::span<const SettingField> settingFields() {
    return fields;
}

} // namespace quillabrae::replay
