// SPDX-License-Identifier: GPL-3.0-or-later
#include "effects/OpenAIKeychainService.h"
#include "platform/MemorySecretStore.h"
#include "shell/ShellTest.h"
#include "shell/TestAccount.h"
#include "shell/WhenShown.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/Labels.h"
#include "shell/controls/SideList.h"
#include "shell/controls/TextSize.h"
#include "shell/dialogs/Alert.h"
#include "shell/dialogs/AlignObjectDialog.h"
#include "shell/dialogs/ColorRemovalDialog.h"
#include "shell/dialogs/GenerativeFillDialog.h"
#include "shell/dialogs/LayerPropertiesDialog.h"
#include "shell/dialogs/NewProjectDialog.h"
#include "shell/dialogs/ResizeDialog.h"
#include "shell/dialogs/RotateZoomDialog.h"
#include "shell/dialogs/SVGSizeDialogView.h"
#include "shell/editor/EditorWindow.h"
#include "shell/editor/ToolsPalette.h"
#include "shell/looks/SystemFontSize.h"
#include "shell/panels/ColorPanel.h"
#include "shell/panels/HistoryList.h"
#include "shell/panels/LayerList.h"
#include "shell/settings/PaintSettingsSection.h"
#include "shell/settings/PaintSettingsView.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>

namespace quillabrae::shell {
namespace {

class TextSizeTest : public ShellTest {
protected:
    ~TextSizeTest() override { use(1.0); }

    void use(double factor) {
        size.use(factor);
        runDeferred();
    }

    std::vector<std::unique_ptr<QDialog>> makeDialogs() {
        std::vector<std::unique_ptr<QDialog>> made;
        const QSizeF canvas(900, 620);
        made.push_back(std::make_unique<NewProjectDialog>(canvas));
        made.push_back(std::make_unique<ResizeDialog>(
            ResizeDialogRequest{ResizeDialogMode::canvas, canvas, 96.0, {}}));
        made.push_back(std::make_unique<AlignObjectDialog>([](store::AlignObjectAction) {}));
        made.push_back(std::make_unique<ColorRemovalDialog>(
            store->settings(), [](const store::ColorRemovalSettings&) {}));
        made.push_back(std::make_unique<RotateZoomDialog>());
        made.push_back(std::make_unique<LayerPropertiesDialog>(
            store::LayerPropertiesDialogResult{QStringLiteral("Layer"), 1.0, true, false}));
        made.push_back(std::make_unique<SVGSizeDialogView>(canvas));
        made.push_back(std::make_unique<GenerativeFillDialog>(*store));
        return made;
    }

    /// What of a dialog has less room than its letters need, or lies outside.
    static QStringList clipped(const QDialog& dialog) {
        QStringList found;
        for (const QWidget* part : dialog.findChildren<QWidget*>()) {
            const bool hasLetters = qobject_cast<const QLabel*>(part) != nullptr ||
                                    qobject_cast<const QAbstractButton*>(part) != nullptr ||
                                    qobject_cast<const QComboBox*>(part) != nullptr ||
                                    qobject_cast<const QLineEdit*>(part) != nullptr;
            if (!hasLetters || !part->isVisible() || part->window() != &dialog) continue;
            const QRect place(part->mapTo(&dialog, QPoint()), part->size());
            const bool isWrapped = part->hasHeightForWidth();
            // The line of a field of numbers has the field's frame around it.
            const bool isInField = qobject_cast<QAbstractSpinBox*>(part->parentWidget()) != nullptr;
            int height = std::min(part->minimumSizeHint().height(), part->sizeHint().height());
            if (isWrapped) height = part->heightForWidth(part->width());
            if (isInField) height = part->fontMetrics().height();
            if (!dialog.rect().contains(place) || part->height() < height ||
                (!isWrapped && part->width() < part->minimumSizeHint().width()))
                found << QStringLiteral("%1 %2: %3 x %4, needs %5 x %6")
                             .arg(QLatin1StringView(part->metaObject()->className()),
                                  part->accessibleName())
                             .arg(part->width())
                             .arg(part->height())
                             .arg(part->minimumSizeHint().width())
                             .arg(height);
        }
        return found;
    }

    SystemFontSize size;
};

TEST_F(TextSizeTest, LabelsFollowTheProgramsLetters) {
    QWidget window;
    QLabel* title = Labels::title(QStringLiteral("Title"), 1.5, &window);
    QLabel* body = Labels::body(QStringLiteral("Body"), &window);
    const qreal before = title->font().pointSizeF();
    const qreal plain = body->font().pointSizeF();
    EXPECT_NEAR(before, 1.5 * plain, 0.01);
    use(2.0);
    EXPECT_NEAR(title->font().pointSizeF(), 2.0 * before, 0.01);
    EXPECT_NEAR(body->font().pointSizeF(), 2.0 * plain, 0.01);
    EXPECT_EQ(title->font().weight(), QFont::DemiBold);
    use(1.0);
    EXPECT_NEAR(title->font().pointSizeF(), before, 0.01);
}

TEST_F(TextSizeTest, LettersStayWithinReason) {
    const qreal before = QApplication::font().pointSizeF();
    use(100.0);
    EXPECT_NEAR(QApplication::font().pointSizeF(), 3.0 * before, 0.01);
    use(0.01);
    EXPECT_NEAR(QApplication::font().pointSizeF(), 0.5 * before, 0.01);
}

TEST_F(TextSizeTest, DialogsHaveTheirSizeAtUsualLettersAndGrowWithLargerOnes) {
    makeProject(*store);
    const auto dialogs = makeDialogs();
    std::vector<QSize> before;
    for (const auto& dialog : dialogs) {
        dialog->show();
        runDeferred();
        before.push_back(dialog->size());
        EXPECT_EQ(clipped(*dialog), QStringList()) << qPrintable(dialog->windowTitle());
    }
    EXPECT_EQ(before, (std::vector<QSize>{{420, 310},
                                          {520, 710},
                                          {390, 440},
                                          {520, 310},
                                          {420, 260},
                                          {380, 295},
                                          {420, 250},
                                          {520, 384}}));
    for (const double factor : {1.25, 1.5, 2.0}) {
        use(factor);
        for (const auto& dialog : dialogs)
            EXPECT_EQ(clipped(*dialog), QStringList())
                << factor << ' ' << qPrintable(dialog->windowTitle());
    }
    use(1.0);
    for (std::size_t index = 0; index < dialogs.size(); ++index)
        EXPECT_EQ(dialogs[index]->size(), before[index]);
}

TEST_F(TextSizeTest, AlertsShowTheirTextsWhole) {
    for (const double factor : {1.0, 1.5, 2.0}) {
        use(factor);
        const WhenShown shown([factor](QDialog& dialog) {
            runDeferred();
            EXPECT_EQ(clipped(dialog), QStringList()) << factor;
            dialog.reject();
        });
        runAlert(Alerts::flattenBeforeSaving(3), nullptr);
    }
}

TEST_F(TextSizeTest, PanesOfTheSettingsAreNeverCutAtTheirSide) {
    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain(secrets);
    TestAccount account;
    PaintSettingsView view({*store, preferences, keychain, {}, *account.none});
    TextSize::limitSize(view, {600, 400});
    view.show();
    for (const double factor : {1.0, 1.5, 2.0}) {
        use(factor);
        for (const PaintSettingsSection section : allPaintSettingsSections()) {
            view.showSection(section);
            runDeferred();
            for (const QScrollArea* frame : view.findChildren<QScrollArea*>()) {
                if (!frame->isVisible()) continue;
                EXPECT_EQ(frame->horizontalScrollBar()->maximum(), 0)
                    << factor << ' ' << qPrintable(title(section));
            }
        }
    }
}

TEST_F(TextSizeTest, TheSmallestEditorShowsAllTools) {
    makeProject(*store);
    const CommandActions actions({*store, *coordinator});
    EditorWindow window(*store, *coordinator, actions);
    TextSize::limitSize(window, {1100, 760});
    window.show();
    const auto* tools = window.findChild<ToolsPalette*>();
    const auto* colors = window.findChild<ColorPanel*>();
    for (const double factor : {1.0, 1.5, 2.0}) {
        use(factor);
        window.resize(window.minimumSize());
        runDeferred();
        EXPECT_FALSE(tools->geometry().intersects(colors->geometry())) << factor;
        if (factor > 1.0) continue;
        EXPECT_EQ(window.size(), QSize(1100, 760));
    }
}

TEST_F(TextSizeTest, RowsOfListsAreAsHighAsTheirLettersNeed) {
    makeProject(*store);
    LayerList layers(*store, {});
    HistoryList history(*store);
    SideList side(QStringLiteral("Sections"));
    side.addRow(QStringLiteral("trash"), QStringLiteral("Trash"));
    for (QAbstractItemView* list :
         std::initializer_list<QAbstractItemView*>{&layers, &history, &side})
        list->show();
    const auto heightIn = [](const QAbstractItemView& list) {
        return list.visualRect(list.model()->index(0, 0)).height();
    };
    EXPECT_EQ(heightIn(layers), 44);
    EXPECT_EQ(heightIn(history), 26);
    EXPECT_EQ(heightIn(side), 34);
    use(2.5);
    EXPECT_GE(heightIn(layers), 2 * layers.fontMetrics().height());
    EXPECT_GE(heightIn(history), history.fontMetrics().height());
    EXPECT_GE(heightIn(side), side.fontMetrics().height());
    use(1.0);
    EXPECT_EQ(heightIn(layers), 44);
}

} // namespace
} // namespace quillabrae::shell
