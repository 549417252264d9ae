import QtQuick
import QtQuick.Layouts

// One way to get the TV app; what it shows goes inside.
ColumnLayout {
    id: option

    required property string label

    Layout.fillWidth: true
    Layout.preferredWidth: 1 // options share the width evenly
    Layout.alignment: Qt.AlignTop
    Layout.margins: 12
    spacing: 10

    PlainText {
        text: option.label
        font: Theme.captionSemibold
        color: Theme.secondaryText
    }
}
