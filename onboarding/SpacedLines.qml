import Corvane.Look
import Corvane.Look.Controls
import QtQuick

// Centred lines with four points between them.
Label {
    id: root

    // Every line has spacing below it, also the last one.
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
