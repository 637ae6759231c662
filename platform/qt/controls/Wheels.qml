// Columns of choices that turn under a mark, as on a picker.
import QtQuick

Row {
    id: root

    // A list of {items: [text], selected: index, width: share}.
    property var columns: []
    property font textFont
    property color textColor: "black"
    property bool showing: false

    signal chosen(int column, int row)

    function select(column, row) {
        const wheel = wheels.itemAt(column);
        if (!wheel || wheel.currentIndex === row)
            return;
        showing = true;
        wheel.currentIndex = row;
        wheel.positionViewAtIndex(row, ListView.Center);
        showing = false;
    }
    readonly property real shares: columns.reduce((sum, c) => sum + c.width, 0)

    Repeater {
        id: wheels
        model: root.columns
        ListView {
            id: wheel
            required property int index
            required property var modelData
            readonly property real rowHeight: 36
            width: root.width * modelData.width / Math.max(1, root.shares)
            height: root.height
            clip: true
            model: modelData.items
            snapMode: ListView.SnapToItem
            highlightRangeMode: ListView.StrictlyEnforceRange
            preferredHighlightBegin: (height - rowHeight) / 2
            preferredHighlightEnd: (height + rowHeight) / 2
            highlightMoveDuration: 150
            Component.onCompleted: {
                root.showing = true;
                currentIndex = modelData.selected;
                positionViewAtIndex(currentIndex, ListView.Center);
                root.showing = false;
            }
            onMovementEnded: root.chosen(index, currentIndex)
            delegate: Text {
                required property int index
                required property string modelData
                width: wheel.width
                height: wheel.rowHeight
                text: modelData
                textFormat: Text.PlainText
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                font: root.textFont
                color: root.textColor
                opacity: Math.max(0.15, 1 - 0.3 * Math.abs(index - wheel.currentIndex))
                TapHandler {
                    onTapped: {
                        wheel.currentIndex = index;
                        root.chosen(wheel.index, index);
                    }
                }
            }
            Rectangle {
                parent: wheel
                y: wheel.preferredHighlightBegin
                width: wheel.width
                height: 1
                color: "#d5dbe0"
            }
            Rectangle {
                parent: wheel
                y: wheel.preferredHighlightEnd
                width: wheel.width
                height: 1
                color: "#d5dbe0"
            }
        }
    }
}
