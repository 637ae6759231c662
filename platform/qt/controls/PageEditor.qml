// Many lines of text, to be edited or only read.
import QtQuick

Flickable {
    id: root

    property alias input: page
    property font textFont
    property color textColor: "black"
    property color accent: "black"
    property int alignment: Text.AlignLeft
    property bool editable: true
    property bool rich: false
    property bool painted: false // by the program, over the editor
    property real paintedHeight: 0
    property int hints: 0
    property bool showing: false

    signal edited(string text)
    signal linkClicked(string url)

    function show(text) {
        showing = true;
        if (rich || page.text !== text)
            page.text = text;
        showing = false;
    }
    function reveal(r) {
        if (r.y < contentY)
            contentY = Math.max(0, r.y);
        else if (r.y + r.height > contentY + height)
            contentY = r.y + r.height - height;
    }

    clip: true
    contentWidth: width
    contentHeight: painted ? paintedHeight : page.height
    flickableDirection: Flickable.VerticalFlick
    boundsBehavior: Flickable.StopAtBounds

    TextEdit {
        id: page
        opacity: root.painted ? 0 : 1
        enabled: !root.painted
        width: root.width
        height: Math.max(implicitHeight, root.height)
        leftPadding: 5
        rightPadding: 5
        topPadding: 8
        bottomPadding: 8
        wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
        horizontalAlignment: root.alignment
        textFormat: root.rich ? TextEdit.RichText : TextEdit.PlainText
        font: root.textFont
        color: root.textColor
        selectionColor: root.accent
        selectedTextColor: "white"
        selectByMouse: true
        readOnly: !root.editable
        Accessible.role: Accessible.EditableText
        inputMethodHints: root.hints
        onTextChanged: if (!root.showing && !root.rich) root.edited(text)
        onLinkActivated: link => root.linkClicked(link)
        onCursorRectangleChanged: if (activeFocus) root.reveal(cursorRectangle)
    }
}
