import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// Centred lines with four points between them.
Label {
    id: root

    // Each line brings its space along, the last one too.
    height: implicitHeight - 4
    horizontalAlignment: Text.AlignHCenter
    lineHeightMode: Text.FixedHeight
    lineHeight: Math.ceil(metrics.lineSpacing) + 4
    color: Theme.muted

    FontMetrics {
        id: metrics

        font: root.font
    }
}
