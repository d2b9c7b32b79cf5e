// The first picture in a QML scene: /usr/lib/qt6/bin/qml examples/first_picture/scene.qml
import Orbelcast

VideoServerPush {
    implicitWidth: 640
    implicitHeight: 480
    url: "http://127.0.0.1:8080/live/1"
}
