pragma ComponentBehavior: Bound

import Corvane.Look
import Corvane.Look.Controls
import Corvane.Look.Motion
import Corvane.Look.Paint
import Corvane.Onboarding
import QtQuick

// The content of the window: the current page, the progress dots, and the buttons to the other
// pages.
Item {
    id: root

    required property Onboarding onboarding

    readonly property real padding: 30
    readonly property real cornerRadius: 12

    implicitWidth: 520
    implicitHeight: 640

    function pageAt(index) {
        switch (index) {
        case 0:
            return welcome;
        case 1:
            return install;
        case 2:
            return islandDemo;
        case 3:
            return walletTour;
        default:
            return ready;
        }
    }

    // When a button disappears, keyboard focus moves to the one beside it.
    function goBack() {
        const hadKeyboard = root.Window.activeFocusItem?.parent === back;
        pager.back();
        if (hadKeyboard && !pager.canGoBack)
            forward.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }

    // Has an effect where the window is lower than the page.
    function scrollPage(distance) {
        (pages.current.item as TourPage)?.scrollBy(distance);
    }

    OnboardingPager {
        id: pager

        lastPage: root.onboarding.lastPage
        onPageChanged: pages.show(root.pageAt(pager.page))
        onFinished: root.onboarding.finish()
    }

    GlassBackground {
        anchors.fill: parent
        radius: root.cornerRadius
    }

    Rectangle {
        anchors.fill: parent
        radius: root.cornerRadius
        color: Qt.alpha("black", 0.55)
        antialiasing: true
    }

    // The hairline of a window's frame.
    Rectangle {
        anchors.fill: parent
        radius: root.cornerRadius
        color: Qt.alpha("black", 0)
        border.width: 1
        border.color: Theme.line
        antialiasing: true
    }

    CloseButton {
        x: 12
        y: 12
        onTriggered: root.onboarding.close()
    }

    CardSwitcher {
        id: pages

        readonly property real pageHeight: dots.y - root.padding

        x: root.padding
        y: root.padding
        width: root.width - 2 * root.padding
        transaction: pager.transaction
        Component.onCompleted: pages.show(root.pageAt(pager.page))
    }

    ProgressDots {
        id: dots

        anchors.horizontalCenter: parent.horizontalCenter
        y: forward.y - 18 - height
        height: 5
        count: pager.lastPage + 1
        current: pager.page
        label: pager.position
    }

    PillButton {
        id: back

        x: root.padding
        y: forward.y
        label: "BACK"
        enabled: pager.canGoBack
        opacity: backValue.opacity
        visible: opacity > 0
        onTriggered: root.goBack()

        AnimatedValue {
            id: backValue

            fades: true
            transaction: pager.transaction
            target: pager.canGoBack ? 1 : 0
        }
    }

    PillButton {
        id: forward

        x: root.width - root.padding - width
        y: root.height - root.padding - height
        label: pager.forwardLabel
        icon: pager.forwardIcon
        filled: true
        onTriggered: pager.forward()
    }

    Shortcut {
        sequence: "Up"
        onActivated: root.scrollPage(-40)
    }

    Shortcut {
        sequence: "Down"
        onActivated: root.scrollPage(40)
    }

    Shortcut {
        sequence: "PgUp"
        onActivated: root.scrollPage(-pages.pageHeight)
    }

    Shortcut {
        sequence: "PgDown"
        onActivated: root.scrollPage(pages.pageHeight)
    }

    Shortcut {
        sequence: "Left"
        autoRepeat: false
        onActivated: root.goBack()
    }

    Shortcut {
        sequence: "Right"
        autoRepeat: false
        onActivated: pager.next()
    }

    // The button that a keyboard user presses next, until another one has the focus.
    Shortcut {
        sequences: ["Return", "Enter"]
        autoRepeat: false
        enabled: (root.Window.activeFocusItem ?? root.Window.contentItem) === root.Window.contentItem
        onActivated: pager.forward()
    }

    Shortcut {
        sequence: "Escape"
        onActivated: root.onboarding.close()
    }

    Component {
        id: welcome

        WelcomePage {
            implicitHeight: pages.pageHeight
        }
    }

    Component {
        id: install

        InstallPage {
            implicitHeight: pages.pageHeight
            onboarding: root.onboarding
        }
    }

    Component {
        id: islandDemo

        IslandDemoPage {
            implicitHeight: pages.pageHeight
            onboarding: root.onboarding
        }
    }

    Component {
        id: walletTour

        WalletTourPage {
            implicitHeight: pages.pageHeight
        }
    }

    Component {
        id: ready

        ReadyPage {
            implicitHeight: pages.pageHeight
        }
    }
}
