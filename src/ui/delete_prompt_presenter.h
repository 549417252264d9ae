#pragma once

#include "library/library_content.h"
#include "net/tv_endpoint.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quiv {

class WindowActions;

// Asks before a group is deleted from the TV. The question goes with its TV.
class DeletePromptPresenter : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("belongs to the window's presenter")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)

public:
    explicit DeletePromptPresenter(WindowActions& actions, QObject* parent = nullptr);

    bool isShown() const { return m_pendingDeleteGroup.has_value(); }
    // Stays while the prompt fades.
    const QString& message() const { return m_message; }

    void setSelectedDevice(const std::optional<TVEndpoint>& device);
    void ask(const FileGroup& group);

    Q_INVOKABLE void cancel();
    Q_INVOKABLE void confirm();

Q_SIGNALS:
    void changed();

private:
    WindowActions& m_actions;
    QString m_selectedKey;
    std::optional<FileGroup> m_pendingDeleteGroup;
    QString m_message;
};

// "This will delete 3 file(s) from the TV, including subtitles linked to "Title"."
QString deleteMessage(const FileGroup& group);

} // namespace quiv
