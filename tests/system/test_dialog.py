"""The interactive test as a technician uses it: real pauses, real executable, real controls."""
import time
import unittest

import side_by_side
from dialog import ID, TEXTS, DialogTest
from program import RESULTS, SCENARIOS

load_tests = side_by_side.load_tests

RED = (255, 0, 0)
BLUE = (0, 0, 255)
BLACK = (0, 0, 0)
SS_NOPREFIX = 0x80


def room_with(*access_points, **interface):
    """A scenario with one adapter and these access points."""
    return {"interfaces": [{"accessPoints": list(access_points), **interface}]}


def rating(percent):
    """The word for a signal quality."""
    for floor, word in ((80, "EXCELLENT"), (60, "VERY_GOOD"), (40, "GOOD"), (20, "LOW"),
                        (1, "VERY_LOW")):
        if percent >= floor:
            return TEXTS[word]
    return TEXTS["NO_SIGNAL"]


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

    def test_the_finish_button_completes_the_test(self):
        dialog = self.open()
        dialog.screenshot("opened")
        dialog.click(ID.FINISH)
        self.assert_ended(dialog, "COMPLETED")

    def test_a_refused_network_list_leaves_the_result_and_gives_advice(self):
        dialog = self.open({**room_with({"ssid": "Lab", "signal": 70}),
                            "faults": [{"function": "WlanGetAvailableNetworkList", "code": 5}]})
        dialog.click(ID.FINISH)
        run = self.assert_ended(dialog, "COMPLETED")
        self.assertIn("possible cause: ", run.out)
        self.assertIn("ms-settings:privacy-location", run.out)
        self.assertEqual([finding["key"] for finding in self.result()["advice"]],
                         ["DOCTOR_LOCATION_OFF"])

    def test_the_close_box_completes_the_test(self):
        dialog = self.open()
        dialog.close()
        self.assert_ended(dialog, "COMPLETED")

    def test_the_space_bar_pushes_finish_when_it_has_the_focus(self):
        dialog = self.open()
        self.assertEqual(dialog.focus(), ID.NETWORK_COMBO)
        dialog.press("Tab")
        self.assert_becomes(dialog.focus, ID.FINISH)
        dialog.screenshot("keyboard-on-finish")
        dialog.press("space")
        self.assert_ended(dialog, "COMPLETED")

    def test_escape_aborts_the_test_and_enter_does_not_end_it(self):
        dialog = self.open()
        dialog.press("Return", "KP_Enter", "Return")
        # When this key has taken effect, the keys before it have been handled.
        dialog.press("Down")
        self.assert_becomes(lambda: dialog.text(ID.SSID), "Lab")
        self.assertTrue(dialog.is_running())
        dialog.press("Escape")
        self.assert_ended(dialog, "USERABORTED")

    def test_escape_closes_an_open_list_first(self):
        dialog = self.open()
        closed = set(dialog.open_windows())
        dialog.press("alt+Down")
        self.assert_becomes(lambda: len(set(dialog.open_windows()) - closed), 1)
        dialog.screenshot("list-open")
        dialog.press("Escape")
        self.assert_becomes(lambda: set(dialog.open_windows()), closed)
        self.assertTrue(dialog.is_running())
        dialog.press("Escape")
        self.assert_ended(dialog, "USERABORTED")

    def test_ctrl_c_in_the_console_aborts_the_test_and_the_report_is_written(self):
        dialog = self.open()
        dialog.interrupt()
        run = self.assert_ended(dialog, "USERABORTED")
        self.assertIn("stopping", run.err)


class Display(DialogTest):
    """What the dialog shows of adapter and networks."""

    DETAILS = (ID.BSS_TYPE, ID.SSID, ID.SECURITY, ID.AUTH, ID.CIPHER, ID.CONNECTABLE)

    def details(self, dialog):
        controls = dialog.controls()
        return [controls[control_id]["text"] for control_id in self.DETAILS]

    def test_it_opens_with_its_texts_and_with_the_connected_network_selected(self):
        dialog = self.open({"interfaces": [{
            "description": "Bench Adapter 7",
            "connection": {"ssid": "Home", "quality": 64},
            "accessPoints": [{"ssid": "Neighbour", "signal": 35, "auth": "open"},
                             {"ssid": "Home", "profile": "Home", "signal": 64}]}]})
        controls = dialog.controls()
        self.assertEqual(
            {control_id: controls[control_id]["text"] for control_id in (
                ID.ADAPTER_LABEL, ID.ADAPTER_NAME, ID.FINISH, ID.INSTRUCTIONS, ID.NETWORKS_LABEL,
                ID.BSS_TYPE_LABEL, ID.SSID_LABEL, ID.SECURITY_LABEL, ID.AUTH_LABEL,
                ID.CIPHER_LABEL, ID.CONNECTABLE_LABEL, ID.STRENGTH_LABEL, ID.RADIO_STATUS)},
            {ID.ADAPTER_LABEL: TEXTS["NETWORK_ADAPTER"], ID.ADAPTER_NAME: "Bench Adapter 7",
             ID.FINISH: TEXTS["FINISH"], ID.INSTRUCTIONS: TEXTS["INSTRUCTIONS_1"],
             ID.NETWORKS_LABEL: TEXTS["AVAILABLE_NETWORKS"], ID.BSS_TYPE_LABEL: TEXTS["BSS_TYPE"],
             ID.SSID_LABEL: "SSID", ID.SECURITY_LABEL: TEXTS["SECURITY"],
             ID.AUTH_LABEL: TEXTS["AUTHENTICATION"], ID.CIPHER_LABEL: TEXTS["CIPHER"],
             ID.CONNECTABLE_LABEL: TEXTS["CONNECTABLE"],
             ID.STRENGTH_LABEL: TEXTS["SIGNAL_STRENGTH"],
             ID.RADIO_STATUS: TEXTS["RADIO_BUTTON_ON"]})
        self.assertEqual(dialog.window()["text"], TEXTS["TITLE"])
        for control_id in (ID.CANCEL, ID.FAIL):
            self.assertFalse(controls[control_id]["visible"] or controls[control_id]["enabled"])
        self.assertFalse(controls[ID.PASS_HINT]["visible"])
        self.assertEqual(controls[ID.NETWORK_COMBO]["entries"], ["Neighbour", "Home"])
        self.assertEqual(controls[ID.NETWORK_COMBO]["selection"], 1)
        self.assertEqual(self.details(dialog)[1], "Home")
        self.assertEqual(dialog.strength(), (64, TEXTS["VERY_GOOD"], 64))
        self.assertEqual(controls[ID.SIGNAL_METER]["range"], [0, 100])

        # The first tick of the timer shows the connection.
        self.assertEqual(controls[ID.CONNECTION_STATE]["text"], "")
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE), TEXTS["VALID_STATE"])
        self.assert_becomes(lambda: BLUE in dialog.colours(ID.CONNECTION_STATE), True)
        dialog.screenshot("connected")

    def test_a_selection_changes_the_details(self):
        dialog = self.open(room_with(
            {"ssid": "Strong", "signal": 91},
            {"ssid": "Open", "signal": 47, "auth": "open"},
            {"ssid": "Peer", "signal": 12, "bssType": "independent", "auth": "shared",
             "cipher": "wep", "connectable": False}))
        self.assertEqual(self.details(dialog),
                         ["Infrastructure", "Strong", "Enabled", "RSNA PSK", "No", "Yes"])
        self.assertEqual(dialog.strength(), (91, TEXTS["EXCELLENT"], 91))
        dialog.select(1)
        self.assertEqual(self.details(dialog),
                         ["Infrastructure", "Open", "Not enabled", "Open", "No", "Yes"])
        self.assertEqual(dialog.strength(), (47, TEXTS["GOOD"], 47))
        dialog.select(2)
        self.assertEqual(self.details(dialog),
                         ["Ad hoc (independent)", "Peer", "Enabled", "Shared key", "No", "No"])
        self.assertEqual(dialog.strength(), (12, TEXTS["VERY_LOW"], 12))
        dialog.screenshot("selected")

    def test_a_place_without_networks_leaves_the_details_empty(self):
        dialog = self.open(SCENARIOS / "no-networks.json")
        self.assertEqual(self.details(dialog), [""] * len(self.DETAILS))
        self.assertEqual(dialog.strength(), (None, "", 0))
        combo = dialog.control(ID.NETWORK_COMBO)
        self.assertEqual((combo["entries"], combo["selection"]), ([], -1))
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE), TEXTS["ERROR_INVALID_STATE"])
        self.assert_becomes(lambda: RED in dialog.colours(ID.CONNECTION_STATE), True)
        dialog.screenshot("no-networks")
        dialog.click(ID.FINISH)
        self.assertEqual(dialog.ended().exit, 0)

    def test_hostile_names_are_shown_as_text(self):
        names = ["<b>&amp;</b>", "R&D", "%s%n{0}", "\\n..\\..\\", "0123456789abcdef" * 2]
        raw = ["1b5b33316d526564", "54776f0d0a4c696e6573"]  # an escape sequence, a line end
        dialog = self.open(room_with(
            *({"ssid": name, "signal": 50} for name in names),
            *({"ssidHex": name, "signal": 50} for name in raw), description="R&D Adapter"))
        for control_id in (ID.SSID, ID.ADAPTER_NAME):
            self.assertTrue(dialog.control(control_id)["style"] & SS_NOPREFIX, "& is no underline")
        combo = dialog.control(ID.NETWORK_COMBO)
        expected = names + [bytes.fromhex(name).decode("ascii") for name in raw]
        self.assertEqual(combo["entries"], expected)
        for index, name in enumerate(expected):
            dialog.select(index)
            self.assertEqual(dialog.text(ID.SSID), name)
            self.assertEqual(dialog.strength()[0], 50)
            if name == "R&D":
                dialog.screenshot("ampersand")
        dialog.screenshot("hostile-name")


class Signal(DialogTest):
    """The meter follows the signal."""

    def test_it_follows_at_a_tick_of_the_timer(self):
        # Without background scans a tick reads the list at once.
        dialog = self.open(room_with(
            {"ssid": "Lab", "signal": {"values": list(range(4, 100, 5)), "stepMs": 4000}},
            backgroundScan=False))

        def agree(percent, word, position):
            return word == rating(percent) and position == percent

        before = dialog.strength()
        self.assertTrue(agree(*before), before)
        dialog.screenshot("signal-before-a-tick")
        self.assert_becomes(dialog.strength,
                            lambda after: after[0] > before[0] and agree(*after))
        dialog.screenshot("signal-after-a-tick")

    def test_it_follows_when_a_scan_has_ended(self):
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

    def radio(self, dialog):
        """Status text, which pictures are shown, and whether they can be clicked."""
        controls = dialog.controls()
        on, off = controls[ID.RADIO_ON_IMAGE], controls[ID.RADIO_OFF_IMAGE]
        shown = [name for name, picture in (("on", on), ("off", off)) if picture["visible"]]
        self.assertEqual(on["enabled"], off["enabled"])
        return controls[ID.RADIO_STATUS]["text"], shown, on["enabled"]

    ON = (TEXTS["RADIO_BUTTON_ON"], ["on"], True)
    OFF = (TEXTS["RADIO_BUTTON_OFF"], ["off"], True)

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

    def test_a_radio_that_is_off_is_switched_on_at_the_start(self):
        dialog = self.open(SCENARIOS / "radio-off.json")
        self.assertEqual(self.radio(dialog), self.ON)
        self.assertEqual(dialog.text(ID.SSID), "Lab")
        dialog.screenshot("radio-switched-on")
        dialog.click(ID.FINISH)
        self.assertEqual(dialog.ended().exit, 0)
        self.assertEqual(self.result()["events"], [])

    def test_a_hardware_switch_is_reported_in_red_and_the_picture_does_nothing(self):
        dialog = self.open(SCENARIOS / "hardware-switch-off.json")
        state = (TEXTS["HARDWARE_SWITCH_OFF"], ["off"], False)
        self.assertEqual(self.radio(dialog), state)
        self.assert_becomes(lambda: RED in dialog.colours(ID.RADIO_STATUS), True)
        dialog.screenshot("hardware-switch-off")
        dialog.click_with_the_mouse(ID.RADIO_OFF_IMAGE)
        time.sleep(1)
        self.assertEqual(self.radio(dialog), state)
        dialog.click(ID.FINISH)
        run = dialog.ended()
        self.assertIn("warning: The wireless radio could not be turned on", run.out + run.err)

    def test_a_radio_that_refuses_is_a_warning_with_the_systems_words(self):
        scenario = {**room_with({"ssid": "Lab", "signal": 70},
                                phys=[{"software": "off", "hardware": "on"}]),
                    "faults": [{"function": "WlanSetInterface", "code": 5}]}
        dialog = self.open(scenario)
        self.assertEqual(self.radio(dialog), self.OFF)
        dialog.screenshot("radio-refuses")
        dialog.click_with_the_mouse(ID.RADIO_OFF_IMAGE)
        time.sleep(1)
        self.assertEqual(self.radio(dialog), self.OFF, "a click that fails changes nothing")
        dialog.click(ID.FINISH)
        run = dialog.ended()
        self.assertEqual(run.exit, 0, "a warning event does not change the result")
        self.assertIn("warning: The wireless radio could not be turned on", run.out + run.err)
        warnings = [event for event in self.result()["events"] if event["severity"] == "warning"]
        self.assertEqual([event["key"] for event in warnings], ["WARNING_EVENT"])
        self.assertIn("denied", warnings[0]["variables"]["warningEvent"])
        self.assertTrue(warnings[0]["file"].endswith("mrlrantennaDlg.cpp"), warnings)


if __name__ == "__main__":
    unittest.main()
