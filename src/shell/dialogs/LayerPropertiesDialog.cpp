// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/LayerPropertiesDialog.h"

#include "shell/controls/Labels.h"
#include "shell/controls/SliderRow.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/DialogParts.h"
#include "shell/looks/Style.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace quillabrae::shell {
namespace {

constexpr QSize dialogSize{380, 295};
constexpr SliderRow::Range percent{0.0, 100.0, 1.0};

} // namespace

LayerPropertiesDialog::LayerPropertiesDialog(const store::LayerPropertiesDialogResult& layer,
                                             QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Layer Properties"));
    TextSize::fixSize(*this, dialogSize);
    QVBoxLayout* column = DialogParts::makeColumn(*this, Style::grid);

    m_name = new QLineEdit(layer.name, this);
    m_name->setAccessibleName(tr("Layer name"));
    QLabel* label = Labels::body(tr("Layer name"), this);
    label->setBuddy(m_name);
    column->addWidget(label);
    column->addWidget(m_name);

    m_opacity = new SliderRow(tr("Opacity"), QStringLiteral("%"), percent, this);
    m_opacity->showValue(layer.opacity * 100.0);
    column->addWidget(m_opacity);

    m_visible = new QCheckBox(tr("Visible"), this);
    m_visible->setChecked(layer.isVisible);
    m_locked = new QCheckBox(tr("Locked"), this);
    m_locked->setChecked(layer.isLocked);
    auto* switches = new QHBoxLayout;
    switches->setSpacing(3 * Style::grid);
    switches->addWidget(m_visible);
    switches->addWidget(m_locked);
    switches->addStretch();
    column->addLayout(switches);
    column->addStretch();
    DialogParts::addButtons(*this, tr("Apply"));
    m_name->setFocus();
    m_name->selectAll();
}

store::LayerPropertiesDialogResult LayerPropertiesDialog::answer() const {
    return {m_name->text(), m_opacity->value() / 100.0, m_visible->isChecked(),
            m_locked->isChecked()};
}

} // namespace quillabrae::shell
