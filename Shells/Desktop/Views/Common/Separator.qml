import QtQuick
import Ostrel.Views

Rectangle {
    height: 1 / Screen.devicePixelRatio
    color: Tokens.line
}
