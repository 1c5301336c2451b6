"""Fingers on the touch screen of an X server: what its input driver inputtest reads from a socket."""

import socket
import struct
import time

BEGIN, UPDATE, END = 18, 19, 20  # XI_TouchBegin and its sisters
AXIS = 65535  # the driver's largest value of x and y
STEP = 0.016  # seconds from one event of a finger that moves to the next, as screens send them


class TouchScreen:
    """Places are pixels of a screen of `width` x `height`."""

    def __init__(self, path, width, height):
        self.width, self.height = width, height
        self.driver = socket.socket(socket.AF_UNIX)
        self.driver.connect(path)
        self.driver.sendall(struct.pack("=IIHH", 12, 0, 1, 1))  # the version of the protocol
        self.driver.recv(12)
        self.down = {}  # place by finger
        self.next = 1

    def _send(self, finger, kind):
        x, y = self.down[finger]
        axes = [x * AXIS / (self.width - 1), y * AXIS / (self.height - 1)] + [0.0] * 62
        self.driver.sendall(struct.pack("@IIIII8s4x64d64d", 1056, 6, finger, kind, 0, b"\3" + bytes(7), *axes,
                                        *[0.0] * 64))

    def _sync(self):
        """Waits until the server has taken everything."""
        self.driver.sendall(struct.pack("=II", 8, 1))
        self.driver.recv(8)

    def touch(self, *places):
        """Puts down as many fingers. The last one is the list of them for the others."""
        fingers = []
        for place in places:
            self.down[self.next] = place
            self._send(self.next, BEGIN)
            fingers.append(self.next)
            self.next += 1
        self._sync()
        return fingers

    def move(self, fingers, places, seconds=0.3):
        """All at once, on straight lines."""
        steps = max(2, round(seconds / STEP))
        starts = [self.down[finger] for finger in fingers]
        for number in range(1, steps + 1):
            for finger, start, end in zip(fingers, starts, places):
                self.down[finger] = tuple(a + (b - a) * number / steps for a, b in zip(start, end))
                self._send(finger, UPDATE)
            self._sync()
            time.sleep(STEP)

    def lift(self, fingers):
        for finger in fingers:
            self._send(finger, END)
            del self.down[finger]
        self._sync()

    def tap(self, place, seconds=0.08):
        finger = self.touch(place)
        time.sleep(seconds)
        self.lift(finger)

    def drag(self, start, end, seconds=0.3, rest=0.1):
        """`rest` is how long it stays before it is lifted: else it is a flick."""
        finger = self.touch(start)
        self.move(finger, [end], seconds)
        time.sleep(rest)
        self.lift(finger)

    def pinch(self, starts, ends, seconds=0.4):
        fingers = self.touch(*starts)
        time.sleep(0.05)
        self.move(fingers, ends, seconds)
        time.sleep(0.1)
        self.lift(fingers)
