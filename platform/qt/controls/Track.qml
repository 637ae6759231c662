// A slider.
import QtQuick
import QtQuick.Templates as T

T.Slider {
    id: slider

    property color trackColor: "black"
    property bool continuous: true
    property real lastSent: value

    signal userSet(real value)

    focusPolicy: Qt.NoFocus
    padding: 0
    Accessible.ignored: true
    opacity: enabled ? 1 : 0.4

    function send() {
        if (value === lastSent)
            return;
        lastSent = value;
        userSet(value);
    }
    onMoved: if (continuous) send()
    onPressedChanged: if (!pressed) send(); else lastSent = value

    background: Rectangle {
        y: (slider.height - height) / 2
        width: slider.width
        height: 4
        radius: 2
        color: "#d5dbe0"
        Rectangle {
            width: slider.visualPosition * parent.width
            height: 4
            radius: 2
            color: slider.trackColor
        }
    }
    handle: Rectangle {
        x: slider.visualPosition * (slider.width - width)
        y: (slider.height - height) / 2
        width: Math.min(26, slider.height)
        height: width
        radius: width / 2
        color: slider.pressed ? "#f4f6f8" : "white"
        border.width: 1
        border.color: "#b8c0c8"
    }
}
