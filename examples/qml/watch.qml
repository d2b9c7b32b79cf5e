// A window that watches one camera: its picture, its rate, and a frame around what moves.
//
//     /usr/lib/qt6/bin/qml examples/qml/watch.qml -- http://127.0.0.1:8080/live/1

import QtQuick
import QtQuick.Window
import Orbelcast

Window {
    id: window

    readonly property string address: Qt.application.arguments[Qt.application.arguments.length - 1]

    title: viewer.url
    visible: true
    width: 640
    height: 520
    color: "#202020"

    VideoServerPush {
        id: viewer

        anchors { left: parent.left; right: parent.right; top: parent.top; bottom: news.top }
        url: window.address.startsWith("http://") ? window.address : "http://127.0.0.1:8080/live/1"
        frameRate: 10
        motionDetector: true
        motionArea_x2: 100 // hundredths: the whole picture
        motionArea_Y2: 100

        onStreamInfo: (bytes, pictures) => news.text = `${pictures} pictures, ${Math.round(bytes / 1000)} kB a second`
        onConnectionFailed: news.text = "No answer"
        onConnectionBroken: news.text = "The camera is gone"
        onMotionDetected: (x1, y1, x2, y2) => {
            moved.box = Qt.rect(Math.min(x1, x2), y1, Math.abs(x2 - x1), y2 - y1)
            fading.restart()
        }

        Rectangle {
            id: moved

            property rect box // in hundredths of the picture

            x: box.x * parent.width / 100
            y: box.y * parent.height / 100
            width: box.width * parent.width / 100
            height: box.height * parent.height / 100
            color: "transparent"
            border { color: "orange"; width: 2 }
            opacity: 0

            NumberAnimation { id: fading; target: moved; property: "opacity"; from: 1; to: 0; duration: 1000 }
        }
    }

    Text {
        id: news

        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 8 }
        color: "white"
        text: "Connecting…"
    }
}
