// Kinetic scrolling with thin indicators that show while it moves and, for a moment, when
// it comes. A lower edge that fades tells that more follows.
import QtQuick

Flickable {
    id: scroller

    property bool showsVertical: true
    property bool showsHorizontal: true
    property bool bounces: true
    property bool paging: false
    property real pixelRatio: 1
    property color fadeColor: "transparent"
    property real fadeHeight: 0
    // By a point at least: less is how sizes were rounded.
    readonly property bool tall: contentHeight > height + 1
    readonly property bool wide: contentWidth > width + 1
    property bool flashing: false
    readonly property bool turning: page.running  // to the place where a page rests

    boundsBehavior: bounces ? Flickable.DragAndOvershootBounds : Flickable.StopAtBounds
    flickableDirection: !wide ? Flickable.VerticalFlick
                              : tall ? Flickable.HorizontalAndVerticalFlick : Flickable.HorizontalFlick
    maximumFlickVelocity: 4000
    flickDeceleration: 1200

    // A flick turns to the page beside the one that the finger came to, a slow drag to the
    // nearest.
    readonly property real flickSpeed: 300
    property point start: Qt.point(0, 0)
    property point flick: Qt.point(0, 0)

    function restingPlace(from, now, flick, page, most) {
        const to = flick === 0 ? Math.round(now / page) : Math.round(from / page) + flick;
        return Math.max(0, Math.min(to * page, most));
    }
    function settle() {
        if (!paging)
            return;
        pageX.to = restingPlace(start.x, contentX, flick.x, width, contentWidth - width);
        pageY.to = restingPlace(start.y, contentY, flick.y, height, contentHeight - height);
        flick = Qt.point(0, 0);
        page.start();
    }
    onDragStarted: start = Qt.point(contentX, contentY)
    onFlickStarted: {
        if (!paging)
            return;
        const turn = speed => Math.abs(speed) < flickSpeed ? 0 : Math.sign(speed);
        flick = Qt.point(turn(horizontalVelocity), turn(verticalVelocity));
        cancelFlick();
    }
    onMovementEnded: {
        settle();
        // Text at rest lies on the pixel grid.
        if (!paging) {
            contentX = Math.round(contentX * pixelRatio) / pixelRatio;
            contentY = Math.round(contentY * pixelRatio) / pixelRatio;
        }
    }

    ParallelAnimation {
        id: page
        NumberAnimation { id: pageX; target: scroller; property: "contentX"; duration: 250; easing.type: Easing.OutCubic }
        NumberAnimation { id: pageY; target: scroller; property: "contentY"; duration: 250; easing.type: Easing.OutCubic }
    }

    onTallChanged: if (tall) flash.restart()
    onWideChanged: if (wide) flash.restart()
    Timer {
        id: flash
        interval: 900
        onRunningChanged: scroller.flashing = running
    }

    Rectangle {
        parent: scroller
        z: 999
        width: scroller.width
        height: scroller.fadeHeight
        y: scroller.height - height
        visible: scroller.fadeColor.a > 0 && scroller.tall && scroller.contentY + scroller.height < scroller.contentHeight - 1
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.rgba(scroller.fadeColor.r, scroller.fadeColor.g, scroller.fadeColor.b, 0) }
            GradientStop { position: 1; color: scroller.fadeColor }
        }
    }

    component Indicator: Rectangle {
        property bool wanted
        parent: scroller
        z: 1000
        radius: 1.5
        color: "#80404850"
        visible: opacity > 0
        opacity: wanted && (scroller.moving || scroller.flashing) ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: 250 } }
    }
    Indicator {
        wanted: scroller.showsVertical && scroller.tall
        width: 3
        x: scroller.width - width - 2
        height: Math.max(24, (scroller.height - 4) * scroller.visibleArea.heightRatio)
        y: 2 + (scroller.height - 4 - height) * Math.max(0, Math.min(1, scroller.contentY / Math.max(1, scroller.contentHeight - scroller.height)))
    }
    Indicator {
        wanted: scroller.showsHorizontal && scroller.wide
        height: 3
        y: scroller.height - height - 2
        width: Math.max(24, (scroller.width - 4) * scroller.visibleArea.widthRatio)
        x: 2 + (scroller.width - 4 - width) * Math.max(0, Math.min(1, scroller.contentX / Math.max(1, scroller.contentWidth - scroller.width)))
    }
}
