pragma ComponentBehavior: Bound

import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Onboarding
import QtQuick

// The list of the wallet's functions.
TourPage {
    id: root

    spacing: 16
    rowsWidth: root.width

    Label {
        text: "YOUR WALLET"
        font: Theme.pixel(18, 3)
        color: Theme.ink
    }

    Point {
        icon: Pictogram.KeyFill
        title: "FORGED HERE, LOCKED HERE"
        detail: "create a fresh wallet (or import one). the key lives in the macOS keychain — never in a file, never online."
    }

    Point {
        icon: Pictogram.TouchId
        title: "FINGERPRINT AT THE DOOR"
        detail: "the island opens with touch id. one print unlocks the session — sends are one click after that."
    }

    Point {
        icon: Pictogram.PaperPlaneFill
        title: "SEND WITH A BURST"
        detail: "recipient, amount, send. signed on-device, confirmed on-chain, celebrated with pixels and a chime."
    }

    Point {
        icon: Pictogram.QrCode
        title: "RECEIVE WITH A QR"
        detail: "your address as a scannable code, one tap to copy."
    }

    Point {
        icon: Pictogram.ExclamationMarkTriangleFill
        title: "BACK UP THE KEY"
        detail: "you'll get ONE backup screen at creation. save it — it is the wallet."
    }

    component Point: PictogramRow {
        width: parent.width
        iconSize: 15
        iconColor: Theme.green
    }
}
