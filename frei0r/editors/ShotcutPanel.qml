import QtQuick 2.12
import QtQuick.Controls 2.12
import QtQuick.Layouts 1.12
import Shotcut.Controls 1.0 as Shotcut

// Morvane's panel: one row per control of the list below, which the build writes from the
// effect's table of controls. A list sends the module's item text, a slider its user value as
// (value - offset) / factor, the checkbox 1 or 0.
Item {
    id: panel

    property var controls: @CONTROLS@
    property bool blockUpdate: true

    function position() {
        return Math.max(producer.position - (filter.in - producer.in), 0);
    }

    function moduleValue(control, value) {
        return (value - control.offset) / control.factor;
    }

    function setControls() {
        blockUpdate = true;
        for (var i = 0; i < rows.count; ++i)
            rows.itemAt(i).show();
        blockUpdate = false;
    }

    width: 420
    height: column.implicitHeight + 16
    Component.onCompleted: {
        if (filter.isNew) {
            for (var i = 0; i < controls.length; ++i)
                filter.set(controls[i].property, controls[i].dephault);
        }
        setControls();
        console.log("Morvane panel: " + controls.length + " controls");
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 8

        Repeater {
            id: rows

            model: panel.controls

            RowLayout {
                property var control: modelData

                // A property the project does not set is at the module's default.
                function show() {
                    var unset = filter.get(control.property) === "";
                    if (control.kind === "list")
                        list.currentIndex = unset ? control.defaultItem : Math.max(control.items.indexOf(filter.get(control.property)), 0);
                    else if (control.kind === "bool")
                        checkBox.checked = (unset ? parseFloat(control.dephault) : filter.getDouble(control.property)) >= 0.5;
                    else {
                        slider.value = (unset ? parseFloat(control.dephault) : filter.getDouble(control.property, position())) * control.factor + control.offset;
                        keyframes.checked = filter.keyframeCount(control.property) > 0;
                    }
                }

                function send(value) {
                    if (blockUpdate)
                        return ;

                    if (keyframes.checked)
                        filter.set(control.property, moduleValue(control, value), position());
                    else
                        filter.set(control.property, moduleValue(control, value));
                }

                Label {
                    text: control.property
                    Layout.preferredWidth: 150
                    horizontalAlignment: Text.AlignRight

                    Shotcut.HoverTip {
                        text: control.tip
                    }

                }

                Shotcut.ComboBox {
                    id: list

                    visible: control.kind === "list"
                    model: control.display
                    Layout.fillWidth: true
                    onActivated: filter.set(control.property, control.items[currentIndex])
                }

                CheckBox {
                    id: checkBox

                    visible: control.kind === "bool"
                    Layout.fillWidth: true
                    onClicked: filter.set(control.property, checked ? 1 : 0)
                }

                Shotcut.SliderSpinner {
                    id: slider

                    visible: control.kind === "slider"
                    minimumValue: control.min
                    maximumValue: control.max
                    decimals: control.decimals
                    suffix: control.suffix === "" ? "" : " " + control.suffix
                    Layout.fillWidth: true
                    onValueChanged: send(value)
                }

                Shotcut.UndoButton {
                    onClicked: {
                        if (control.kind === "list") {
                            filter.set(control.property, control.items[control.defaultItem]);
                            list.currentIndex = control.defaultItem;
                        } else if (control.kind === "bool") {
                            filter.set(control.property, control.dephault);
                            checkBox.checked = control.dephault === "1";
                        } else {
                            slider.value = control.userDefault;
                        }
                    }
                }

                Shotcut.KeyframesButton {
                    id: keyframes

                    visible: control.keyframable
                    onToggled: {
                        var value = moduleValue(control, slider.value);
                        if (checked) {
                            blockUpdate = true;
                            filter.clearSimpleAnimation(control.property);
                            blockUpdate = false;
                            filter.set(control.property, value, position());
                        } else {
                            filter.resetProperty(control.property);
                            filter.set(control.property, value);
                        }
                    }
                }

            }

        }

        Item {
            Layout.fillHeight: true
        }

    }

    Connections {
        function onChanged() {
            setControls();
        }

        target: filter
    }

    Connections {
        function onPositionChanged() {
            setControls();
        }

        target: producer
    }

}
