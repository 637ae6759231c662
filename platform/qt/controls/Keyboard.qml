// The keys of the simulated keyboard.
import QtQuick

Rectangle {
    id: board

    signal typed(string text)
    signal erased()
    signal closed()

    color: "#d5dbe0"
    Accessible.ignored: true

    component Key: Rectangle {
        id: key
        property string label
        property real share: 1
        signal pressed()
        width: (board.width - 8) / 10 * share - 4
        height: (board.height - 16) / 4 - 6
        radius: 5
        color: area.pressed ? "#aab3bb" : "white"
        Text {
            anchors.centerIn: parent
            text: key.label
            font.pixelSize: 18
            color: "#1b1f23"
            Accessible.ignored: true
        }
        MouseArea {
            id: area
            anchors.fill: parent
            onClicked: key.pressed()
        }
    }

    Column {
        anchors.centerIn: parent
        spacing: 6
        Repeater {
            model: ["qwertyuiop", "asdfghjkl", "zxcvbnm"]
            Row {
                required property string modelData
                required property int index
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 4
                Repeater {
                    model: modelData.split("")
                    Key {
                        required property string modelData
                        label: modelData
                        onPressed: board.typed(modelData)
                    }
                }
                Key {
                    visible: index === 2
                    label: "⌫"
                    share: 1.5
                    onPressed: board.erased()
                }
            }
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 4
            Key { label: "▾"; share: 1.5; onPressed: board.closed() }
            Key { label: ""; share: 6; onPressed: board.typed(" ") }
            Key { label: "⏎"; share: 2; onPressed: board.typed("\n") }
        }
    }
}
