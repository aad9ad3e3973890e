// SPDX-License-Identifier: GPL-3.0-or-later
// Every text and every icon as it is painted, on the ground that it is painted on, in each scheme
// and contrast.
#include "shell/ContrastMeasure.h"
#include "shell/controls/ElidedLabel.h"
#include "shell/controls/IconButton.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SideList.h"
#include "shell/controls/SymbolLabel.h"
#include "shell/controls/TooltipBubble.h"
#include "shell/editor/ProjectTab.h"
#include "shell/looks/Symbols.h"
#include "shell/panels/HistoryList.h"
#include "shell/panels/LayerList.h"
#include "shell/panels/LayerRow.h"
#include "store/StoreTest.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QTabBar>
#include <QVBoxLayout>

namespace quillabrae::shell {
namespace {

class PaintedContrastTest : public store::StoreTest,
                            public testing::WithParamInterface<std::tuple<ColorScheme, Contrast>> {
protected:
    PaintedContrastTest() {
        QApplication::setPalette(palette);
        Symbols::useScheme(std::get<ColorScheme>(GetParam()));
        // So large that the strokes of letters are wider than a pixel.
        QFont font = formerFont;
        font.setPixelSize(22);
        QApplication::setFont(font);
    }
    ~PaintedContrastTest() override {
        QApplication::setFont(formerFont);
        QApplication::setPalette(formerPalette);
        Symbols::useScheme(ColorScheme::light);
    }

    static QImage pictureOf(QWidget& widget) {
        return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    /// A part of a list as it is painted in its window.
    static QImage pictureOf(const QAbstractItemView& list, QRect part) {
        return pictureOf(*list.window())
            .copy(part.translated(list.viewport()->mapTo(list.window(), QPoint())));
    }
    /// Of a widget alone in a window.
    template <typename Widget>
    static QImage alone(Widget* widget, QPalette::ColorRole ground = QPalette::Window) {
        QWidget window;
        window.setBackgroundRole(ground);
        window.setAutoFillBackground(true);
        auto* layout = new QVBoxLayout(&window);
        widget->setParent(&window);
        layout->addWidget(widget);
        window.resize(360, 80);
        window.show();
        QCoreApplication::processEvents();
        return pictureOf(window).copy(widget->geometry().adjusted(3, 3, -3, -3));
    }

    Contrast wanted = std::get<Contrast>(GetParam());
    QPalette palette = Style::palette(std::get<ColorScheme>(GetParam()), wanted);
    const double leastForText = leastTextContrast(wanted);
    const double leastForMarks = leastMarkContrast(wanted);
    QPalette formerPalette = QApplication::palette();
    QFont formerFont = QApplication::font();
    std::unique_ptr<store::ProjectStore> store = makeStore(store::Persistence::off);
};

TEST_P(PaintedContrastTest, OfLabels) {
    const auto text = QStringLiteral("WIMBLEDON");
    EXPECT_GE(inkContrast(alone(Labels::body(text, nullptr))), leastForText);
    EXPECT_GE(inkContrast(alone(Labels::muted(text, nullptr))), leastForText);
    EXPECT_GE(inkContrast(alone(Labels::heading(text, nullptr))), leastForText);
    EXPECT_GE(inkContrast(alone(Labels::failure(text, nullptr))), leastForText);
    EXPECT_GE(inkContrast(alone(Labels::title(text, 1.4, nullptr))), leastForText);
    auto* link = Labels::body(text, nullptr);
    link->setForegroundRole(QPalette::Link);
    EXPECT_GE(inkContrast(alone(link)), leastForText);
    auto* status = new ElidedLabel(nullptr);
    status->setText(text);
    EXPECT_GE(inkContrast(alone(status)), leastForText);
}

TEST_P(PaintedContrastTest, IsLessForWhatIsDisabled) {
    for (const bool isMuted : {false, true}) {
        const auto text = QStringLiteral("WIMBLEDON");
        const auto make = [&] {
            return isMuted ? Labels::muted(text, nullptr) : Labels::body(text, nullptr);
        };
        QLabel* disabled = make();
        disabled->setEnabled(false);
        EXPECT_LT(inkContrast(alone(disabled)), 0.8 * inkContrast(alone(make()))) << isMuted;
    }
    auto* symbol = new SymbolLabel(QStringLiteral("trash"), 32, nullptr);
    const double enabled = inkContrast(alone(symbol));
    symbol = new SymbolLabel(QStringLiteral("trash"), 32, nullptr);
    symbol->setEnabled(false);
    EXPECT_LT(inkContrast(alone(symbol)), 0.5 * enabled);
}

TEST_P(PaintedContrastTest, OfFieldsAndTabs) {
    auto* field = new QLineEdit(QStringLiteral("WIMBLEDON"));
    EXPECT_GE(inkContrast(alone(field)), leastForText);
    auto* empty = new QLineEdit;
    empty->setPlaceholderText(QStringLiteral("WIMBLEDON"));
    empty->setFocusPolicy(Qt::NoFocus);
    EXPECT_GE(inkContrast(alone(empty)), leastForText);
    auto* menu = new QComboBox;
    menu->addItem(QStringLiteral("WIMBLEDON"));
    EXPECT_GE(inkContrast(alone(menu)), leastForText);
    for (const int chosen : {0, 1}) {
        auto* tabs = new QTabBar;
        tabs->setExpanding(true);
        for (const char* title : {"WIMBLEDON", "HIMMELBLAU"})
            tabs->addTab(QLatin1StringView(title));
        tabs->setCurrentIndex(chosen);
        const QImage picture = alone(tabs);
        EXPECT_GE(inkContrast(picture.copy(10, 6, 120, 26)), leastForText) << chosen;
    }
}

TEST_P(PaintedContrastTest, OfTooltips) {
    QWidget window;
    window.resize(400, 300);
    TooltipBubble bubble({QStringLiteral("GRADIENT"), QStringLiteral("WIMBLEDON HIMMELBLAU")},
                         &window);
    for (QLabel* label : bubble.findChildren<QLabel*>())
        EXPECT_GE(inkContrast(pictureOf(bubble).copy(label->geometry())), leastForText)
            << qPrintable(label->text());
}

TEST_P(PaintedContrastTest, OfMenus) {
    QMenu menu;
    QAction* chosen = menu.addAction(QStringLiteral("WIMBLEDON"));
    QAction* plain = menu.addAction(QStringLiteral("HIMMELBLAU"));
    menu.resize(menu.sizeHint());
    menu.setActiveAction(chosen);
    for (QAction* action : {chosen, plain}) {
        const QRect row = menu.actionGeometry(action).adjusted(4, 2, -4, -2);
        EXPECT_GE(inkContrast(pictureOf(menu).copy(row)), leastForText)
            << qPrintable(action->text());
    }
}

TEST_P(PaintedContrastTest, OfSideLists) {
    QWidget window;
    auto* list = new SideList(QStringLiteral("Sections"), &window);
    list->addRow(QStringLiteral("trash"), QStringLiteral("WIMBLEDON"));
    list->addRow(QStringLiteral("folder"), QStringLiteral("HIMMELBLAU"));
    list->addHeading(QStringLiteral("FAMILIAR"));
    list->resize(300, 200);
    list->setCurrentRow(0);
    window.resize(300, 200);
    window.show();
    for (int row = 0; row < 3; ++row) {
        const QRect place = list->visualItemRect(list->item(row)).adjusted(4, 4, -4, -4);
        const bool isHeading = row == 2;
        const QRect text = isHeading ? place : place.adjusted(26, 0, 0, 0);
        EXPECT_GE(inkContrast(pictureOf(*list, text)), leastForText) << row;
        if (isHeading) continue;
        EXPECT_GE(inkContrast(pictureOf(*list, QRect(place.topLeft(), QSize(26, 24)))),
                  leastForMarks)
            << row;
    }
}

TEST_P(PaintedContrastTest, OfStepsOfTheHistory) {
    const QUuid project = makeProject(*store);
    for (const char* title : {"WIMBLEDON", "HIMMELBLAU"}) edit(*store, QLatin1StringView(title));
    store->undo(project);
    HistoryList list(*store, nullptr);
    list.resize(300, 200);
    list.show();
    ASSERT_EQ(list.model()->rowCount(), 3);
    for (int row = 0; row < 3; ++row) {
        const QRect place = list.visualRect(list.model()->index(row, 0)).adjusted(3, 3, -3, -3);
        EXPECT_GE(inkContrast(pictureOf(list, place.adjusted(26, 0, 0, 0))), leastForText) << row;
        EXPECT_GE(inkContrast(pictureOf(list, QRect(place.topLeft(), QSize(22, place.height())))),
                  leastForMarks)
            << row;
    }
}

TEST_P(PaintedContrastTest, OfLayers) {
    makeProject(*store);
    store->addLayer();
    store->editActiveProject([](model::PaintProject& project) {
        for (model::PaintLayer& layer : project.layers) {
            layer.name = QStringLiteral("WIMBLEDON");
            layer.opacity = 0.5;
            layer.isLocked = true;
        }
        project.layers.front().isVisible = false;
    });
    LayerList list(*store, {}, nullptr);
    list.resize(300, 200);
    list.show();
    for (int row = 0; row < 2; ++row) {
        const LayerRowParts parts(list.visualRect(list.model()->index(row, 0)), Qt::LeftToRight);
        const QRect lines = parts.name.adjusted(0, 4, 0, -4);
        const QRect name = lines.adjusted(0, 0, 0, -lines.height() / 2);
        EXPECT_GE(inkContrast(pictureOf(list, name)), leastForText) << row;
        EXPECT_GE(inkContrast(pictureOf(list, lines.adjusted(0, lines.height() / 2, 0, 0))),
                  leastForText)
            << row;
        EXPECT_GE(inkContrast(pictureOf(list, parts.visibility)), leastForMarks) << row;
        EXPECT_GE(inkContrast(pictureOf(list, parts.lock)), leastForMarks) << row;
        // The edge of the picture of an empty layer, on the row's face.
        const QImage across =
            pictureOf(list, QRect(parts.thumbnail.left() - 3, parts.thumbnail.center().y(), 4, 1));
        double edge = 1.0;
        for (int x = 1; x < across.width(); ++x)
            edge = std::max(edge, contrast(across.pixelColor(x, 0), across.pixelColor(0, 0)));
        EXPECT_GE(edge, 3.0) << row;
    }
}

TEST_P(PaintedContrastTest, OfTabsAndTheirBadges) {
    for (const bool isActive : {false, true}) {
        auto* tab = new ProjectTab(QUuid::createUuid(), nullptr);
        tab->setLook(
            {.title = QStringLiteral("WIMBLEDON"), .isActive = isActive, .isUnsaved = true});
        const QImage picture = alone(tab);
        const int titleStart = 60;
        EXPECT_GE(inkContrast(picture.copy(titleStart, 4, 100, 28)), leastForText) << isActive;
        // Between the title and the button that closes.
        const QRect badge(picture.width() - 45, picture.height() / 2 - 6, 14, 12);
        EXPECT_GE(inkContrast(picture.copy(badge)), leastForMarks) << isActive;
    }
}

TEST_P(PaintedContrastTest, OfEveryIconOnEveryGround) {
    const QColor window = palette.color(QPalette::Window);
    const QColor raised = Style::raised(palette);
    for (const QString& symbol : Symbols::names()) {
        if (symbol == QStringLiteral("quillabrae.project")) continue;
        for (const QColor& ground :
             {window, raised, over(Style::accentWash(palette), window),
              over(Style::accentWash(palette), raised), over(Style::hover(palette), window),
              over(Style::pressed(palette), raised)}) {
            QImage picture(44, 44, QImage::Format_RGB32);
            picture.fill(ground);
            QPainter painter(&picture);
            Symbols::icon(symbol).paint(&painter, picture.rect());
            painter.end();
            EXPECT_GE(inkContrast(picture), leastForMarks)
                << qPrintable(symbol) << " on " << qPrintable(ground.name());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachAppearance, PaintedContrastTest,
                         testing::Combine(testing::Values(ColorScheme::light, ColorScheme::dark),
                                          testing::Values(Contrast::normal, Contrast::high)));

} // namespace
} // namespace quillabrae::shell
