"""The dialog in the languages of --language: its texts are that language's and have room."""
import unittest

import side_by_side
from dialog import ID, texts_of
from looks import LooksTest
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


class Languages(LooksTest):
    def check(self, language):
        texts = texts_of(language)
        dialog = self.open(CONNECTED, language=language)
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE), texts["VALID_STATE"])
        controls = dialog.controls()
        self.assertEqual({control_id: controls[control_id]["text"] for control_id in LABELS},
                         {control_id: texts[key] for control_id, key in LABELS.items()})
        self.assertEqual(controls[ID.SSID]["text"], "Office (5G)")
        self.assert_looks_well(dialog, f"dialog-{language}")
        dialog.click(ID.FINISH)
        dialog.ended()
        return controls

    def check_radio_off(self, language, dpi):
        """The longest texts of the status and of the connection."""
        dialog = self.open(SCENARIOS / "hardware-switch-off.json", dpi, language)
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE),
                            texts_of(language)["ERROR_INVALID_STATE"])
        self.assert_looks_well(dialog, f"dialog-{language}-radio-off-{dpi}dpi")

    def test_german(self):
        self.check("de")

    def test_french(self):
        self.check("fr")

    def test_spanish(self):
        self.check("es")

    def test_japanese(self):
        self.check("ja")

    def test_chinese(self):
        self.check("zh-Hans")

    def test_arabic_is_mirrored(self):
        controls = self.check("ar")
        self.assertGreater(controls[ID.IMAGE_FRAME]["rect"][0], controls[ID.GROUP]["rect"][2] - 1)
        self.assertGreater(controls[ID.SSID_LABEL]["rect"][0], controls[ID.SSID]["rect"][0])

    def test_german_with_its_longest_texts_at_192_dpi(self):
        self.check_radio_off("de", 192)

    def test_arabic_with_its_longest_texts_at_144_dpi(self):
        self.check_radio_off("ar", 144)


if __name__ == "__main__":
    unittest.main()
