pragma ComponentBehavior: Bound

import QtQuick
import Quiv

// Badges side by side, on as many lines as they need.
Flow {
    id: flow

    required property var badges

    Repeater {
        model: flow.badges

        Badge {
            required property storageStatusBadge modelData

            text: modelData.text
            tone: modelData.tone
            width: Math.min(implicitWidth, flow.width)
        }
    }
}
