# SPDX-License-Identifier: GPL-3.0-or-later
"""A desk whose programs show their windows on a Wayland compositor in place of the X server.

The compositor has no screen and takes no pointer or keys: controls are pressed through the
accessibility bus. The X server of the desk stays, without a program on it.
"""

from desk import Desk, until


class WaylandDesk(Desk):
    SOCKET = "wayland-desk"

    def __enter__(self):
        super().__enter__()
        try:
            self._start_compositor()
        except BaseException:
            self.__exit__(None, None, None)
            raise
        return self

    def _start_compositor(self):
        width, height = self.size
        # The debug protocol is what lets the screenshooter in.
        self.spawn("weston", "--backend=headless-backend.so", "--use-pixman", "--debug",
                   "--no-config", "--idle-time=0", f"--socket={self.SOCKET}",
                   f"--width={width}", f"--height={height}")
        until((self.folder / "run" / self.SOCKET).exists, "the compositor")
        self.environment.update(WAYLAND_DISPLAY=self.SOCKET, QT_QPA_PLATFORM="wayland")

    def screenshot(self, file):
        file.parent.mkdir(parents=True, exist_ok=True)
        self.tool("sh", "-c", 'cd "$0" && weston-screenshooter', self.folder)
        shot = until(lambda: next(self.folder.glob("wayland-screenshot-*.png"), None),
                     "the screenshot")
        file.write_bytes(shot.read_bytes())
        shot.unlink()
