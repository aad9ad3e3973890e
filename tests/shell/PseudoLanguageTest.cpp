// SPDX-License-Identifier: GPL-3.0-or-later
// Every window and dialog in languages with longer words, one of which runs from right to left.
#include "effects/OpenAIKeychainService.h"
#include "platform/PackageInstaller.h"
#include "platform/Translations.h"
#include "services/AppUpdateService.h"
#include "services/FeedbackAttachmentService.h"
#include "services/FeedbackService.h"
#include "shell/ClippedTexts.h"
#include "shell/EveryDialog.h"
#include "shell/ShellTest.h"
#include "shell/TestAccount.h"
#include "shell/app/DesktopWindows.h"
#include "shell/dialogs/Alert.h"
#include "shell/dialogs/DesktopProjectPanels.h"
#include "shell/dialogs/FeedbackDialogView.h"
#include "shell/dialogs/PackageFileDialog.h"
#include "shell/dialogs/ProgressDialog.h"
#include "shell/looks/SystemMotion.h"
#include "shell/plugins/PluginLibraryView.h"
#include "shell/quickstart/PaintNetQuickStartView.h"
#include "shell/settings/PaintSettingsView.h"
#include "store/PromptTexts.h"
#include "support/PseudoLanguages.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace quillabrae::shell {
namespace {

class PseudoLanguageTest : public ShellTest, public testing::WithParamInterface<QString> {
protected:
    class NoInstaller final : public platform::PackageInstaller {
    public:
        HandOver install(const QString&) override { return HandOver::noInstaller; }
    };

    PseudoLanguageTest() {
        makeShell();
        makeProject(*store);
        store->addLayer();
        updates = std::make_unique<services::AppUpdateService>(
            services::UpdateSource::from(QUrl(QStringLiteral("https://example.org/feed")),
                                         QString::fromLatin1(QByteArray(32, 'k').toBase64()),
                                         QStringLiteral("1.0")),
            services::AppUpdater::Environment{http, installer, folder.filePath(QStringLiteral("u")),
                                              platform::makeDirectLatestWork},
            preferences, clock);
        screen = std::make_unique<DesktopWindows>(settings(), motion, *updates);
    }

    SettingsContext settings() {
        return {*store, preferences, keychain, [](const QUrl&) {}, *account.none};
    }

    /// Shows it and looks for texts that are cut off.
    static void expectWhole(QWidget& window, const QString& name) {
        window.show();
        runDeferred();
        EXPECT_EQ(clippedTexts(window).join(u'\n').toStdString(), "") << name.toStdString();
    }

    static void expectWhole(const Alert& alert) {
        QTimer::singleShot(0, qApp, [&alert] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_NE(dialog, nullptr);
            expectWhole(*dialog, alert.message);
            dialog->close();
        });
        runAlert(alert, nullptr);
    }

    platform::Translations language{{GetParam()}};
    tests::ScriptedHttpClient http;
    NoInstaller installer;
    TestAccount account;
    effects::OpenAIKeychainService keychain{account.secrets};
    SystemMotion motion;
    std::unique_ptr<services::AppUpdateService> updates;
    std::unique_ptr<DesktopWindows> screen;
};

TEST_P(PseudoLanguageTest, TheEditorShowsEveryToolsTexts) {
    const auto window = screen->makeWindow(WindowRole::editor, *coordinator);
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
    const auto window = screen->makeWindow(WindowRole::editor, *coordinator);
    expectWhole(*window, QStringLiteral("empty"));
}

TEST_P(PseudoLanguageTest, TheWelcomeWindowShowsItsTexts) {
    const auto window = screen->makeWindow(WindowRole::welcome, *coordinator);
    expectWhole(*window, QStringLiteral("first"));
    store->setStatusMessage(QStringLiteral("Open failed: image could not be read"),
                            store::StatusKind::failure);
    saveTo(*store, QStringLiteral("boat.quillabrae"));
    expectWhole(*window, QStringLiteral("with a recent project"));
}

TEST_P(PseudoLanguageTest, TheTourShowsItsTexts) {
    const auto window = screen->makeWindow(WindowRole::paintNetQuickStart, *coordinator);
    auto* steps = window->findChild<QListWidget*>();
    ASSERT_NE(steps, nullptr);
    for (int step = 0; step < steps->count(); ++step) {
        steps->setCurrentRow(step);
        expectWhole(*window, steps->item(step)->text());
    }
}

TEST_P(PseudoLanguageTest, TheSettingsShowTheirTexts) {
    const auto window = screen->makeWindow(WindowRole::settings, *coordinator);
    for (const auto section : allPaintSettingsSections()) {
        dynamic_cast<PaintSettingsView&>(*window).showSection(section);
        expectWhole(*window, title(section));
    }
}

TEST_P(PseudoLanguageTest, ThePluginLibraryShowsItsTexts) {
    const auto window = screen->makeWindow(WindowRole::pluginLibrary, *coordinator);
    expectWhole(*window, QStringLiteral("library"));
    window->resize(window->minimumSize());
    expectWhole(*window, QStringLiteral("the smallest library"));
}

TEST_P(PseudoLanguageTest, TheDialogsShowTheirTexts) {
    visitDialogs(*store, nullptr,
                 [](QWidget& dialog, const QString& name) { expectWhole(dialog, name); });
}

TEST_P(PseudoLanguageTest, TheFeedbackDialogShowsItsTexts) {
    const services::FeedbackService service(http, services::WebService({}), {});
    services::FeedbackAttachmentService attachments({});
    FeedbackDialogView dialog({service, attachments, [](QWidget*) { return std::nullopt; }});
    expectWhole(dialog, QStringLiteral("feedback"));
}

TEST_P(PseudoLanguageTest, TheAlertsShowTheirTexts) {
    expectWhole(Alerts::flattenBeforeSaving(3));
    expectWhole(Alerts::replaceFile(QStringLiteral("boat.quillabrae")));
    expectWhole(Alerts::saveBeforeClosing(QStringLiteral("boat")));
    expectWhole(Alerts::pasteImage({640, 480}, store::PasteTarget::noProject));
    expectWhole(Alerts::pasteImage({640, 480}, store::PasteTarget::smallerCanvas));
    expectWhole(pluginFailureAlert(QStringLiteral("The disk is full.")));
}

TEST_P(PseudoLanguageTest, OurOwnFileDialogShowsItsTexts) {
    QTimer::singleShot(0, qApp, [] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        expectWhole(*dialog, QStringLiteral("open"));
        dialog->reject();
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
