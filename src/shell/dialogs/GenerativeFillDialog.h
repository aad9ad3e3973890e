// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "effects/GenerativeFillRequest.h"

#include <QDialog>
#include <QTimer>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace quillabrae::store {
class ProjectStore;
}

namespace quillabrae::shell {

class SlimBar;

/// Asks what is to be painted into the selection, has it painted, and shows how that goes. The
/// program goes on meanwhile. The dialog closes when the pixels are there; until then a failure is
/// told and can be tried again, and Cancel, Escape or the close button give a running fill up.
class GenerativeFillDialog final : public QDialog {
    Q_OBJECT

public:
    /// `store` outlives this.
    explicit GenerativeFillDialog(store::ProjectStore& store, QWidget* parent = nullptr);
    ~GenerativeFillDialog() override;

    effects::GenerativeFillRequest request() const;
    bool isGenerating() const { return m_fill.has_value(); }

    void accept() override;
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void generate();
    void finish(const std::optional<QString>& failure);
    void giveUp();
    /// How it goes, or what went wrong.
    void showState(const QString& failure);

    store::ProjectStore& m_store;
    QPlainTextEdit* m_prompt;
    QComboBox* m_model;
    QCheckBox* m_context;
    QLabel* m_failure;
    QLabel* m_working;
    SlimBar* m_bar;
    QPushButton* m_accept;
    QTimer m_barTimer;
    /// The fill that runs, as the store names it.
    std::optional<int> m_fill;
    /// How much of the answer has come, below 0 while that is not known.
    double m_fraction = -1.0;
};

} // namespace quillabrae::shell
