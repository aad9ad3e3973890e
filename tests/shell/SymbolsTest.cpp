// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/PluginCatalog.h"
#include "model/PaintTool.h"
#include "shell/ShellTest.h"
#include "shell/editor/QuickToolbar.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/looks/Symbols.h"
#include "shell/settings/PaintSettingsSection.h"

namespace quillabrae::shell {
namespace {

using SymbolsTest = ShellTest;

TEST_F(SymbolsTest, KnowsEveryToolOfThePalette) {
    for (const model::PaintTool tool : paletteTools) {
        EXPECT_TRUE(Symbols::isKnown(model::symbolName(tool)))
            << qPrintable(model::symbolName(tool));
    }
}

TEST_F(SymbolsTest, KnowsEveryStepOfTheHistory) {
    Symbols::useScheme(ColorScheme::light);
    for (const char* symbol : {"arrow.left.and.right.righttriangle.left.righttriangle.right",
                               "arrow.up.and.down.and.arrow.left.and.right",
                               "arrow.up.and.down.righttriangle.up.righttriangle.down",
                               "arrow.up.arrow.down",
                               "arrow.up.left.and.arrow.down.right",
                               "circle.lefthalf.filled",
                               "clock.arrow.circlepath",
                               "crop",
                               "cursorarrow",
                               "doc.badge.plus",
                               "doc.on.clipboard",
                               "doc.on.doc",
                               "eraser.line.dashed",
                               "folder",
                               "plus.square",
                               "rectangle.expand.vertical",
                               "rotate.3d",
                               "scissors",
                               "selection.pin.in.out",
                               "slider.horizontal.3",
                               "sparkles",
                               "square.and.arrow.down",
                               "square.grid.3x3",
                               "square.on.circle",
                               "square.stack.3d.down.right",
                               "textformat",
                               "trash",
                               "wand.and.sparkles",
                               "xmark.square"}) {
        EXPECT_TRUE(Symbols::isKnown(QString::fromLatin1(symbol))) << symbol;
    }
}

TEST_F(SymbolsTest, KnowsEveryPluginAndCategory) {
    for (const effects::QuillabraePlugin& plugin : effects::pluginCatalog()) {
        EXPECT_TRUE(Symbols::isKnown(plugin.symbolName)) << qPrintable(plugin.symbolName);
    }
    for (const auto category : effects::allPluginCategories())
        EXPECT_TRUE(Symbols::isKnown(symbolName(category)));
}

TEST_F(SymbolsTest, KnowsEveryButtonOfTheQuickToolbar) {
    for (const ToolbarItem& item : quickToolbarItems()) {
        if (item.isDivider()) continue;
        EXPECT_TRUE(Symbols::isKnown(QString::fromLatin1(item.symbol(*store))));
        if (item.symbolWhenOn == nullptr) continue;
        EXPECT_TRUE(Symbols::isKnown(QString::fromLatin1(item.symbolWhenOn)));
    }
}

TEST_F(SymbolsTest, KnowsEverySectionOfTheSettings) {
    for (const PaintSettingsSection section : allPaintSettingsSections())
        EXPECT_TRUE(Symbols::isKnown(symbolName(section))) << qPrintable(title(section));
}

TEST_F(SymbolsTest, DrawsItsOwnSymbolsOnLightAndOnDark) {
    for (const ColorScheme scheme : {ColorScheme::dark, ColorScheme::light}) {
        Symbols::useScheme(scheme);
        const QImage lasso = Symbols::icon(QStringLiteral("lasso")).pixmap(22, 22).toImage();
        ASSERT_FALSE(lasso.isNull());
        int inked = 0;
        bool isInkLight = false;
        for (int y = 0; y < lasso.height(); ++y) {
            for (int x = 0; x < lasso.width(); ++x) {
                const QColor color = lasso.pixelColor(x, y);
                if (color.alpha() < 200) continue;
                ++inked;
                isInkLight = color.lightness() > 128;
            }
        }
        EXPECT_GT(inked, 10);
        EXPECT_EQ(isInkLight, scheme == ColorScheme::dark);
    }
}

TEST_F(SymbolsTest, HasNoIconForAnUnknownSymbol) {
    EXPECT_FALSE(Symbols::isKnown(QStringLiteral("no.such.symbol")));
    EXPECT_TRUE(Symbols::icon(QStringLiteral("no.such.symbol")).isNull());
}

} // namespace
} // namespace quillabrae::shell
