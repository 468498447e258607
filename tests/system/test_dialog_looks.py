"""Nothing in the dialog is clipped and nothing overlaps, whatever the display's density."""
import unittest

import side_by_side
from dialog import ID, TEXTS
from looks import LooksTest
from program import SCENARIOS

load_tests = side_by_side.load_tests


class Looks(LooksTest):
    def check(self, dpi):
        dialog = self.open(dpi=dpi)
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE), TEXTS["VALID_STATE"])
        self.assert_looks_well(dialog, f"dialog-{dpi}dpi")
        width = dialog.window()["rect"][2]
        dialog.click(ID.FINISH)
        dialog.ended()
        # The longest texts of the status and of the connection.
        dialog = self.open(SCENARIOS / "hardware-switch-off.json", dpi=dpi)
        self.assert_becomes(lambda: dialog.text(ID.CONNECTION_STATE), TEXTS["ERROR_INVALID_STATE"])
        self.assert_looks_well(dialog, f"dialog-radio-off-{dpi}dpi")
        return width

    def test_at_96_dpi(self):
        self.check(96)

    def test_at_120_dpi(self):
        self.check(120)

    def test_at_144_dpi(self):
        self.check(144)

    def test_at_192_dpi(self):
        self.assertGreater(self.check(192), 1200, "twice the size of 96 DPI, more or less")


if __name__ == "__main__":
    unittest.main()
