"""Finds visible faults of a dialog: clipped texts and overlapping controls."""
import itertools

from dialog import ID, DialogTest
from display import SIZE

# Controls that overlap on purpose: the frame, and the pictures inside it.
ON_PURPOSE = {frozenset((ID.IMAGE_FRAME, picture))
              for picture in (ID.RADIO_ON_IMAGE, ID.RADIO_OFF_IMAGE)}
# Texts for screen readers, which are never drawn.
NOT_DRAWN = {ID.RADIO_ON_IMAGE, ID.RADIO_OFF_IMAGE}


def overlap(one, other):
    return (one[0] < other[2] and other[0] < one[2]) and (one[1] < other[3] and other[1] < one[3])


def contains(outer, inner):
    return (outer[0] <= inner[0] and outer[1] <= inner[1] and
            inner[2] <= outer[2] and inner[3] <= outer[3])


class LooksTest(DialogTest):
    def assert_all_texts_have_room(self, dialog):
        rooms = [room for room in dialog.rooms() if room["id"] not in NOT_DRAWN]
        self.assertGreater(len(rooms), 10)
        clipped = [room for room in rooms if room["needs"][0] > room["room"][0] or
                   room["needs"][1] > room["room"][1]]
        self.assertEqual(clipped, [])

    def assert_nothing_overlaps(self, dialog):
        window = dialog.window()["rect"]
        self.assertTrue(contains((0, 0, *SIZE), window), window)
        shown = {control_id: control["rect"] for control_id, control in dialog.controls().items()
                 if control["visible"]}
        self.assertGreater(len(shown), 20)
        for control_id, rect in shown.items():
            self.assertTrue(contains(window, rect), (control_id, rect, window))
        for one, other in itertools.combinations(shown, 2):
            if frozenset((one, other)) in ON_PURPOSE:
                continue
            if ID.GROUP in (one, other) and contains(
                    shown[ID.GROUP], shown[other if one == ID.GROUP else one]):
                continue
            self.assertFalse(overlap(shown[one], shown[other]),
                             f"{one} {shown[one]} and {other} {shown[other]}")

    def assert_looks_well(self, dialog, screenshot):
        dialog.screenshot(screenshot)
        self.assert_all_texts_have_room(dialog)
        self.assert_nothing_overlaps(dialog)
