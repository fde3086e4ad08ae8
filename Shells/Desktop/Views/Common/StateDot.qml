import QtQuick
import Ostrel.Views

Rectangle {
    required property int kind

    width: Tokens.dotSize
    height: width
    radius: width / 2
    color: Tokens.stateColor(kind)
}
