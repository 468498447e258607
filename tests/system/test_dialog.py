"""The interactive test as a technician uses it: real pauses, real executable, real controls."""
import time
import unittest

import side_by_side
from dialog import ID, TEXTS, DialogTest
from program import RESULTS, SCENARIOS

load_tests = side_by_side.load_tests

RED = (255, 0, 0)
BLACK = (0, 0, 0)
SS_NOPREFIX = 0x80


def room_with(*access_points, **interface):
    """A scenario with one adapter and these access points."""
    return {"interfaces": [{"accessPoints": list(access_points), **interface}]}


class End(DialogTest):
    """How the dialog ends, and the result for each way."""

    def assert_ended(self, dialog, result):
        run = dialog.ended()
        # A finished dialog is a good end; the others have a value of their own.
        self.assertEqual(run.exit, 0 if result == "COMPLETED" else RESULTS[result], run)
        self.assertIn(result, run.out)
        reported = self.result()
        self.assertEqual((reported["result"], reported["events"]), (result, []))
        return run

    def test_keys_choose_open_the_list_and_push_the_button_and_enter_does_not_end_it(self):
        dialog = self.open()
        dialog.screenshot("opened")
        self.assertEqual(dialog.focus(), ID.NETWORK_COMBO)
        dialog.press("Return", "KP_Enter", "Return")
        # When this key has taken effect, the keys before it have been handled.
        dialog.press("Down")
        self.assert_becomes(lambda: dialog.text(ID.SSID), "Lab")
        closed = set(dialog.open_windows())
        dialog.press("alt+Down")
        self.assert_becomes(lambda: len(set(dialog.open_windows()) - closed), 1)
        dialog.screenshot("list-open")
        dialog.press("Escape")
        self.assert_becomes(lambda: set(dialog.open_windows()), closed)
        self.assertTrue(dialog.is_running())
        dialog.press("Tab")
        self.assert_becomes(dialog.focus, ID.RADIO_ON_IMAGE)
        dialog.screenshot("keyboard-on-picture")
        dialog.press("Tab")
        self.assert_becomes(dialog.focus, ID.FINISH)
        dialog.screenshot("keyboard-on-finish")
        dialog.press("space")
        self.assert_ended(dialog, "COMPLETED")

    def test_escape_aborts_the_test(self):
        dialog = self.open()
        dialog.press("Escape")
        self.assert_ended(dialog, "USERABORTED")

    def test_ctrl_c_in_the_console_aborts_the_test_and_the_report_is_written(self):
        dialog = self.open()
        dialog.interrupt()
        run = self.assert_ended(dialog, "USERABORTED")
        self.assertIn("stopping", run.err)


class Networks(DialogTest):
    """What the dialog shows of networks."""

    DETAILS = (ID.BSS_TYPE, ID.SSID, ID.SECURITY, ID.AUTH, ID.CIPHER, ID.CONNECTABLE)

    def details(self, dialog):
        controls = dialog.controls()
        return [controls[control_id]["text"] for control_id in self.DETAILS]

    def test_a_selection_changes_the_details(self):
        dialog = self.open(room_with(
            {"ssid": "Peer", "signal": 12, "bssType": "independent", "auth": "shared",
             "cipher": "wep", "connectable": False},
            {"ssid": "Home", "profile": "Home", "signal": 64},
            connection={"ssid": "Home", "quality": 64}))
        combo = dialog.control(ID.NETWORK_COMBO)
        self.assertEqual((combo["entries"], combo["selection"]), (["Peer", "Home"], 1))
        self.assertEqual(self.details(dialog),
                         ["Infrastructure", "Home", "Enabled", "RSNA PSK", "Yes", "Yes"])
        self.assertEqual(dialog.strength(), (64, TEXTS["VERY_GOOD"], 64))
        dialog.select(0)
        self.assertEqual(self.details(dialog),
                         ["Ad hoc (independent)", "Peer", "Enabled", "Shared key", "No", "No"])
        self.assertEqual(dialog.strength(), (12, TEXTS["VERY_LOW"], 12))
        dialog.screenshot("selected")

    def test_hostile_names_are_shown_as_text(self):
        names = ["<b>&amp;</b>", "R&D", "%s%n{0}", "\\n..\\..\\", "0123456789abcdef" * 2,
                 "\x1b[31mRed", "Two\r\nLines"]
        dialog = self.open(room_with(
            *({"ssidHex": name.encode("ascii").hex(), "signal": 50} for name in names),
            description="R&D Adapter"))
        for control_id in (ID.SSID, ID.ADAPTER_NAME):
            self.assertTrue(dialog.control(control_id)["style"] & SS_NOPREFIX, "& is no underline")
        self.assertEqual(dialog.control(ID.NETWORK_COMBO)["entries"], names)
        for index, name in enumerate(names):
            dialog.select(index)
            self.assertEqual(dialog.text(ID.SSID), name)
            self.assertEqual(dialog.strength()[0], 50)
        dialog.screenshot("hostile-name")

    def test_the_list_and_the_meter_follow_when_a_scan_has_ended(self):
        dialog = self.open(room_with(
            {"ssid": "Lab", "signal": 24, "visible": "beforeScan"},
            {"ssid": "Lab", "signal": 88, "visible": "afterScan"},
            {"ssid": "New", "signal": 40, "visible": "afterScan"},
            scanDurationMs=2000))
        self.assertEqual(dialog.strength(), (24, TEXTS["LOW"], 24))
        self.assertEqual(dialog.control(ID.NETWORK_COMBO)["entries"], ["Lab"])
        dialog.screenshot("before-a-scan")
        self.assert_becomes(dialog.strength, (88, TEXTS["EXCELLENT"], 88))
        self.assertEqual(dialog.control(ID.NETWORK_COMBO)["entries"], ["Lab", "New"])
        dialog.screenshot("after-a-scan")


class Radio(DialogTest):
    """The picture that switches the radio."""

    ON = (TEXTS["RADIO_BUTTON_ON"], ["on"], True)
    OFF = (TEXTS["RADIO_BUTTON_OFF"], ["off"], True)

    def radio(self, dialog):
        """Status text, which pictures are shown, and whether they can be clicked."""
        controls = dialog.controls()
        on, off = controls[ID.RADIO_ON_IMAGE], controls[ID.RADIO_OFF_IMAGE]
        shown = [name for name, picture in (("on", on), ("off", off)) if picture["visible"]]
        self.assertEqual(on["enabled"], off["enabled"])
        return controls[ID.RADIO_STATUS]["text"], shown, on["enabled"]

    def test_a_click_on_the_picture_switches_it_off_and_another_on_again(self):
        dialog = self.open(room_with({"ssid": "Lab", "signal": 70}))
        self.assertEqual(self.radio(dialog), self.ON)
        picture_on = dialog.colours(ID.RADIO_ON_IMAGE)
        self.assertIn(BLACK, dialog.colours(ID.RADIO_STATUS))
        dialog.click_with_the_mouse(ID.RADIO_ON_IMAGE)
        self.assert_becomes(lambda: self.radio(dialog), self.OFF)
        self.assert_becomes(lambda: dialog.colours(ID.RADIO_OFF_IMAGE) != picture_on, True)
        self.assertNotIn(RED, dialog.colours(ID.RADIO_STATUS))
        dialog.screenshot("radio-off")
        dialog.click(ID.RADIO_OFF_IMAGE)
        self.assert_becomes(lambda: self.radio(dialog), self.ON)
        dialog.screenshot("radio-on-again")
        dialog.click(ID.FINISH)
        self.assertEqual(dialog.ended().exit, 0)

    def test_a_hardware_switch_is_a_warning_and_red_and_the_picture_does_nothing(self):
        dialog = self.open(SCENARIOS / "hardware-switch-off.json")
        state = (TEXTS["HARDWARE_SWITCH_OFF"], ["off"], False)
        self.assertEqual(self.radio(dialog), state)
        self.assert_becomes(lambda: RED in dialog.colours(ID.RADIO_STATUS), True)
        dialog.click_with_the_mouse(ID.RADIO_OFF_IMAGE)
        time.sleep(1)
        self.assertEqual(self.radio(dialog), state)
        dialog.click(ID.FINISH)
        run = dialog.ended()
        self.assertEqual(run.exit, 0, "a warning event does not change the result")
        self.assertIn("warning: The wireless radio could not be turned on", run.out + run.err)
        [warning] = [event for event in self.result()["events"] if event["severity"] == "warning"]
        self.assertEqual(warning["key"], "WARNING_EVENT")
        self.assertTrue(warning["file"].endswith("mrlrantennaDlg.cpp"), warning)


if __name__ == "__main__":
    unittest.main()
