"""The dialog on the real clock, in a radio environment that changes all the time: its use of system
resources stays constant. Twelve seconds by default; tools/soak/dialog runs it for an hour."""
import os
import time
import unittest

from dialog import ID, DialogTest

SECONDS = int(os.environ.get("LONG_DIALOG_SECONDS", "12"))
LONG = SECONDS > 60
# What is made on first use has been made by then.
WARM_UP_SECONDS = 60 if LONG else 8
# A refresh holds some objects while it runs: the smallest of several readings counts.
LOOKS = 8
LOOK_EVERY_SECONDS = 0.25
LINE_EVERY_SECONDS = 60 if LONG else 5


def changing_room():
    """Changing signals, networks that come and go, and frequent notifications."""
    end = (SECONDS + WARM_UP_SECONDS + 120) * 1000
    networks = [{"ssid": f"Walker {i}", "profile": "Walker" if i == 0 else "", "signal": {
        "walk": {"start": 50, "min": 0, "max": 100, "step": 9, "intervalMs": 700, "seed": i + 1}}}
        for i in range(6)]
    networks += [{"ssid": f"Guest {i}", "signal": 40, "fromMs": 1000 * second,
                  "toMs": 1000 * (second + 15)}
                 for i, second in enumerate(range(0, end // 1000, 20))]
    return {"interfaces": [{"connection": {"ssid": "Walker 0"}, "accessPoints": networks,
                            "scanDurationMs": 1500}],
            "notifications": [{"atMs": at} for at in range(5000, end, 1500)]}


class LongDialog(DialogTest):
    def held(self, dialog):
        """The smallest of several readings of the resources of the dialog's process."""
        looks = []
        for _ in range(LOOKS):
            looks.append(dialog.objects())
            time.sleep(LOOK_EVERY_SECONDS)
        return {name: min(look[name] for look in looks) for name in looks[0]}

    def print_use(self, since, held):
        print(f"\n{time.monotonic() - since:7.0f} s  {held['gdi']:5} drawing objects  "
              f"{held['user']:4} windows  {held['files']:3} open files  "
              f"{held['memory']:7} KiB of its own", end="", flush=True)

    def test_what_it_holds_stays_flat(self):
        dialog = self.open(changing_room())
        start = time.monotonic()
        time.sleep(WARM_UP_SECONDS)
        before = self.held(dialog)
        self.print_use(start, before)
        switch = 0
        texts = set()
        while time.monotonic() < start + WARM_UP_SECONDS + SECONDS:
            end = min(time.monotonic() + LINE_EVERY_SECONDS,
                      start + WARM_UP_SECONDS + SECONDS)
            while time.monotonic() < end:
                dialog.select(switch % 5)
                switch += 1
                texts.add(dialog.text(ID.STRENGTH_PERCENT))
                time.sleep(1)
            now = self.held(dialog)
            self.print_use(start, now)
        self.assertGreater(len(texts), 1)  # the room did change
        self.assertEqual((now["gdi"], now["user"]), (before["gdi"], before["user"]))
        self.assertLessEqual(now["files"], before["files"])
        dialog.press("Escape")
        self.assertEqual(dialog.ended().exit, 6)


if __name__ == "__main__":
    unittest.main()
