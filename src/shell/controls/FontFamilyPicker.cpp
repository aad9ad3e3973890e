// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/controls/FontFamilyPicker.h"

#include "shell/controls/TextSize.h"

#include <utility>

namespace quillabrae::shell {
namespace {

constexpr int pickerWidth = 150;
constexpr int mostRows = 16;

} // namespace

RefreshingFontFamilyPicker::RefreshingFontFamilyPicker(std::function<QStringList()> families,
                                                       QWidget* parent)
    : QComboBox(parent), m_families(std::move(families)) {
    TextSize::setFixedWidth(*this, pickerWidth);
    setMaxVisibleItems(mostRows);
    connect(this, &QComboBox::textActivated, this, &RefreshingFontFamilyPicker::familyChosen);
}

void RefreshingFontFamilyPicker::showFamily(const QString& family) {
    m_family = family;
    // Until the system has been asked, the family is all that is known.
    if (!m_hasFamilies) {
        clear();
        addItem(family);
    }
    setCurrentIndex(findText(family));
    setPlaceholderText(family);
}

void RefreshingFontFamilyPicker::refresh() {
    const QStringList families = m_families();
    m_hasFamilies = true;
    clear();
    addItems(families);
    showFamily(m_family);
}

void RefreshingFontFamilyPicker::showPopup() {
    refresh();
    QComboBox::showPopup();
}

void RefreshingFontFamilyPicker::keyPressEvent(QKeyEvent* event) {
    if (!m_hasFamilies) refresh();
    QComboBox::keyPressEvent(event);
}

void RefreshingFontFamilyPicker::wheelEvent(QWheelEvent* event) {
    if (!m_hasFamilies) refresh();
    QComboBox::wheelEvent(event);
}

} // namespace quillabrae::shell
