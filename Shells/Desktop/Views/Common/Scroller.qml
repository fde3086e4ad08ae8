import QtQuick
import Ostrel.Views

/// A scroll area. It moves as far as the user moves it, without the toolkit's gliding.
Flickable {
    id: scroller

    function scroll(by: real): void {
        contentY = Math.max(0, Math.min(contentY + by, contentHeight - height));
    }
    function reveal(item: Item): void {
        for (let outer = item; outer !== contentItem; outer = outer.parent) {
            if (!outer)
                return;
        }
        const top = item.mapToItem(contentItem, 0, 0).y - Tokens.gap;
        const bottom = top + item.height + 2 * Tokens.gap;
        if (top < contentY)
            scroll(top - contentY);
        else if (bottom > contentY + height)
            scroll(Math.min(top, bottom - height) - contentY);
    }

    /// True when the key is one that scrolls.
    function scrollByKey(key: int): bool {
        switch (key) {
        case Qt.Key_Up:
            scroll(-Tokens.rowHeight);
            return true;
        case Qt.Key_Down:
            scroll(Tokens.rowHeight);
            return true;
        case Qt.Key_PageUp:
            scroll(-height);
            return true;
        case Qt.Key_PageDown:
            scroll(height);
            return true;
        default:
            return false;
        }
    }

    interactive: contentHeight > height
    clip: interactive
    boundsBehavior: Flickable.StopAtBounds
    maximumFlickVelocity: 0

    // The toolkit's own scrolling by wheel glides.
    WheelHandler {
        enabled: scroller.interactive
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => scroller.scroll(-(event.pixelDelta.y || event.angleDelta.y / 120 * 2 * Tokens.rowHeight))
    }
}
