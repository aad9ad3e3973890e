// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <Qt>

class QLabel;
class QWidget;

/// The few kinds of text in the interface. Labels are plain text and owned by their parent. They
/// begin at the side where the program's language begins, also where they are but a number.
namespace quillabrae::shell::Labels {

/// The side at which the program's language ends.
Qt::Alignment trailing();

QLabel* body(const QString& text, QWidget* parent);
/// Small and bold, over a group of controls.
QLabel* heading(const QString& text, QWidget* parent);
/// Standing back from the body text.
QLabel* muted(const QString& text, QWidget* parent);
/// Tells what went wrong.
QLabel* failure(const QString& text, QWidget* parent);
/// At `factor` times the body's size; bold.
QLabel* title(const QString& text, qreal factor, QWidget* parent);

} // namespace quillabrae::shell::Labels
