// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/dialogs/AnchorPicker.h"

#include "shell/controls/IconButton.h"
#include "shell/looks/Style.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>

namespace quillabrae::shell {
namespace {

using model::CanvasAnchor;

/// In the order of the anchors.
struct Face {
    const char* title;
    const char* symbolName;
};

constexpr std::array<Face, 9> faces{
    {{QT_TRANSLATE_NOOP("CanvasAnchor", "Top Left"), "arrow.up.left"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Top"), "arrow.up"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Top Right"), "arrow.up.right"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Left"), "arrow.left"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Center"), "smallcircle.filled.circle"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Right"), "arrow.right"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Bottom Left"), "arrow.down.left"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Bottom"), "arrow.down"},
     {QT_TRANSLATE_NOOP("CanvasAnchor", "Bottom Right"), "arrow.down.right"}}};

constexpr int anchorsInRow = 3;

const Face& face(CanvasAnchor anchor) {
    return faces.at(static_cast<std::size_t>(anchor));
}

} // namespace

QString title(CanvasAnchor anchor) {
    return QCoreApplication::translate("CanvasAnchor", face(anchor).title);
}

AnchorPicker::AnchorPicker(CanvasAnchor anchor, QWidget* parent)
    : QWidget(parent), m_buttons(new QButtonGroup(this)), m_names(new QComboBox(this)) {
    auto* places = new QWidget(this);
    // Left is left in every language.
    places->setLayoutDirection(Qt::LeftToRight);
    auto* grid = new QGridLayout(places);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(Style::grid / 4);
    for (const CanvasAnchor each : model::allCanvasAnchors()) {
        const int id = static_cast<int>(each);
        auto* button = new IconButton({.symbolName = QString::fromLatin1(face(each).symbolName),
                                       .title = title(each),
                                       .help = {}},
                                      places);
        button->setCheckable(true);
        button->setChecked(each == anchor);
        m_buttons->addButton(button, id);
        grid->addWidget(button, id / anchorsInRow, id % anchorsInRow);
        m_names->addItem(title(each));
    }
    m_names->setCurrentIndex(static_cast<int>(anchor));
    m_names->setAccessibleName(tr("Anchor"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(3 * Style::grid);
    layout->addWidget(places);
    layout->addWidget(m_names, 0, Qt::AlignTop);
    layout->addStretch();

    connect(m_names, &QComboBox::currentIndexChanged, this, [this](int id) {
        m_buttons->button(id)->setChecked(true);
        Q_EMIT anchorChosen(static_cast<CanvasAnchor>(id));
    });
    connect(m_buttons, &QButtonGroup::idClicked, m_names, &QComboBox::setCurrentIndex);
}

CanvasAnchor AnchorPicker::anchor() const {
    return static_cast<CanvasAnchor>(m_names->currentIndex());
}

} // namespace quillabrae::shell
