pragma ComponentBehavior: Bound
import QtQuick
import Ondavia.Player
import Ondavia.Style

/// Over a picture: what plays and how. As wide as it is let be.
Rectangle {
    id: panel
    required property InformationModel model
    readonly property int labelWidth: 140

    visible: panel.model.isShown
    implicitWidth: 460
    implicitHeight: content.height + Theme.unit * 8
    radius: Theme.cardRadius
    color: Theme.panel
    border.width: 1
    border.color: Theme.hairline
    Accessible.role: Accessible.Pane
    Accessible.name: title.text

    Column {
        id: content
        x: Theme.unit * 4
        y: Theme.unit * 4
        width: panel.width - Theme.unit * 8
        spacing: Theme.unit * 2

        Label {
            id: title
            text: Texts.get("information.title", "Informação")
            font.weight: Font.DemiBold
            Accessible.ignored: true
        }
        Repeater {
            model: panel.model
            delegate: Item {
                id: line
                required property string label
                required property string value
                width: content.width
                height: valueLabel.height
                Accessible.role: Accessible.StaticText
                Accessible.name: line.label + ": " + line.value

                Label {
                    width: panel.labelWidth
                    text: line.label
                    color: Theme.textMuted
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                Label {
                    id: valueLabel
                    x: panel.labelWidth
                    width: line.width - x
                    text: line.value
                    wrapMode: Text.Wrap
                    Accessible.ignored: true
                }
            }
        }
    }
}
