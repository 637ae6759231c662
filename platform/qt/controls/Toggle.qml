import QtQuick
import QtQuick.Templates as T

T.Switch {
    id: toggle

    property bool ready: false  // what it shows first isn't a change
    property color activeColor: "black"
    property color restColor: "gray"
    property color thumbColor: "white"

    signal userSet(bool on)

    focusPolicy: Qt.NoFocus
    padding: 0
    Accessible.ignored: true
    opacity: enabled ? 1 : 0.4
    onToggled: userSet(checked)

    indicator: Rectangle {
        x: (toggle.width - width) / 2
        y: (toggle.height - height) / 2
        width: Math.min(toggle.width, 51)
        height: Math.min(toggle.height, 31)
        radius: height / 2
        color: toggle.checked ? toggle.activeColor : toggle.restColor
        Behavior on color { enabled: toggle.ready; ColorAnimation { duration: 150 } }
        Rectangle {
            y: 2
            x: 2 + toggle.visualPosition * (parent.width - width - 4)
            width: parent.height - 4
            height: width
            radius: width / 2
            color: toggle.thumbColor
            border.width: 1
            border.color: "#18000000"
            Behavior on x { enabled: toggle.ready && !toggle.down; NumberAnimation { duration: 150 } }
        }
    }
}
