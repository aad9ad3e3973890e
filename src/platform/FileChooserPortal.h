// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <chrono>

class QDBusMessage;
class QDBusPendingCall;
class QWindow;

namespace quillabrae::platform {

/// What a file dialog of the desktop is to ask for: one file.
struct FileChooserQuestion {
    enum class Kind { open, save };
    /// Patterns are matched in any letter case.
    struct Filter {
        QString title;
        QStringList patterns;
    };
    /// One of several things that the user decides in the dialog beside the file.
    struct Option {
        QString id;
        QString title;
    };

    Kind kind = Kind::open;
    QString title{};
    /// The window that the dialog is above, as `portalNameOf` tells it.
    QString parentWindow{};
    QString acceptLabel{};
    QList<Filter> filters{};
    /// An absolute folder to start in; empty for one that the desktop chooses.
    QString folder{};
    /// The name to save under that is suggested.
    QString name{};
    /// The title of the options, and the options, of which the first is chosen at first.
    QString optionsTitle{};
    QList<Option> options{};
};

/// A window as the portal wants it named, so that dialogs stay above it; empty where that is not
/// known.
QString portalNameOf(const QWindow* window);

/// A pattern such as "*.png" for a matcher that minds letter case: "*.[pP][nN][gG]".
QString inAnyLetterCase(const QString& pattern);

/// The desktop's file dialog, asked for over the session bus (org.freedesktop.portal.FileChooser).
/// Nothing here blocks. Each question ends in exactly one of the signals, always after `ask` has
/// returned; going before that closes the dialog.
class FileChooserPortal final : public QObject {
    Q_OBJECT

public:
    /// How long the desktop may take to show its dialog. The user may take any time.
    static constexpr std::chrono::milliseconds patience{1500};

    explicit FileChooserPortal(QObject* parent = nullptr);
    ~FileChooserPortal() override;

    /// Once for each object.
    void ask(const FileChooserQuestion& question);

Q_SIGNALS:
    /// `option` is the id of the option that was chosen, empty where the dialog shows none.
    void chosen(const QString& path, const QString& option);
    void cancelled();
    /// There is no such dialog, or it went without an answer of the user's.
    void unavailable();

private Q_SLOTS:
    void takeResponse(uint response, const QVariantMap& results, const QDBusMessage& message);

private:
    enum class Stage { idle, looking, calling, showing, ended };

    void call(const FileChooserQuestion& question);
    void takeAnswer(const QVariantMap& results);
    void giveUp();
    void close();
    bool end();

    Stage m_stage = Stage::idle;
    QString m_request;
};

} // namespace quillabrae::platform
