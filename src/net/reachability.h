#pragma once

#include "net/request_layer.h"
#include "net/selected_device.h"
#include "platform/http/http_session.h"

#include <QObject>
#include <QUrl>

namespace quiv {

// Whether that is how an exchange fails with a TV that is off or out of reach.
bool isWithoutAnswer(HttpErrorCode code);

// How the selected TV has answered of late.
struct ContactRecord {
    int silentRequests = 0;   // in a row
    int silentPasses = 0;     // of the refresh cycle, in a row
    bool hasAnswered = false; // since the last pass

    bool isReachable() const;
    // After three requests in a row without an answer, and again whenever their number has doubled.
    bool isTimeToResolve() const;

    bool operator==(const ContactRecord&) const = default;
};

ContactRecord afterAnswer(ContactRecord record);
ContactRecord afterSilence(ContactRecord record);
ContactRecord afterPass(ContactRecord record);

// Tells whether the selected TV answers: not any more after two passes of the refresh cycle in a
// row in which nothing but silence came, again with its next answer to whatever request. Main
// thread only.
class Reachability : public QObject, public RequestLayer::ContactListener {
    Q_OBJECT

public:
    explicit Reachability(const SelectedDevice& selected, QObject* parent = nullptr);

    bool isReachable() const { return m_record.isReachable(); }

    void answered(const QUrl& base) override;
    void failed(const QUrl& base, HttpErrorCode code) override;
    void passEnded();
    // Another TV is selected.
    void reset();

Q_SIGNALS:
    void reachableChanged();
    // The selected TV's address is perhaps another by now.
    void resolutionWanted();

private:
    void set(const ContactRecord& record);

    const SelectedDevice& m_selected;
    ContactRecord m_record;
};

} // namespace quiv
