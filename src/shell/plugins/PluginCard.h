// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/QuillabraePlugin.h"

#include <QWidget>

class QPushButton;
class QVBoxLayout;

namespace quillabrae::shell {

class HoverTooltip;

/// One plugin of the library: what it is, and the buttons that install, run and remove it.
class PluginCard final : public QWidget {
    Q_OBJECT

public:
    enum class Kind { plain, featured };
    struct State {
        bool isInstalled = false;
        /// Whether there is a project to run it on.
        bool canRun = false;
    };

    PluginCard(effects::QuillabraePlugin plugin, Kind kind, QWidget* parent = nullptr);

    const effects::QuillabraePlugin& plugin() const { return m_plugin; }
    /// A button that goes hands the keyboard to the one in its place.
    void showState(State state);
    /// Gives the keyboard to the first of its buttons that takes it.
    void focusButtons();

Q_SIGNALS:
    void installRequested();
    void runRequested();
    void removeRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addPlain();
    void addFeatured();
    void addText(QVBoxLayout& column, qreal titleFactor);
    QWidget* makeButtons();
    QPushButton* makeButton(const QString& verb, const QString& help, void (PluginCard::*signal)());

    effects::QuillabraePlugin m_plugin;
    Kind m_kind;
    QPushButton* m_install = nullptr;
    QPushButton* m_run = nullptr;
    QPushButton* m_remove = nullptr;
    HoverTooltip* m_runTooltip = nullptr;
};

} // namespace quillabrae::shell
