// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QUrl>

class QMimeData;

/// What the windows take of a drag.
namespace quillabrae::shell::FileDrop {

/// Whether a window shows that it would take the drop.
bool isWelcome(const QMimeData& data);
/// The files of this machine that were dropped, in order.
QList<QUrl> files(const QMimeData& data);

} // namespace quillabrae::shell::FileDrop
