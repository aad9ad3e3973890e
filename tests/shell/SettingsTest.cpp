// SPDX-License-Identifier: GPL-3.0-or-later
// The settings window's panes: every row of their table, and what changes beside them.
#include "effects/OpenAIKeychainService.h"
#include "persistence/AppPersistenceService.h"
#include "platform/MemorySecretStore.h"
#include "shell/ShellTest.h"
#include "shell/TestAccount.h"
#include "shell/controls/SliderRow.h"
#include "shell/settings/PaintSettingsView.h"
#include "shell/settings/SettingsPane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSlider>
#include <QTest>

namespace quillabrae::shell {
namespace {

class SettingsTest : public ShellTest {
protected:
    SettingsContext context() {
        return {*store, preferences, keychain, [](const QUrl&) {}, *account.none};
    }
    void show(PaintSettingsSection section) {
        pane = std::make_unique<SettingsPane>(section, context());
        pane->show();
    }
    ~SettingsTest() override { pane.reset(); }

    static QCheckBox* box(const QWidget& in, const QString& title) {
        for (QCheckBox* candidate : in.findChildren<QCheckBox*>())
            if (candidate->text() == title) return candidate;
        return nullptr;
    }
    QCheckBox* box(const QString& title) const { return box(*pane, title); }
    QComboBox* menu(const QString& title) const {
        for (QComboBox* candidate : pane->findChildren<QComboBox*>())
            if (candidate->accessibleName() == title) return candidate;
        return nullptr;
    }
    bool shows(const QString& text) const {
        const auto labels = pane->findChildren<QLabel*>();
        return std::ranges::any_of(labels,
                                   [&](const QLabel* label) { return label->text() == text; });
    }
    /// How many steps of its only project the recovery file keeps.
    std::size_t keptSteps() const {
        const auto session =
            persistence::AppPersistenceService::recoverAutosavedSession(recoveryFile());
        if (!session || session->histories.isEmpty()) return 0;
        return session->histories.cbegin()->entries.size();
    }

    platform::MemorySecretStore secrets;
    effects::OpenAIKeychainService keychain{secrets};
    TestAccount account;
    std::unique_ptr<SettingsPane> pane;
};

struct StoredSwitch {
    PaintSettingsSection section;
    const char* title;
    const char* key;
    bool fallback;
};

void PrintTo(const StoredSwitch& row, std::ostream* stream) {
    *stream << row.title;
}

class StoredSwitchTest : public SettingsTest, public testing::WithParamInterface<StoredSwitch> {};

TEST_P(StoredSwitchTest, ShowsWhatIsStoredAndStoresWhatIsPressed) {
    const auto& [section, title, key, fallback] = GetParam();
    const QString name = QString::fromLatin1(title);
    const QString stored = QString::fromLatin1(key);
    show(section);
    ASSERT_NE(box(name), nullptr);
    EXPECT_EQ(box(name)->isChecked(), fallback);
    EXPECT_FALSE(preferences.value(stored).isValid());

    box(name)->click();
    EXPECT_EQ(preferences.value(stored), QVariant(!fallback));
    show(section);
    EXPECT_EQ(box(name)->isChecked(), !fallback);

    // As somebody else stores it, in a text file's manner.
    preferences.setValue(stored, fallback ? QStringLiteral("true") : QStringLiteral("false"));
    pane->refresh();
    EXPECT_EQ(box(name)->isChecked(), fallback);
}

INSTANTIATE_TEST_SUITE_P(
    EveryRow, StoredSwitchTest,
    testing::Values(
        StoredSwitch{PaintSettingsSection::canvas,
                     "Ask before flattening layers when saving images",
                     "Quillabrae.confirmBeforeFlattening", true},
        StoredSwitch{PaintSettingsSection::historyAndRestore, "Restore recovery session on launch",
                     "Quillabrae.restoreRecoveryOnLaunch", true},
        StoredSwitch{PaintSettingsSection::historyAndRestore,
                     "Keep edit history in recovered projects", "Quillabrae.keepRecoveryHistory",
                     true},
        StoredSwitch{PaintSettingsSection::view, "Show welcome window when reopening from Dock",
                     "Quillabrae.showWelcomeOnDockReopen", true},
        StoredSwitch{PaintSettingsSection::privacy, "Share anonymous usage data",
                     "Quillabrae.shareAnonymousUsageData", true},
        StoredSwitch{PaintSettingsSection::intelligence,
                     "Enable generative fill when API key is saved",
                     "Quillabrae.enableFutureGenerativeFill", false},
        StoredSwitch{PaintSettingsSection::intelligence, "Send selected pixels as edit context",
                     "Quillabrae.sendSelectionContextToAI", true}));

TEST_F(SettingsTest, TestsEveryStoredSwitchOfTheTable) {
    int switches = 0;
    for (const PaintSettingsSection section : allPaintSettingsSections()) {
        for (const Setting& setting : settingsTable(section)) {
            const auto* toggle = std::get_if<ToggleSetting>(&setting);
            if (toggle != nullptr && std::holds_alternative<PreferenceSwitch>(toggle->place))
                ++switches;
        }
    }
    EXPECT_EQ(switches, 7);
}

TEST_F(SettingsTest, ShowsAndTurnsThePixelGridOfTheEditor) {
    show(PaintSettingsSection::canvas);
    QCheckBox* grid = box(QStringLiteral("Show pixel grid"));
    ASSERT_NE(grid, nullptr);
    EXPECT_FALSE(grid->isChecked());
    store->togglePixelGrid();
    EXPECT_TRUE(grid->isChecked());
    grid->click();
    EXPECT_FALSE(store->settings().showsPixelGrid);
}

TEST_F(SettingsTest, ChoosesTheToolOfTheEditorAmongThoseOfThePalette) {
    show(PaintSettingsSection::canvas);
    QComboBox* tools = menu(QStringLiteral("Default tool"));
    ASSERT_NE(tools, nullptr);
    EXPECT_EQ(tools->count(), 19);
    EXPECT_EQ(tools->currentText(), QStringLiteral("Paintbrush"));
    store->editSettings([](auto& settings) { settings.selectedTool = model::PaintTool::eraser; });
    EXPECT_EQ(tools->currentText(), model::title(model::PaintTool::eraser));
    tools->setFocus();
    QTest::keyClick(tools, Qt::Key_Down);
    EXPECT_EQ(store->settings().selectedTool, model::PaintTool::pencil);
}

TEST_F(SettingsTest, NamesAToolThatThePaletteLacks) {
    store->editSettings([](auto& settings) { settings.selectedTool = model::PaintTool::ellipse; });
    show(PaintSettingsSection::canvas);
    const QComboBox* tools = menu(QStringLiteral("Default tool"));
    EXPECT_EQ(tools->currentIndex(), -1);
    EXPECT_EQ(tools->placeholderText(), model::title(model::PaintTool::ellipse));
}

TEST_F(SettingsTest, SetsTheBrushSizeFrom1To512) {
    show(PaintSettingsSection::canvas);
    auto* row = pane->findChild<SliderRow*>();
    auto* slider = row->findChild<QSlider*>();
    EXPECT_EQ(row->value(), 5);
    store->editSettings([](auto& settings) { settings.brushSize = 80; });
    EXPECT_EQ(row->value(), 80);
    slider->setValue(slider->minimum());
    EXPECT_EQ(store->settings().brushSize, 1);
    slider->setValue(slider->maximum());
    EXPECT_EQ(store->settings().brushSize, 512);
}

TEST_F(SettingsTest, OffersTheHistoryLengthsThatRecoveryKnows) {
    show(PaintSettingsSection::historyAndRestore);
    QComboBox* limits = menu(QStringLiteral("History entries per project"));
    ASSERT_NE(limits, nullptr);
    QStringList offered;
    for (int item = 0; item < limits->count(); ++item) offered << limits->itemText(item);
    EXPECT_EQ(offered.join(QStringLiteral(", ")),
              QStringLiteral("10 steps, 25 steps, 50 steps, 100 steps"));
    EXPECT_EQ(limits->currentText(), QStringLiteral("25 steps"));
    for (int item = 0; item < limits->count(); ++item) {
        limits->setCurrentIndex(item);
        Q_EMIT limits->activated(item);
        EXPECT_EQ(persistence::RecoveryPreferences::historyEntryLimit(preferences),
                  limits->itemData(item).toInt());
    }
    // What no choice is counts as the usual one.
    preferences.setValue(QStringLiteral("Quillabrae.recoveryHistoryEntryLimit"), 30);
    pane->refresh();
    EXPECT_EQ(limits->currentText(), QStringLiteral("25 steps"));
    EXPECT_TRUE(shows(QStringLiteral(
        "Recovery history stores recent full-project snapshots. Quillabrae may keep fewer entries "
        "for large projects to keep recovery storage near 256 MB on disk.")));
}

TEST_F(SettingsTest, AShorterHistoryIsInTheRecoveryFileAtOnce) {
    preferences.setValue(QStringLiteral("Quillabrae.recoveryHistoryEntryLimit"), 100);
    makeProject(*store);
    for (int step = 0; step < 30; ++step) edit(*store);
    EXPECT_EQ(keptSteps(), 31U);
    show(PaintSettingsSection::historyAndRestore);
    QComboBox* limits = menu(QStringLiteral("History entries per project"));
    limits->setFocus();
    QTest::keyClick(limits, Qt::Key_Home);
    EXPECT_EQ(keptSteps(), 10U);
    QTest::keyClick(limits, Qt::Key_End);
    EXPECT_EQ(keptSteps(), 31U);
    box(QStringLiteral("Keep edit history in recovered projects"))->click();
    EXPECT_EQ(keptSteps(), 0U);
    QFile::remove(recoveryFile());
    box(QStringLiteral("Restore recovery session on launch"))->click();
    EXPECT_TRUE(QFile::exists(recoveryFile()));
}

TEST_F(SettingsTest, SaysWhatUsageDataIs) {
    show(PaintSettingsSection::privacy);
    EXPECT_TRUE(shows(QStringLiteral(
        "Helps improve Quillabrae by sharing anonymous first-launch, app version, and "
        "feature-usage events. Filenames, images, prompts, account details, and persistent "
        "identifiers are never included.")));
}

TEST_F(SettingsTest, ListsItsSectionsInTheirOrderAndShowsTheChosenOne) {
    PaintSettingsView view(context());
    view.resize(720, 500);
    view.show();
    auto* list = view.findChild<QListWidget*>();
    QStringList titles;
    for (int row = 0; row < list->count(); ++row) titles << list->item(row)->text();
    EXPECT_EQ(titles.join(QStringLiteral(", ")),
              QStringLiteral("Account, Canvas, History & Restore, View, Privacy, Intelligence"));
    EXPECT_EQ(view.section(), PaintSettingsSection::account);
    // Panes are made when they are first needed; the keychain is not asked before.
    EXPECT_EQ(view.findChildren<SettingsPane*>().size(), 1);
    for (const PaintSettingsSection section : allPaintSettingsSections()) {
        list->setCurrentRow(static_cast<int>(section));
        EXPECT_EQ(view.section(), section);
        for (const SettingsPane* shown : view.findChildren<SettingsPane*>())
            EXPECT_EQ(shown->isVisible(), shown->accessibleName() == title(section));
    }
    EXPECT_EQ(view.findChildren<SettingsPane*>().size(), 6);
    QTest::keyClick(list, Qt::Key_Home);
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(view.section(), PaintSettingsSection::canvas);
}

TEST_F(SettingsTest, NamesEveryControlAndReachesItWithTheTabKey) {
    for (const PaintSettingsSection section : allPaintSettingsSections()) {
        show(section);
        for (const QWidget* control : pane->findChildren<QWidget*>()) {
            // The lists of menus and the parts of number fields are the toolkit's own.
            const bool isPart = control->window() != pane.get() ||
                                qobject_cast<const QAbstractSpinBox*>(control->parentWidget());
            const bool isControl = qobject_cast<const QAbstractButton*>(control) != nullptr ||
                                   qobject_cast<const QComboBox*>(control) != nullptr ||
                                   qobject_cast<const QAbstractSlider*>(control) != nullptr ||
                                   qobject_cast<const QAbstractSpinBox*>(control) != nullptr ||
                                   qobject_cast<const QLineEdit*>(control) != nullptr;
            if (isPart || !isControl) continue;
            const auto* button = qobject_cast<const QAbstractButton*>(control);
            const QString name = button != nullptr && control->accessibleName().isEmpty()
                                     ? button->text()
                                     : control->accessibleName();
            EXPECT_FALSE(name.isEmpty()) << control->metaObject()->className();
            EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus) << qPrintable(name);
        }
    }
}

TEST_F(SettingsTest, ReadsAgainWhatWasStoredWhileItsWindowWasNotActive) {
    PaintSettingsView view(context());
    view.showSection(PaintSettingsSection::privacy);
    view.show();
    auto* share = box(view, QStringLiteral("Share anonymous usage data"));
    preferences.setValue(QStringLiteral("Quillabrae.shareAnonymousUsageData"), false);
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&view, &activation);
    EXPECT_FALSE(share->isChecked());
}

TEST_F(SettingsTest, ClosesOnEscape) {
    PaintSettingsView view(context());
    view.show();
    QApplication::setActiveWindow(&view);
    QTest::keyClick(&view, Qt::Key_Escape);
    runDeferred();
    EXPECT_FALSE(view.isVisible());
}

TEST_F(SettingsTest, ThereIsOneSettingsWindow) {
    coordinator->showSettings();
    coordinator->showSettings();
    EXPECT_EQ(windows.countOf(WindowRole::settings), 1);
    coordinator->window(WindowRole::settings)->close();
    runDeferred();
    EXPECT_EQ(coordinator->window(WindowRole::settings), nullptr);
    coordinator->showSettings();
    EXPECT_EQ(windows.countOf(WindowRole::settings), 2);
}

} // namespace
} // namespace quillabrae::shell
