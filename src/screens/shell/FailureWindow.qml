import QtQuick
import Ondavia.Style

/// Stands in the place of the window when the application cannot start: why, and what to do about it.
Window {
    id: window
    required property string heading
    required property string advice
    required property string detail
    signal retryRequested()

    width: Theme.windowWidth
    height: Theme.windowHeight
    minimumWidth: 360
    minimumHeight: 480
    visible: true
    title: "Ondavia"
    color: Theme.background

    FocusScope {
        id: page
        anchors.fill: parent
        focus: true
        Keys.onPressed: event => {
            event.accepted = FocusGuide.isBack(event.key) || FocusGuide.move(page, event.key)
            if (FocusGuide.isBack(event.key))
                window.close()
        }

        EmptyStateView {
            anchors.fill: parent
            icon: "exclamationmark.triangle.fill"
            title: window.heading
            message: window.advice

            Column {
                spacing: Theme.unit * 6
                Label {
                    width: Math.min(window.width - Theme.narrowPageMargin * 2, 440)
                    text: window.detail
                    color: Theme.textMuted
                    font.pixelSize: Theme.captionSize
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                }
                Row {
                    anchors.horizontalCenter: parent.horizontalCenter
                    spacing: Theme.unit * 3
                    Button {
                        text: Texts.get("app.quit", "Sair")
                        kind: Button.Secondary
                        onClicked: window.close()
                    }
                    Button {
                        text: Texts.get("home.retry", "Tentar novamente")
                        focus: true
                        onClicked: window.retryRequested()
                    }
                }
            }
        }
    }
}
