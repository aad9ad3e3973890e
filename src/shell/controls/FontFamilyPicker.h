// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>
#include <QStringList>

#include <functional>

namespace quillabrae::shell {

/// A menu of font families that asks for them anew each time it opens, so that a font that was
/// installed meanwhile is there, and nothing is asked before it is needed.
class RefreshingFontFamilyPicker final : public QComboBox {
    Q_OBJECT

public:
    explicit RefreshingFontFamilyPicker(std::function<QStringList()> families,
                                        QWidget* parent = nullptr);

    /// Shows a family, whether the system has it or not, without a signal.
    void showFamily(const QString& family);
    void showPopup() override;

Q_SIGNALS:
    void familyChosen(const QString& family);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void refresh();

    std::function<QStringList()> m_families;
    QString m_family;
    bool m_hasFamilies = false;
};

} // namespace quillabrae::shell
