// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "persistence/SaveFormat.h"
#include "store/StoreEnvironment.h"

#include <QSizeF>
#include <QString>
#include <QUrl>

/// What the panels decide, apart from how they look.
namespace quillabrae::shell::PanelRules {

/// The folder extension of project packages, without the dot.
QString packageExtension();
/// Whether a path names a project package or the same as a plain file, by its extension.
bool isPackageName(const QString& path);

/// The patterns of the files that can be opened or imported, in any letter case.
QStringList projectAndImagePatterns();
QStringList imagePatterns();

/// The file that a save panel's answer stands for: the format decides the extension, whatever was
/// typed.
QUrl destination(const QString& typedPath, persistence::SaveFormat format);

/// The package that a path leads into, the outermost of several; any other path as it is. Dialogs
/// that know no packages enter them.
QString outsideOfPackages(const QString& path);

/// A file name that has nothing of a path in it.
QString fileNameFrom(const QString& suggestedName);

/// What an answer to the question before closing means; `button` counts from 0.
store::SaveBeforeCloseChoice saveBeforeCloseChoice(int button);

} // namespace quillabrae::shell::PanelRules
