import QtQuick

// A page of the tour: its rows one below the other, in the middle. Where they do not fit, the space
// between them gives way; what still does not fit is scrolled by keys, by the wheel and with the
// keyboard focus.
Item {
    id: root

    default property alias rows: column.data
    property real spacing: 18
    property alias rowsWidth: column.width

    readonly property real leastSpacing: 6
    // Kept free below rows that are scrolled.
    readonly property real margin: 10
    // The spacing at which the rows fill the page.
    readonly property real roomBetween: {
        let left = root.height - root.margin;
        let count = 0;
        for (let index = 0; index < column.children.length; ++index) {
            const row = column.children[index];
            left -= row.visible ? row.height : 0;
            count += row.visible ? 1 : 0;
        }
        return left / Math.max(1, count - 1);
    }
    readonly property real overflow: Math.max(0, column.height + root.margin - root.height)
    // How far the rows are scrolled, in points.
    property real offset: 0
    readonly property Item focusedItem: root.Window.activeFocusItem

    function scrollBy(distance) {
        root.offset = Math.max(0, Math.min(root.overflow, root.offset + distance));
    }

    // Scrolls as far as needed to show the focused control of this page.
    function reveal() {
        for (let item = root.focusedItem; item !== null; item = item.parent) {
            if (item === column) {
                const y = root.focusedItem.mapToItem(column, 0, 0).y;
                root.scrollBy(Math.min(0, y - root.offset));
                root.scrollBy(Math.max(0, y + root.focusedItem.height - view.height - root.offset));
            }
        }
    }

    onFocusedItemChanged: root.reveal()
    onOverflowChanged: root.scrollBy(0)

    Item {
        id: view

        width: root.width
        height: root.height - (clip ? root.margin : 0)
        clip: root.overflow > 0

        Column {
            id: column

            anchors.centerIn: parent
            anchors.verticalCenterOffset: root.overflow / 2 - root.offset
            spacing: Math.max(root.leastSpacing, Math.min(root.spacing, Math.floor(root.roomBetween)))
        }
    }

    WheelHandler {
        enabled: root.overflow > 0
        onWheel: event => root.scrollBy(-event.angleDelta.y / 3)
    }
}
