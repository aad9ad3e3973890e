// SPDX-License-Identifier: GPL-3.0-or-later
// The editor window as a screen reader and a keyboard meet it.
#include "shell/ShellTest.h"
#include "shell/commands/CommandActions.h"
#include "shell/controls/HoverTooltip.h"
#include "shell/editor/EditorWindow.h"
#include "shell/panels/HueWheel.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>

namespace quillabrae::shell {
namespace {

class AccessibilityTest : public ShellTest {
protected:
    AccessibilityTest() {
        actions = std::make_unique<CommandActions>(CommandContext{*store, *coordinator});
        window = std::make_unique<EditorWindow>(*store, *coordinator, *actions);
        window->resize(1180, 820);
        window->show();
        makeProject(*store);
        store->addLayer();
        // Every tool's options are there once the tool was chosen.
        for (const model::PaintTool tool : model::allPaintTools())
            store->editSettings([tool](auto& settings) { settings.selectedTool = tool; });
        runDeferred();
    }
    ~AccessibilityTest() override {
        window.reset();
        actions.reset();
    }

    static bool isControl(const QWidget* widget) {
        if (qobject_cast<const QScrollBar*>(widget) != nullptr) return false;
        // The toolkit's own parts.
        if (widget->objectName().startsWith(QStringLiteral("qt_"))) return false;
        if (qobject_cast<const QAbstractSpinBox*>(widget->parentWidget()) != nullptr) return false;
        return qobject_cast<const QAbstractButton*>(widget) != nullptr ||
               qobject_cast<const QAbstractSlider*>(widget) != nullptr ||
               qobject_cast<const QAbstractSpinBox*>(widget) != nullptr ||
               qobject_cast<const QComboBox*>(widget) != nullptr ||
               qobject_cast<const QLineEdit*>(widget) != nullptr ||
               qobject_cast<const QAbstractItemView*>(widget) != nullptr ||
               qobject_cast<const HueWheel*>(widget) != nullptr;
    }
    QList<QWidget*> controls() const {
        auto found = window->findChildren<QWidget*>();
        found.removeIf([](const QWidget* widget) { return !isControl(widget); });
        return found;
    }
    static std::string describe(QWidget* widget) {
        return (QString::fromLatin1(widget->metaObject()->className()) + QLatin1Char(' ') +
                widget->accessibleName() + QLatin1Char(' ') + widget->objectName())
            .toStdString();
    }

    std::unique_ptr<CommandActions> actions;
    std::unique_ptr<EditorWindow> window;
};

TEST_F(AccessibilityTest, NamesEveryControl) {
    ASSERT_GT(controls().size(), 60);
    for (QWidget* control : controls()) {
        // The list of a closed menu belongs to the menu.
        if (control->window() != window.get()) continue;
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(control);
        ASSERT_NE(seen, nullptr) << describe(control);
        EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty()) << describe(control);
        EXPECT_NE(seen->role(), QAccessible::NoRole) << describe(control);
        EXPECT_NE(seen->role(), QAccessible::Client) << describe(control);
    }
}

TEST_F(AccessibilityTest, ReachesEveryControlWithTheTabKey) {
    for (QWidget* control : controls()) {
        if (control->window() != window.get()) continue;
        EXPECT_TRUE(control->focusPolicy() & Qt::TabFocus) << describe(control);
    }
}

TEST_F(AccessibilityTest, GoesThroughTheWindowFromTheTopToTheBottom) {
    // The order in which the keyboard meets the parts of the window.
    QStringList order;
    QWidget* widget = window.get();
    do {
        for (const QWidget* part = widget; part != nullptr; part = part->parentWidget()) {
            static const QStringList parts{
                QStringLiteral("Open projects"), QStringLiteral("Quick toolbar"),
                QStringLiteral("Tools"),         QStringLiteral("Colors"),
                QStringLiteral("History"),       QStringLiteral("Layers")};
            const bool isPart = parts.contains(part->accessibleName());
            if (!isPart || !isControl(widget)) continue;
            if (!order.contains(part->accessibleName())) order << part->accessibleName();
        }
        widget = widget->nextInFocusChain();
    } while (widget != window.get());
    EXPECT_EQ(order.join(QStringLiteral(", ")),
              QStringLiteral("Open projects, Quick toolbar, Tools, Colors, History, Layers"));
}

TEST_F(AccessibilityTest, TellsTheStatesOfLayersAndSteps) {
    const auto row = [this](const char* list, int index) {
        for (QAbstractItemView* view : window->findChildren<QAbstractItemView*>()) {
            if (view->accessibleName() == QLatin1StringView(list))
                return QAccessible::queryAccessibleInterface(view)->child(index);
        }
        return static_cast<QAccessibleInterface*>(nullptr);
    };
    QAccessibleInterface* top = row("Layers", 0);
    ASSERT_NE(top, nullptr);
    EXPECT_EQ(top->role(), QAccessible::ListItem);
    EXPECT_EQ(top->text(QAccessible::Name), QStringLiteral("Layer 2"));
    EXPECT_TRUE(top->state().checkable);
    EXPECT_TRUE(top->state().checked);
    EXPECT_TRUE(top->state().selected);
    EXPECT_FALSE(row("Layers", 1)->state().selected);
    EXPECT_EQ(row("History", 0)->text(QAccessible::Name), QStringLiteral("New Project"));
    EXPECT_TRUE(row("History", 1)->state().selected);
}

TEST_F(AccessibilityTest, TellsTheWheelsColorInWords) {
    store->editSettings([](auto& settings) { settings.primaryColor = {0.0, 1.0, 1.0, 1.0}; });
    QAccessibleInterface* wheel =
        QAccessible::queryAccessibleInterface(window->findChild<HueWheel*>());
    EXPECT_EQ(wheel->role(), QAccessible::ColorChooser);
    EXPECT_EQ(wheel->text(QAccessible::Value), QStringLiteral("Hue 180, saturation 100 %"));
}

} // namespace
} // namespace quillabrae::shell
