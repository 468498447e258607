"""Nothing in the dialog is clipped and nothing overlaps, in several languages and densities of the
display. The other languages and densities are measured without a display."""
import itertools
import unittest

import side_by_side
from dialog import ID, DialogTest, texts_of
from display import SIZE
from program import SCENARIOS

load_tests = side_by_side.load_tests

# Names and descriptions end in characters that a wrong reading direction would move to the front.
CONNECTED = {"interfaces": [{
    "description": "Bench Wi-Fi Adapter 7 (rev. 2)",
    "connection": {"ssid": "Office (5G)", "quality": 64},
    "accessPoints": [{"ssid": "Office (5G)", "profile": "Office (5G)", "signal": 64},
                     {"ssid": "Neighbour", "signal": 35, "auth": "open"}]}]}
LABELS = {ID.ADAPTER_LABEL: "NETWORK_ADAPTER", ID.NETWORKS_LABEL: "AVAILABLE_NETWORKS",
          ID.BSS_TYPE_LABEL: "BSS_TYPE", ID.SECURITY_LABEL: "SECURITY",
          ID.AUTH_LABEL: "AUTHENTICATION", ID.CIPHER_LABEL: "CIPHER",
          ID.CONNECTABLE_LABEL: "CONNECTABLE", ID.STRENGTH_LABEL: "SIGNAL_STRENGTH",
          ID.INSTRUCTIONS: "INSTRUCTIONS_1", ID.FINISH: "FINISH",
          ID.RADIO_STATUS: "RADIO_BUTTON_ON", ID.STRENGTH_TEXT: "VERY_GOOD",
          ID.CONNECTION_STATE: "VALID_STATE", ID.SECURITY: "ENABLED", ID.CIPHER: "YES",
          ID.BSS_TYPE: "INFRASTRUCTURE"}
NAMES = {ID.SSID: "Office (5G)", ID.ADAPTER_NAME: "Bench Wi-Fi Adapter 7 (rev. 2)"}
PICTURES = {ID.RADIO_ON_IMAGE, ID.RADIO_OFF_IMAGE}
# Controls that overlap on purpose.
ON_PURPOSE = {frozenset((ID.IMAGE_FRAME, picture)) for picture in PICTURES}


def overlap(one, other):
    return (one[0] < other[2] and other[0] < one[2]) and (one[1] < other[3] and other[1] < one[3])


def contains(outer, inner):
    return (outer[0] <= inner[0] and outer[1] <= inner[1] and
            inner[2] <= outer[2] and inner[3] <= outer[3])


class Looks(DialogTest):
    def assert_looks_well(self, dialog, screenshot):
        dialog.screenshot(screenshot)
        # The texts of pictures are for screen readers and never drawn.
        rooms = [room for room in dialog.rooms() if room["id"] not in PICTURES]
        self.assertGreater(len(rooms), 10)
        self.assertEqual([room for room in rooms if room["needs"][0] > room["room"][0] or
                          room["needs"][1] > room["room"][1]], [], "clipped texts")
        window = dialog.window()["rect"]
        self.assertTrue(contains((0, 0, *SIZE), window), window)
        shown = {control_id: control["rect"] for control_id, control in dialog.controls().items()
                 if control["visible"]}
        self.assertGreater(len(shown), 20)
        for control_id, rect in shown.items():
            self.assertTrue(contains(window, rect), (control_id, rect, window))
        group = shown.pop(ID.GROUP)
        for one, other in itertools.combinations(shown, 2):
            if frozenset((one, other)) not in ON_PURPOSE:
                self.assertFalse(overlap(shown[one], shown[other]),
                                 f"{one} {shown[one]} and {other} {shown[other]}")
        for control_id, rect in shown.items():
            self.assertTrue(contains(group, rect) or not overlap(group, rect), control_id)

    def check(self, language, dpi):
        texts = texts_of(language)
        dialog = self.open(CONNECTED, dpi, language)
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE), texts["VALID_STATE"])
        controls = dialog.controls()
        expected = {control_id: texts[key] for control_id, key in LABELS.items()} | NAMES
        self.assertEqual({control_id: controls[control_id]["text"] for control_id in expected},
                         expected)
        self.assert_looks_well(dialog, f"dialog-{language}-{dpi}dpi")
        width = dialog.window()["rect"][2]
        dialog.click(ID.FINISH)
        dialog.ended()
        # The longest texts of the status and of the connection.
        dialog = self.open(SCENARIOS / "hardware-switch-off.json", dpi, language)
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE), texts["ERROR_INVALID_STATE"])
        self.assert_looks_well(dialog, f"dialog-{language}-radio-off-{dpi}dpi")
        return width

    def test_english_at_96_dpi(self):
        self.check("en", 96)

    def test_japanese_at_120_dpi(self):
        self.check("ja", 120)

    def test_arabic_at_144_dpi(self):
        self.check("ar", 144)

    def test_german_at_192_dpi(self):
        self.assertGreater(self.check("de", 192), 1200, "twice the size of 96 DPI, more or less")


if __name__ == "__main__":
    unittest.main()
