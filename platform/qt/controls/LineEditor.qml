// One line of text that the user edits.
import QtQuick

Item {
    id: root

    property alias input: line
    property font textFont
    property color textColor: "black"
    property color accent: "black"
    property string hint
    property color hintColor: "gray"
    property int alignment: Text.AlignLeft
    property bool editable: true
    property bool password: false
    property bool shrinks: false
    property bool clearButton: false
    property int hints: 0
    property real padding: 8

    signal edited(string text)
    signal accepted()

    function show(text) {
        if (line.text !== text)
            line.text = text;
        if (!line.activeFocus)
            line.cursorPosition = 0;
    }

    TextInput {
        id: line
        anchors.fill: parent
        anchors.leftMargin: root.padding
        anchors.rightMargin: root.padding + (clear.visible ? clear.width - 8 : 0)
        verticalAlignment: TextInput.AlignVCenter
        horizontalAlignment: root.alignment
        clip: true
        font: root.textFont
        color: root.textColor
        selectionColor: root.accent
        selectedTextColor: "white"
        selectByMouse: true
        readOnly: !root.editable
        Accessible.role: Accessible.EditableText
        echoMode: root.password ? TextInput.Password : TextInput.Normal
        inputMethodHints: root.hints
        onTextEdited: root.edited(text)
        onAccepted: root.accepted()
        // One that nobody edits shows how it begins.
        onActiveFocusChanged: if (!activeFocus) cursorPosition = 0

        Text {
            anchors.fill: parent
            visible: !line.text && !line.preeditText
            text: root.hint
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
            horizontalAlignment: root.alignment
            elide: Text.ElideRight
            font: root.textFont
            color: root.hintColor
            Accessible.ignored: true
        }
    }

    Text {
        id: clear
        visible: root.clearButton && root.editable && line.text.length > 0
        anchors.right: parent.right
        width: 40
        height: parent.height
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.family: "Material Icons"
        font.pixelSize: 18
        text: "\ue5c9"
        color: root.hintColor
        Accessible.ignored: true
        TapHandler {
            onTapped: {
                line.clear();
                root.edited("");
                line.forceActiveFocus();
            }
        }
    }
}
