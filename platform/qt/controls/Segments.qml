// A few choices side by side, one of them chosen.
import QtQuick
import QtQuick.Templates as T

Rectangle {
    id: root

    property color accent: "black"
    property color accentText: "white"
    property font textFont
    property var items: []
    property int selected: -1

    signal chosen(int index)

    radius: 6
    border.width: 1
    border.color: accent
    color: "transparent"
    opacity: enabled ? 1 : 0.4

    Row {
        anchors.fill: parent
        Repeater {
            model: root.items
            T.AbstractButton {
                id: segment
                required property int index
                required property string modelData
                width: root.width / Math.max(1, root.items.length)
                height: root.height
                focusPolicy: Qt.NoFocus
                Accessible.ignored: true
                onClicked: root.chosen(index)
                background: Rectangle {
                    radius: root.radius
                    color: segment.index === root.selected ? root.accent : segment.down ? "#22000000" : "transparent"
                    Rectangle {
                        visible: segment.index > 0 && segment.index !== root.selected && segment.index - 1 !== root.selected
                        width: 1
                        height: parent.height
                        color: root.accent
                        opacity: 0.4
                    }
                }
                contentItem: Text {
                    text: segment.modelData
                    textFormat: Text.PlainText
                    font: root.textFont
                    elide: Text.ElideRight
                    color: segment.index === root.selected ? root.accentText : root.accent
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                }
            }
        }
    }
}
