// Where the phone is, as the desktop tells it. Unknown or refused, it says nothing.
import QtQuick
import QtPositioning

Item {
    signal located(double latitude, double longitude)

    PositionSource {
        active: parent.visible
        updateInterval: 10000
        onPositionChanged: {
            if (position.latitudeValid && position.longitudeValid)
                located(position.coordinate.latitude, position.coordinate.longitude);
        }
    }
}
