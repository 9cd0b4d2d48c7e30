import Corvane.Look
import QtQuick

// The backdrop of a window of its own: dark glass, through which the desktop shows a little. What
// blurs the desktop behind it is the window.
Rectangle {
    color: Theme.glass
    antialiasing: true
}
