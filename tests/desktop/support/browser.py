# SPDX-License-Identifier: MIT
"""A real browser with a page that has a link to a file and a selected text."""
from .waiting import wait_for

TITLE = "A page to drag from"
LINK_COLOR = (200, 40, 40)
SELECTION_COLOR = (40, 160, 60)
PAGE = """<!DOCTYPE html>
<meta charset="utf-8">
<title>{title}</title>
<style>
  a {{ display: block; width: 200px; height: 80px; background: rgb{link} }}
  p {{ font-size: 40px }}
  ::selection {{ background: rgb{selection} }}
</style>
<a href="{address}"></a>
<p>Some words</p>
<script>getSelection().selectAllChildren(document.querySelector("p"))</script>
"""


class Chromium:
    """Chromium, showing a page with a link to this address."""

    def __init__(self, desktop, address):
        self.desktop = desktop
        page = desktop.home / "page.html"
        page.write_text(PAGE.format(title=TITLE, address=address, link=LINK_COLOR, selection=SELECTION_COLOR))
        # --test-type hides the bar that warns of --no-sandbox, which a test in a container needs.
        desktop.start("chromium", "chromium", "--no-sandbox", "--test-type", "--disable-gpu", "--disable-quic",
                      "--no-first-run", "--no-default-browser-check", "--disable-background-networking",
                      "--disable-component-update", "--disable-sync", "--password-store=basic",
                      f"--user-data-dir={desktop.folder / 'chromium'}", f"--app={page.as_uri()}")
        self.window = wait_for(lambda: next(iter(desktop.windows.find(title=TITLE)), None), "Chromium shows its page")

    def place(self, x, y, width, height):
        self.desktop.windows.place(self.window, x, y, width, height)
        wait_for(lambda: self.frame()[2:] == (width, height), "Chromium takes its place")
        return self

    def frame(self):
        return self.desktop.windows.frame(self.window)

    def link(self):
        return self.painted(LINK_COLOR)

    def selected_text(self):
        return self.painted(SELECTION_COLOR)

    def painted(self, color):
        """Returns the middle of the area that the page paints in that colour."""
        area = wait_for(lambda: self.desktop.windows.painted(self.frame(), color), "Chromium has painted its page")
        return area.x + area.width // 2, area.y + area.height // 2
