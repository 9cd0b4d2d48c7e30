import Corvane.Look
import QtQuick

// The background of a separate window: dark glass, slightly translucent. The desktop behind it is
// blurred by the window, not here.
Rectangle {
    color: Theme.glass
    antialiasing: true
}
