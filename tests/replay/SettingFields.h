// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/PaintAppSettings.h"

#include <QJsonValue>

#include <span>

namespace quillabrae::replay {

/// A tool setting in the language: its name, and its value read from and written to the record.
struct SettingField {
    const char* name;
    QJsonValue (*read)(const model::PaintAppSettings&);
    /// Throws ScriptError for a value that the setting cannot have.
    void (*write)(model::PaintAppSettings&, const QJsonValue&);
};

/// Every tool setting, in the order of the record.
std::span<const SettingField> settingFields();

} // namespace quillabrae::replay
