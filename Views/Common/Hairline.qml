import QtQuick
import Ostrel.Views

Rectangle {
    height: Tokens.hairline
    color: Tokens.line
}
