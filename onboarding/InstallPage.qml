import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Paint
import Corvane.Onboarding
import QtQuick

// Shows whether the application is installed and starts at login.
TourPage {
    id: root

    required property Onboarding onboarding

    spacing: 16

    InstallPageModel {
        id: page

        onboarding: root.onboarding
        shown: root.visible && root.Window.visibility !== Window.Hidden
    }

    Label {
        text: "INSTALL"
        font: Theme.pixel(18, 3)
        color: Theme.ink
    }

    Label {
        text: "two things make the island permanent:"
        font: Theme.term(11)
        color: Theme.muted
    }

    StatusRow {
        id: applications

        done: page.applicationsDone
        pendingIcon: Pictogram.FolderFill
        title: "LIVES IN APPLICATIONS"
        detail: page.applicationsDetail
    }

    PillButton {
        x: applications.textX
        visible: page.movable
        label: page.moveLabel
        icon: Pictogram.ArrowDownCircleFill
        filled: true
        onTriggered: page.move()
    }

    StatusRow {
        done: page.loginDone
        pendingIcon: Pictogram.SunriseFill
        title: "STARTS AT LOGIN"
        detail: page.loginDetail
    }

    component StatusRow: PictogramRow {
        required property bool done
        required property int pendingIcon

        icon: done ? Pictogram.CheckmarkCircleFill : pendingIcon
        iconSize: 17
        iconColor: done ? Theme.green : Theme.muted
        iconLabel: done ? "done" : "not done yet"
    }
}
