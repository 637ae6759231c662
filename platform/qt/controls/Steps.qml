// A stepper: less on the left, more on the right; repeats while held.
import QtQuick
import QtQuick.Templates as T

Rectangle {
    id: root

    property color accent: "black"
    property real value: 0
    property real least: 0
    property real most: 100

    signal stepped(int direction)

    radius: 6
    border.width: 1
    border.color: accent
    color: "transparent"
    opacity: enabled ? 1 : 0.4

    component Half: T.AbstractButton {
        id: half
        property int direction
        property bool possible: direction < 0 ? root.value > root.least : root.value < root.most
        width: root.width / 2
        height: root.height
        focusPolicy: Qt.NoFocus
        autoRepeat: true
        Accessible.ignored: true
        onClicked: if (possible) root.stepped(direction)
        background: Rectangle {
            radius: root.radius
            color: half.down && half.possible ? "#22000000" : "transparent"
        }
        contentItem: Item {
            opacity: half.possible ? 1 : 0.35
            Rectangle { anchors.centerIn: parent; width: 14; height: 2; color: root.accent }
            Rectangle { anchors.centerIn: parent; width: 2; height: 14; color: root.accent; visible: half.direction > 0 }
        }
    }
    Half { direction: -1 }
    Half { direction: 1; x: root.width / 2 }
    Rectangle {
        x: root.width / 2
        y: 6
        width: 1
        height: root.height - 12
        color: root.accent
        opacity: 0.4
    }
}
