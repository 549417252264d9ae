import QtQuick

// A hairline between areas.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.separator
}
