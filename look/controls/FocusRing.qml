import Corvane.Look
import Corvane.Look.Controls

// Marks the control with keyboard focus, its parent. In ink, which differs from every control.
RingShape {
    color: Theme.ink
    radius: 4
}
