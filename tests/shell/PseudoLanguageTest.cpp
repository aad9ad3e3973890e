// SPDX-License-Identifier: GPL-3.0-or-later
// Every window and dialog in languages with longer words, one of which runs from right to left.
#include "shell/ClippedTexts.h"
#include "shell/EveryDialog.h"
#include "shell/EveryWindow.h"
#include "shell/WhenShown.h"
#include "shell/dialogs/DesktopProjectPanels.h"
#include "shell/dialogs/PackageFileDialog.h"
#include "shell/dialogs/ProgressDialog.h"
#include "shell/settings/PaintSettingsView.h"
#include "support/PseudoLanguages.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

namespace quillabrae::shell {
namespace {

class PseudoLanguageTest : public EveryWindow, public testing::WithParamInterface<QString> {
protected:
    PseudoLanguageTest() : EveryWindow(GetParam()) { store->addLayer(); }

    /// Shows it and looks for texts that are cut off.
    static void expectWhole(QWidget& window, const QString& name) {
        window.show();
        runDeferred();
        EXPECT_EQ(clippedTexts(window).join(u'\n').toStdString(), "") << name.toStdString();
    }

    static void expectWhole(const Alert& alert) {
        const WhenShown shown([&alert](QDialog& dialog) {
            expectWhole(dialog, alert.message);
            dialog.close();
        });
        runAlert(alert, nullptr);
    }
};

TEST_P(PseudoLanguageTest, TheEditorShowsEveryToolsTexts) {
    const auto window = makeWindow(WindowRole::editor);
    for (const model::PaintTool tool : model::allPaintTools()) {
        store->editSettings([tool](auto& settings) { settings.selectedTool = tool; });
        expectWhole(*window, model::title(tool));
    }
    window->resize(window->minimumSize());
    for (const model::PaintTool tool : model::allPaintTools()) {
        store->editSettings([tool](auto& settings) { settings.selectedTool = tool; });
        expectWhole(*window, model::title(tool) + QStringLiteral(", smallest"));
    }
}

TEST_P(PseudoLanguageTest, TheEmptyEditorShowsItsTexts) {
    store->closeProject(*store->activeProjectID());
    const auto window = makeWindow(WindowRole::editor);
    expectWhole(*window, QStringLiteral("empty"));
}

TEST_P(PseudoLanguageTest, TheWelcomeWindowShowsItsTexts) {
    const auto window = makeWindow(WindowRole::welcome);
    expectWhole(*window, QStringLiteral("first"));
    store->setStatusMessage(QStringLiteral("Open failed: image could not be read"),
                            store::StatusKind::failure);
    saveTo(*store, QStringLiteral("boat.quillabrae"));
    expectWhole(*window, QStringLiteral("with a recent project"));
}

TEST_P(PseudoLanguageTest, TheTourShowsItsTexts) {
    const auto window = makeWindow(WindowRole::paintNetQuickStart);
    auto* steps = window->findChild<QListWidget*>();
    ASSERT_NE(steps, nullptr);
    for (int step = 0; step < steps->count(); ++step) {
        steps->setCurrentRow(step);
        expectWhole(*window, steps->item(step)->text());
    }
}

TEST_P(PseudoLanguageTest, TheSettingsShowTheirTexts) {
    const auto window = makeWindow(WindowRole::settings);
    for (const auto section : allPaintSettingsSections()) {
        dynamic_cast<PaintSettingsView&>(*window).showSection(section);
        expectWhole(*window, title(section));
    }
}

TEST_P(PseudoLanguageTest, ThePluginLibraryShowsItsTexts) {
    const auto window = makeWindow(WindowRole::pluginLibrary);
    expectWhole(*window, QStringLiteral("library"));
    window->resize(window->minimumSize());
    expectWhole(*window, QStringLiteral("the smallest library"));
}

TEST_P(PseudoLanguageTest, TheDialogsShowTheirTexts) {
    visitDialogs(*store, nullptr,
                 [](QWidget& dialog, const QString& name) { expectWhole(dialog, name); });
}

TEST_P(PseudoLanguageTest, TheAlertsShowTheirTexts) {
    for (const Alert& alert : everyAlert()) expectWhole(alert);
}

TEST_P(PseudoLanguageTest, OurOwnFileDialogShowsItsTexts) {
    const WhenShown shown([](QDialog& dialog) {
        expectWhole(dialog, QStringLiteral("open"));
        dialog.reject();
    });
    DesktopProjectPanels([] { return nullptr; }).chooseProjectToOpen();
    PackageFileDialog save(QStringLiteral("Save"), folder.path(), QFileDialog::AcceptSave, nullptr);
    auto* formats = new QComboBox(&save);
    for (const auto format : persistence::allSaveFormats())
        formats->addItem(persistence::title(format));
    save.addAccessory(QStringLiteral("Format:"), formats);
    expectWhole(save, QStringLiteral("save"));
}

TEST_P(PseudoLanguageTest, TheProgressDialogShowsItsTexts) {
    platform::WorkControl control;
    ProgressDialog dialog(store::ProjectStore::tr("Generative fill"), control, nullptr);
    expectWhole(dialog, QStringLiteral("working"));
    dialog.reject();
    expectWhole(dialog, QStringLiteral("cancelling"));
}

TEST(ClippedTexts, AreThoseThatTheirPlaceIsTooSmallFor) {
    QWidget window;
    window.resize(300, 200);
    QLabel whole(QStringLiteral("whole"), &window);
    QLabel narrow(QStringLiteral("narrow"), &window);
    narrow.setFixedWidth(10);
    QPushButton button(QStringLiteral("A title that is too long"), &window);
    button.setFixedWidth(60);
    QLabel wrapped(QStringLiteral("three words here"), &window);
    wrapped.setWordWrap(true);
    wrapped.setFixedSize(60, 16);
    QLabel outside(QStringLiteral("outside"), &window);
    outside.move(280, 0);
    QListWidget list(&window);
    list.addItem(QStringLiteral("A row that is much too long for its list"));
    list.setFixedWidth(80);
    window.show();
    QStringList names;
    for (const QString& told : clippedTexts(window)) names << told.section(u'"', 1, 1);
    EXPECT_EQ(names.join(QStringLiteral(", ")),
              QStringLiteral("narrow, A title that is too long, three words here, outside (place), "
                             "A row that is much too long for its list"));
}

INSTANTIATE_TEST_SUITE_P(Languages, PseudoLanguageTest,
                         testing::Values(QStringLiteral("en"), longLanguage(),
                                         rightToLeftLanguage()),
                         [](const auto& language) { return language.param.toStdString(); });

} // namespace
} // namespace quillabrae::shell
