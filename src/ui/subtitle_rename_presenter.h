#pragma once

#include "net/tv_endpoint.h"
#include "transfer/upload_job.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quiv {

class WindowActions;

// Attaches a subtitle to a video; asks first when the file needs another name for that.
class SubtitleRenamePresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    explicit SubtitleRenamePresenter(WindowActions& actions, QObject* parent = nullptr);

    bool isShown() const { return m_prompt.has_value(); }
    // Stays while the prompt fades.
    const QString& message() const { return m_message; }

    void setSelectedDevice(const std::optional<TVEndpoint>& device);
    void attach(const QUrl& subtitle, const QString& videoName);

    Q_INVOKABLE void cancel();
    Q_INVOKABLE void confirm();

Q_SIGNALS:
    void changed();

private:
    WindowActions& m_actions;
    QString m_selectedKey;
    std::optional<SubtitleRenamePrompt> m_prompt;
    QString m_message;
};

} // namespace quiv
